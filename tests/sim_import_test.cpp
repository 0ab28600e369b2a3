#include "sim/import.h"

#include "platform/windows_path.h"
#include "tests/support/faulty_files.h"
#include "tests/support/sim_fixture.h"

namespace korvadex::test {

class ImportTest : public SimTest {
  protected:
    ImportTest() {
        PackageBuilder(drive, "FS\\aircraft\\My_Plane\\")
            .With("KX_MSFSImportName.txt", "old\r\n")
            .With("kx_gauges.txt", "clock.gau\r\n")
            .With("kx_installed.txt", "package\tJets\\My Plane\r\n")
            .With("Documentation\\kx_msfsimportname.txt", "older\r\n");
        drive.Fill("FS\\aircraft", "Paint\\texture\\a.bmp=x, In_Hangar\\Panel\\, Same\\MODEL\\, Zeppelin\\MODEL\\");
        drive.Fill("Hangar", "Jets\\In Hangar\\, Props\\same\\");
    }
    std::map<std::string, std::string> Expected() {
        auto expected = drive.Tree("FS\\aircraft\\My_Plane");
        expected.erase("Documentation\\kx_msfsimportname.txt");
        expected.erase("kx_gauges.txt");
        expected.erase("kx_installed.txt");
        expected["KX_MSFSImportName.txt"] = "My_Plane\r\n";
        return expected;
    }
};

TEST_F(ImportTest, TheChosenAircraftComesWhole) {
    const auto before = drive.Tree("FS");
    user.ExpectImport({"My_Plane", "Zeppelin"}, {});
    EXPECT_EQ(ImportFromSim(context), "");
    EXPECT_EQ(drive.Tree("Staging"), (std::map<std::string, std::string>{}));
    user.ExpectImport({"My_Plane", "Zeppelin"}, {-1, 0})
        .Expect("Please pick a package by selecting it and selecting 'OK' or by double clicking it.");
    EXPECT_EQ(ImportFromSim(context), "My_Plane");
    EXPECT_EQ(drive.Tree("Staging"), Expected());
    EXPECT_EQ(drive.Tree("FS"), before);
}

TEST_F(ImportTest, EveryAircraftIsOffered) {
    for (int i = 0; i <= 1100; ++i) {
        drive.MakeDirectory("FS\\aircraft\\A" + std::to_string(i) + "\\model");
        drive.MakeDirectory("Hangar\\Jets\\A" + std::to_string(i));
    }
    EXPECT_TRUE(drive.Files().RemoveDirectory(drive.At("Hangar\\Jets\\A1099")));
    user.ExpectImport({"A1099", "My_Plane", "Zeppelin"}, {});
    EXPECT_EQ(ImportFromSim(context), "");
    EXPECT_EQ(display.status, "");
}

TEST_F(ImportTest, AnotherImportOfItReplacesOrClearsFirst) {
    drive.Fill("Staging", "KX_MSFSImportName.txt=my_plane, Lear.air=reduced, my notes.txt=mine");
    ASSERT_TRUE(drive.Files().SetReadOnly(drive.At("Staging\\Lear.air"), true));
    const std::string offer = "Staging still holds what an earlier import of My_Plane has brought...";
    const auto expectImport = [&](Answer answer) {
        user.ExpectImport({"My_Plane", "Zeppelin"}, {0}).Expect(offer, answer, MessageIcon::None);
        EXPECT_EQ(ImportFromSim(context), "My_Plane");
    };
    auto expected = Expected();
    expected["my notes.txt"] = "mine";
    expectImport(Answer::No);
    EXPECT_EQ(drive.Tree("Staging"), expected);
    expectImport(Answer::Yes);
    EXPECT_EQ(drive.Tree("Staging"), Expected());

    // What cannot be imported clears nothing.
    FaultyFiles faulty(drive.Files());
    faulty.freeSpace = 0;
    CommandContext full = On(faulty);
    user.ExpectImport({"My_Plane", "Zeppelin"}, {1});
    drive.Put("FS\\aircraft\\Zeppelin\\hull.air", std::string(100'000, 'x'));
    drive.Put("Staging\\KX_MSFSImportName.txt", "Zeppelin\r\n");
    user.Expect(offer.substr(0, 19) + "...", Answer::Yes).Expect("There is not enough room...");
    const auto staged = drive.Tree("Staging");
    EXPECT_EQ(ImportFromSim(full), "");
    EXPECT_EQ(drive.Tree("Staging"), staged);

    // What stands in Staging itself would be cleared away before it is copied.
    drive.MakeDirectory("Staging\\Own\\model");
    drive.Put("Staging\\KX_MSFSImportName.txt", "Own\r\n");
    if (!drive.MakeLink("FS\\aircraft\\Own", "Staging\\Own"))
        return;
    user.ExpectImport({"My_Plane", "Own", "Zeppelin"}, {1}).Expect("...leads to Staging itself...");
    EXPECT_EQ(ImportFromSim(context), "");
    EXPECT_TRUE(drive.Has("Staging\\Own\\model"));
}

// A power cut leaves no half file under a real name, and all files when it comes after the end.
TEST_F(ImportTest, FilesAreWholeAndOnTheDiskBeforeTheyBearTheirNames) {
    drive.Fill("Staging", "Lear.air=another, readme.txt=mine");
    FaultyFiles watched(drive.Files());
    std::set<std::string> flushed, named;
    watched.FailWhere([&](const std::string& change, const std::string& path) {
        EXPECT_TRUE(change != "Copy" || path.find("~kx~scratch") != std::string::npos) << path;
        if (change == "Flush")
            flushed.insert(LastPathComponent(path));
        const bool isNaming = (change == "Rename" || change == "Replace") && !path.ends_with("Name.txt");
        if (isNaming) {
            EXPECT_TRUE(flushed.contains(LastPathComponent(path))) << path;
            named.insert(path.substr(locations.StagingDir.size()));
        }
        return FileFault::None;
    });
    CommandContext disk = On(watched);
    user.ExpectImport({"My_Plane", "Zeppelin"}, {0});
    EXPECT_EQ(ImportFromSim(disk), "My_Plane");
    EXPECT_TRUE(named.contains("Lear.air") && named.contains("Model\\lear.mdl"));
    for (const char* directory : {"Model", "Staging"})
        EXPECT_TRUE(flushed.contains(directory)) << directory;
    auto expected = Expected();
    expected["readme.txt"] = "mine";
    EXPECT_EQ(drive.Tree("Staging"), expected);
}

TEST_F(ImportTest, APartialImportIsSaid) {
    const auto before = drive.Tree("FS");
    drive.MakeDirectory("Staging\\Lear.air");
    drive.Put("Staging\\Model\\lear.mdl", PackageBuilder::Files().at("Model\\lear.mdl"));
    FaultyFiles faulty(drive.Files());
    faulty.FailOn("Copy", "Engine.wav", FileFault::DiskFull);
    CommandContext full = On(faulty);
    user.ExpectImport({"My_Plane", "Zeppelin"}, {0})
        .Expect("The import is not complete.  The following files could not be copied to Staging ...\n\n"
                "Lear.air (a file or directory of that name is already there)\nSound\\Engine.wav (the disk is full)\n\n"
                "The aircraft in Flight Simulator is as it was.",
                MessageIcon::Exclamation);
    EXPECT_EQ(ImportFromSim(full), "My_Plane");
    auto expected = Expected();
    expected.erase("Lear.air");
    expected["Lear.air\\"] = "";
    expected.erase("Sound\\Engine.wav");
    EXPECT_EQ(drive.Tree("Staging"), expected);
    EXPECT_EQ(drive.Tree("FS"), before);

    limits.FileMax = 3;
    const auto staged = drive.Tree("Staging");
    user.ExpectImport({"My_Plane", "Zeppelin"}, {0}).Expect("...", MessageIcon::Exclamation);
    EXPECT_EQ(ImportFromSim(context), "");
    EXPECT_THAT(user.transcript.back(), testing::EndsWith("Nothing was imported."));
    limits.FileMax = 5000;
    faulty.unreadable = drive.At("FS\\aircraft\\My_Plane\\Sound\\");
    user.ExpectImport({"My_Plane", "Zeppelin"}, {0})
        .Expect("The directory " + faulty.unreadable + " could not be read....");
    EXPECT_EQ(ImportFromSim(full), "");
    EXPECT_EQ(drive.Tree("Staging"), staged);
}

} // namespace korvadex::test
