#include "archive/compression.h"
#include "package/scratch.h"
#include "platform/windows_path.h"
#include "sim/install_record.h"
#include "tests/support/faulty_files.h"
#include "tests/support/sim_fixture.h"

#include <algorithm>

namespace korvadex::test {

class RecordTest : public SimTest {
  protected:
    void Install(const std::string& name) {
        Select(name);
        user.isPatient = true;
        RunInstall();
        ASSERT_TRUE(drive.Has("FS\\aircraft\\" + name)) << user.transcript.back();
    }
    void Remove(const std::string& name) {
        Select(name);
        QuietMode = true; // so that a question would keep it
        RunRemoval();
        EXPECT_EQ(removal.kept, "");
        EXPECT_FALSE(drive.Has("FS\\aircraft\\" + name));
    }
};

TEST_F(RecordTest, AGaugeGoesWithTheLastPackageThatHasIt) {
    // Each brings gauges; the panel names some of them.
    const std::map<std::string, std::string> packages = {
        {"A", "Panel\\panel.cfg=gauge00=one, Gauges\\one.gau=1, Gauges\\two.gau=2"},
        {"B", "Panel\\panel.cfg=gauge00=one, Gauges\\one.gau=1, Gauges\\Two.gau=other"},
        {"C", "Gauges\\ONE.gau=another, Gauges\\two.gau=2, Gauges\\three.cab=3"}};
    for (const auto& [name, files] : packages) {
        drive.Fill("Hangar\\Jets\\" + name, files);
        drive.Put("Hangar\\Jets\\" + name + "\\aircraft.cfg", "[fltsim.0]\r\ntitle=" + name + "\r\n");
    }
    for (const std::string there : {"", "one.gau=1", "one.gau=another, three.cab=3", "two.gau=2"}) {
        std::vector<std::string> in = {"A", "B", "C"}, out = in;
        do {
            std::rotate(in.begin(), in.begin() + 1, in.end());
            SCOPED_TRACE("'" + there + "' in " + in[0] + in[1] + in[2] + " out " + out[0] + out[1] + out[2]);
            drive.Fill("FS\\gauges", there);
            for (const std::string& name : in)
                Install(name);
            for (const std::string& name : out) {
                EXPECT_TRUE(drive.Has("FS\\gauges\\one.gau"));
                EXPECT_TRUE(drive.Has("FS\\gauges\\two.gau"));
                Remove(name);
            }
            EXPECT_EQ(drive.Outline("FS\\gauges"), there);
            for (const char* gauge : {"one.gau", "two.gau", "three.cab"})
                static_cast<void>(drive.Files().Delete(drive.At(std::string("FS\\gauges\\") + gauge)));
        } while (std::next_permutation(out.begin(), out.end()));
    }
}

TEST_F(RecordTest, AGaugeStaysForPanelsThatNameItAndGoesWithTheLast) {
    const std::string inPackage = "Hangar\\Jets\\A\\Gauges\\one.gau", inSim = "FS\\gauges\\one.gau",
                      recordOfB = "FS\\aircraft\\B\\kx_installed.txt", brought = "one.gau=gauge gauge gauge gauge";
    const struct {
        const char *name, *out;  // A brings it; "!" where the file changes
        std::string file, bytes; // no bytes: deleted
        std::string left;
    } rows[] = {
        {"its package goes first", "ABC", "", "", ""},
        {"its package goes between", "CAB", "", "", ""},
        {"its package goes last", "BCA", "", "", ""},
        {"changed in the simulator", "A!BC", inSim, "mine", "one.gau=mine"},
        {"changed in the package", "A!BC", inPackage, "other", brought},
        {"gone from the package", "AB!C", inPackage, "", brought},
        {"one of them without a record", "!ABC", recordOfB, "", ""},
        {"the last without a record", "!ACB", recordOfB, "", brought},
    };
    drive.Fill("Hangar\\Jets\\B", "aircraft.cfg=b, Panel\\panel.cfg=gauge00=one");
    drive.Fill("Hangar\\Jets\\C", "aircraft.cfg=c, Panel\\panel.cfg=gauge00=one!x");
    for (const auto& row : rows) {
        for (const bool isBatch : {false, true}) {
            SCOPED_TRACE(std::string(row.name) + (isBatch ? ", all at once" : ""));
            drive.Fill("Hangar\\Jets\\A", "aircraft.cfg=a, Gauges\\" + brought);
            for (const char* name : {"A", "B", "C"})
                Install(name);
            Select("A");
            EXPECT_TRUE(CompressPackage(context, package.path, true).empty()); // packed it is the same
            SimUsage usage(context, {"A", "B", "C"});
            knownUsage = isBatch ? &usage : nullptr;
            for (const char step : std::string_view(row.out)) {
                EXPECT_TRUE(drive.Has(inSim));
                if (step != '!')
                    Remove({step});
                else if (!row.bytes.empty())
                    drive.Put(row.file, row.bytes);
                else
                    ASSERT_TRUE(drive.Files().Delete(drive.At(row.file)));
            }
            knownUsage = nullptr;
            EXPECT_EQ(drive.Outline("FS\\gauges"), row.left);
            static_cast<void>(drive.Files().Delete(drive.At(inSim)));
        }
    }
}

TEST_F(RecordTest, NamesWhatWasPlacedAndWhatWasFound) {
    drive.Fill("FS", "gauges\\learcab.cab=x, effects\\, modules\\helper.dll=x");
    drive.Put("FS\\aircraft\\Big_Jet\\panel\\panel.cfg", "");
    PackageBuilder(drive, "Hangar\\Jets\\Lear\\")
        .With("Panel\\panel.cfg", "alias=Big Jet\\panel")
        .With("Documentation\\\xC4\x80.txt", "a name that no code page has");
    Install("Lear");
    auto record = ReadInstallRecord(drive.Files(), drive.At("FS\\aircraft\\Lear\\"));
    ASSERT_TRUE(record);
    EXPECT_EQ(record->package, "Jets\\Lear");
    const struct {
        const char *kind, *name;
        bool isPlaced;
    } rows[] = {{"gauge", "LearClock.gau", true},      {"gauge", "LearCab.cab", false},
                {"effect", "smoke.fx", true},          {"module", "helper.dll", false},
                {"sound", "Click.wav", true},          {"aircraft", "Documentation\\\xC4\x80.txt", true},
                {"aircraft", "Panel\\panel.cfg", true}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const RecordedFile* file = record->Find(row.kind, row.name);
        ASSERT_TRUE(file);
        EXPECT_EQ(file->isPlaced, row.isPlaced);
        if (file->kind == AircraftKind) {
            EXPECT_TRUE(IsUnchanged(drive.Files(), *file, drive.At("FS\\aircraft\\Lear\\" + file->name)));
        }
    }
    Remove("Lear"); // with the alias line as the installation has written it
}

TEST_F(RecordTest, ARemovalThatWasCutOffIsFinishedByTheNext) {
    drive.Fill("Hangar\\Jets\\A", "aircraft.cfg=a, Gauges\\one.gau=1, Gauges\\two.gau=2, Gauges\\three.gau=3");
    drive.Fill("Hangar\\Jets\\B", "aircraft.cfg=b, Gauges\\one.gau=1, Panel\\panel.cfg=gauge00=three");
    drive.Fill("FS\\gauges", "two.gau=2");
    FaultyFiles faulty(drive.Files());
    faulty.FailOn("Replace", "kx_installed.txt", FileFault::Denied);
    Install("A");
    Install("B");
    Select("A");
    const auto before = drive.Tree("FS");
    user.isPatient = false;
    ExpectRemoval().Expect(
        "The package was not removed.  Another aircraft has gauges of it, which were to be handed on.\n\n" +
        drive.At("FS\\aircraft\\B\\kx_installed.txt could not be written (access was denied)...."));
    RunRemoval(faulty);
    EXPECT_EQ(drive.Tree("FS"), before);
    Remove("A");
    Remove("B");

    const int stops = StopAtEachChange(drive.Files(), [&](FaultyFiles& stopped) {
        Install("A");
        Install("B");
        Select("A");
        QuietMode = true;
        RunRemoval(stopped);
        if (drive.Has("FS\\aircraft\\A"))
            Remove("A");
        EXPECT_EQ(drive.Outline("FS\\gauges"), "one.gau=1, three.gau=3, two.gau=2");
        Remove("B");
        EXPECT_EQ(drive.Outline("FS\\gauges"), "two.gau=2");
        CleanScratch(drive.Files(), locations);
    });
    EXPECT_GT(stops, 10);
}

} // namespace korvadex::test
