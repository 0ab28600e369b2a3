#include "package/scratch.h"
#include "platform/windows_path.h"
#include "tests/support/faulty_files.h"
#include "tests/support/sim_fixture.h"

#include <algorithm>

namespace korvadex::test {

namespace {

using Entries = std::map<std::string, std::string>;

// Adds what an install puts there; a name that stands there already, in whatever case, keeps its bytes.
void AddNew(Entries& tree, const std::string& path, const std::string& bytes) {
    const bool isThere = std::ranges::any_of(tree, [&](const auto& entry) { return EqualNoCase(entry.first, path); });
    if (!isThere)
        tree[path] = bytes;
}

// The record lies in each installed aircraft.
Entries WithoutRecord(Entries tree) {
    EXPECT_EQ(tree.erase("aircraft\\My_Lear\\kx_installed.txt"), 1u);
    return tree;
}

// The simulator's tree after the builder's aircraft was installed as My_Lear. The gauges may be left out of
// it.
Entries WithAircraft(Entries tree) {
    const std::string aircraft = "aircraft\\My_Lear\\";
    tree[aircraft];
    for (const auto& [relative, bytes] : PackageBuilder::Files()) {
        const std::string name = LastPathComponent(relative);
        if (relative.starts_with("Gauges\\")) {
            AddNew(tree, "gauges\\" + name, bytes);
        } else if (name == "smoke.fx") {
            if (tree.contains("effects\\"))
                AddNew(tree, "effects\\" + name, bytes);
        } else if (name == "helper.dll") {
            AddNew(tree, "modules\\", "");
            AddNew(tree, "modules\\" + name, bytes);
        } else {
            tree[aircraft + ParentDirectory(relative)];
            tree[aircraft + relative] = bytes;
        }
    }
    AddNew(tree, "sound\\", "");
    AddNew(tree, "sound\\Click.wav", PackageBuilder::Files().at("Sound\\Click.wav"));
    return tree;
}

} // namespace

TEST_F(SimTest, InstallingAndRemovingTouchNothingOfOthers) {
    // The clock is named by the Cessna's panel, so it stays whoever brought it; the cabinet is nobody else's.
    const struct {
        std::string name;
        const char* before;               // what the simulator holds
        std::vector<std::string> staying; // what removing leaves that was not there
    } rows[] = {
        {"bare",
         "gauges\\",
         {"gauges\\LearClock.gau", "modules\\", "modules\\helper.dll", "sound\\", "sound\\Click.wav"}},
        {"with directories",
         "gauges\\, effects\\, modules\\x.dll=x, sound\\y.wav=y",
         {"gauges\\LearClock.gau", "effects\\smoke.fx", "modules\\helper.dll", "sound\\Click.wav"}},
        {"the same files there",
         "effects\\SMOKE.FX=smoke, modules\\Helper.DLL=MZ helper, sound\\click.WAV=RIFF gauge click, "
         "gauges\\LEARCLOCK.GAU=MZ clock, gauges\\learcab.cab=MSCF cabinet",
         {}},
        {"other files of these names",
         "effects\\smoke.fx=thicker smoke, modules\\helper.dll=MZ newer helper, sound\\click.wav=RIFF another, "
         "gauges\\learclock.gau=MZ another clock, gauges\\learcab.CAB=MSCF another",
         {}},
    };
    PackageBuilder(drive, "Hangar\\Jets\\My Lear\\")
        .With("Texture\\Lear_t.bmp", std::string(100'000, 'B'))
        .With("Unrecognized Files\\flight_model.cfg", "in no group");
    const Entries hangar = drive.Tree("Hangar");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        locations.MsfsDir = drive.At(row.name + "\\");
        drive.Fill(row.name, row.before);
        drive.Put(row.name + "\\aircraft\\Cessna\\panel\\Panel.cfg", "gauge00=Altimeter,1,1\r\nGAUGE01=x!LEARCLOCK,1");
        const Entries before = drive.Tree(row.name);
        const auto states = drive.States(row.name);
        Select("My Lear");
        Install();
        Entries installed = WithAircraft(before);
        installed["aircraft\\My_Lear\\Texture\\Lear_t.bmp"] = std::string(100'000, 'B');
        installed["aircraft\\My_Lear\\Unrecognized Files\\flight_model.cfg"] = "in no group";
        EXPECT_EQ(WithoutRecord(drive.Tree(row.name)), installed);
        EXPECT_TRUE(changes.simulator && changes.package);

        user.Expect("This package is already installed in Flight Simulator.", MessageIcon::Information);
        RunInstall();
        ExpectRemoval().Expect("Done.", MessageIcon::None);
        RunRemoval();
        Entries removed = before;
        for (const std::string& path : row.staying)
            removed[path] = installed.at(path);
        EXPECT_EQ(drive.Tree(row.name), removed);
        EXPECT_EQ(drive.Tree("Hangar"), hangar);
        const auto now = drive.States(row.name);
        for (const auto& [path, fileState] : states)
            EXPECT_TRUE(now.at(path) == fileState) << path << ": time or attributes";
    }
}

TEST_F(SimTest, CompressedPackageIsUnpackedOnTheWayAndKnownAgain) {
    PackageBuilder builder(drive, "Hangar\\Jets\\My Lear\\");
    builder.Packed("Texture\\Lear_t.bmp").Packed("Panel\\LearPanel.bmp").Packed("Gauges\\LearClock.gau");
    builder.With("KX_Compression.txt", "1 Meg have been compressed.\r\n");
    builder.With("Texture\\torn.bmp", "").Packed("Texture\\torn.bmp");
    std::string torn = drive.Get("Hangar\\Jets\\My Lear\\Texture\\torn.bmp");
    torn[14] = 'x'; // the CRC-32
    torn[torn.find("PK\x01\x02") + 16] = 'x';
    builder.With("Texture\\torn.bmp", torn);
    // Under the name of its member, as a packed file is.
    std::string tornGauge = torn;
    for (std::size_t at = tornGauge.find("torn.bmp"); at != std::string::npos; at = tornGauge.find("torn.bmp"))
        tornGauge.replace(at, 8, "torn.gau");
    builder.With("Gauges\\torn.gau", tornGauge);
    const Entries hangar = drive.Tree("Hangar");
    const Entries before = drive.Tree("FS");
    Select("My Lear");
    user.Expect("There was a problem unzipping file " + drive.At("Hangar\\Jets\\My Lear\\Texture\\torn.bmp") +
                    ".  It may be corrupt. (code 2)",
                MessageIcon::Exclamation)
        .Expect("There was a problem unzipping file " + drive.At("Hangar\\Jets\\My Lear\\Gauges\\torn.gau") +
                    ".  It may be corrupt. (code 2)",
                MessageIcon::Exclamation);
    Install();
    Entries installed = WithAircraft(before);
    installed["aircraft\\My_Lear\\Texture\\torn.bmp"] = torn;
    installed["gauges\\torn.gau"] = tornGauge;
    EXPECT_EQ(WithoutRecord(drive.Tree("FS")), installed);

    ExpectRemoval().Expect("Done.");
    RunRemoval();
    EXPECT_FALSE(drive.Has("FS\\aircraft\\My_Lear"));
    EXPECT_EQ(drive.Names("FS\\gauges"), std::vector<std::string>{});
    EXPECT_EQ(drive.Tree("Hangar"), hangar);
}

// Every single change of the disk fails once: the aircraft is then there as a whole or not at all, and
// nothing else has changed.
TEST_F(SimTest, AFailedInstallTakesEverythingBack) {
    PackageBuilder(drive, "Hangar\\Jets\\My Lear\\").Packed("Texture\\Lear_t.bmp").Packed("Gauges\\LearClock.gau");
    const Entries hangar = drive.Tree("Hangar");
    user.isPatient = true;
    Select("My Lear");
    bool wasFailing = true;
    int refusals = 0;
    for (int change = 1; wasFailing; ++change) {
        SCOPED_TRACE("change " + std::to_string(change));
        const std::string msfs = "FS" + std::to_string(change);
        locations.MsfsDir = drive.At(msfs + "\\");
        drive.Fill(msfs, "aircraft\\, gauges\\, effects\\");
        const Entries before = drive.Tree(msfs);
        FaultyFiles faulty(drive.Files());
        const bool isKilled = change % 2 == 0;
        isKilled ? faulty.StopAt(change) : faulty.FailAt(change, FileFault::DiskFull);
        RunInstall(faulty);
        wasFailing = faulty.Changes() >= change;

        CleanScratch(drive.Files(), locations);
        const Entries after = drive.Tree(msfs);
        const Entries whole = WithAircraft(before);
        EXPECT_EQ(drive.Tree("Hangar"), hangar);
        if (after.contains("aircraft\\My_Lear\\")) {
            EXPECT_EQ(WithoutRecord(after), whole);
        } else if (!isKilled) {
            EXPECT_EQ(after, before);
            ++refusals;
            EXPECT_THAT(user.transcript.back(), testing::HasSubstr("The reason: "));
        } else {
            // Killed in the middle: whole files of the package may stand beside the others.
            for (const auto& [path, bytes] : after)
                EXPECT_EQ(bytes, whole.at(path)) << path;
        }
    }
    EXPECT_GT(refusals, 20);
}

// The power may fail as soon as it is there.
TEST_F(SimTest, AnInstallIsOnTheDiskBeforeItIsThere) {
    drive.MakeDirectory("FS\\effects");
    PackageBuilder(drive, "Hangar\\Jets\\Lear\\").Packed("Texture\\Lear_t.bmp");
    Select("Lear");
    FaultyFiles watched(drive.Files());
    std::vector<std::string> flushed;
    watched.FailWhere([&](const std::string& change, const std::string& path) {
        if (change == "Flush")
            flushed.push_back(path);
        if (change == "Rename" && path == drive.At("FS\\aircraft\\Lear")) {
            for (const char* file :
                 {"Panel\\panel.cfg", "Texture\\Lear_t.bmp", "Panel", "gauges\\LearCab.cab", "FS\\gauges",
                  "effects\\smoke.fx", "modules\\helper.dll", "FS\\modules", "FS", "sound\\Click.wav"})
                EXPECT_THAT(flushed, testing::Contains(testing::EndsWith(file)));
            flushed.clear();
        }
        return FileFault::None;
    });
    user.ExpectInstallStatus("...PASSED.\n\nInstallation complete.");
    RunInstall(watched);
    EXPECT_EQ(flushed, std::vector<std::string>{drive.At("FS\\aircraft")});
}

} // namespace korvadex::test
