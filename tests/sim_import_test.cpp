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

TEST_F(ImportTest, WhatCannotBeImportedClearsNothing) {
    drive.Put("FS\\aircraft\\Zeppelin\\hull.air", std::string(100'000, 'x'));
    drive.Fill("Staging", "KX_MSFSImportName.txt=Zeppelin, large.bmp=" + std::string(200'000, 'x')); // is kept
    const auto staged = drive.Tree("Staging");
    const auto expectRefusal = [&](FileSystem& files) {
        CommandContext disk = On(files);
        EXPECT_EQ(ImportFromSim(disk), "");
        EXPECT_EQ(drive.Tree("Staging"), staged);
    };
    FaultyFiles full(drive.Files());
    full.freeSpace = 0;
    user.ExpectImport({"My_Plane", "Zeppelin"}, {1})
        .Expect("Staging still holds what an earlier...", Answer::Yes)
        .Expect("There is not enough room...Nothing was imported.", MessageIcon::Exclamation);
    expectRefusal(full);
    drive.Fill("FS\\aircraft\\Zeppelin", "1=, 2=, 3=");
    limits.FileMax = 3;
    user.ExpectImport({"My_Plane", "Zeppelin"}, {1})
        .Expect("There are more than 3 files...Nothing was imported.", MessageIcon::Exclamation);
    expectRefusal(drive.Files());
    limits.FileMax = 5000;
    FaultyFiles closed(drive.Files());
    closed.unreadable = drive.At("FS\\aircraft\\Zeppelin\\MODEL\\");
    user.ExpectImport({"My_Plane", "Zeppelin"}, {1})
        .Expect("The directory " + closed.unreadable + " could not be read....");
    expectRefusal(closed);
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

} // namespace korvadex::test
