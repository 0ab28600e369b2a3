#include "app/overviews.h"

#include "tests/support/program_fixture.h"

namespace korvadex::test {
namespace {

using Names = std::vector<std::string>;
constexpr const char* Gone = "The package you've selected no longer seems to be in the Hangar.";

class Overviews : public ProgramTest {
  protected:
    Overviews() {
        drive.Fill("Hangar", "Empty\\a file is no package.txt=x, Jets\\Big Bird\\Images\\bird.JPG=x, "
                             "Jets\\concorde\\Images\\readme.txt=x, Jets\\Lear\\, Jets\\~kx~scratch\\, "
                             "Props\\Cessna\\images\\cessna.gif=x, Props\\Lear\\Lear.jpg=not where pictures are kept");
        drive.Fill("FS\\aircraft", "Big_Bird\\, LEAR\\, Cessna=a file");
    }
    void ExpectShown(const std::string& caption, const Names& lines) {
        EXPECT_EQ(form.listCaption, caption);
        EXPECT_EQ(form.listLines, lines);
    }
};

TEST_F(Overviews, LinesAndWhatAClickOnEachDoes) {
    const struct {
        std::string caption;
        void (Program::*list)();
        Names lines; // with the package that a click shows: "line@below the Hangar"
    } rows[] = {
        {"Package List",
         &Program::ListAllPackages,
         {"", " -->  Jets", "", "< Big Bird >@Jets\\Big Bird", "concorde@Jets\\concorde", "< Lear >@Jets\\Lear", "",
          " -->  Props", "", "Cessna@Props\\Cessna", "< Lear >@Props\\Lear"}},
        {"Packages with no Images",
         &Program::ListPackagesNoImages,
         {"", " -->  Jets", "", "concorde@Jets\\concorde", "< Lear >@Jets\\Lear", "", " -->  Props", "",
          "< Lear >@Props\\Lear"}},
        {"Packages Installed in MSFS",
         &Program::ListInstalledPackages,
         {"< Big Bird >@Jets\\Big Bird", "< Lear >@Jets\\Lear", "< Lear >@Props\\Lear"}},
        {"Packages in Props", &Program::ListPackagesInCategory, {"Cessna@Props\\Cessna", "Lear@Props\\Lear"}},
        {"Package Categories",
         &Program::ListCategories,
         {" -->  Empty", " -->  Jets@Jets\\Big Bird", " -->  Props@Props\\Cessna"}},
    };
    Start();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.caption);
        Select("Props", 0);
        (program.get()->*row.list)();
        Names lines;
        for (std::size_t i = 0; i < row.lines.size(); ++i) {
            const auto at = row.lines[i].find('@');
            lines.push_back(row.lines[i].substr(0, at));
            Select("Empty", 0);
            program->ChooseFileListLine(static_cast<int>(i));
            EXPECT_EQ(Shown(),
                      at == std::string::npos ? "" : drive.At("Hangar\\" + row.lines[i].substr(at + 1) + "\\"));
        }
        ExpectShown(row.caption, lines);
    }
    for (const int row : {-1, 3})
        program->ChooseFileListLine(row);
    EXPECT_EQ(Shown(), drive.At("Hangar\\Props\\Cessna\\"));

    program->RunCommand("mnuAllPackages");
    ASSERT_TRUE(drive.Files().RemoveDirectory(drive.At("Hangar\\Jets\\Lear")));
    user.Expect(Gone, MessageIcon::Exclamation);
    program->ChooseFileListLine(5); // and not the Lear of the other category
    EXPECT_EQ(Shown(), drive.At("Hangar\\Props\\Cessna\\"));
}

TEST_F(Overviews, TheSideThatEachCommandIsFor) {
    Start();
    for (const char* key : {"ListAllPackages", "ListInstalledPackages"}) {
        program->GoToStaging();
        program->RunCommand(key);
        EXPECT_EQ(form.view.header, "H A N G A R");
    }
    program->GoToStaging();
    program->ListPackagesInCategory(); // its button is off there
    EXPECT_EQ(form.listCaption, "Packages Installed in MSFS");
    program->ListCategories();
    EXPECT_EQ(form.view.header, "S T A G I N G");
    program->ChooseFileListLine(1);
    EXPECT_EQ(form.view.header, "H A N G A R");
}

TEST_F(Overviews, AnOverviewOfMoreThanTwoThousandLinesIsNotShown) {
    for (int i = 0; i < 1997; ++i)
        drive.MakeDirectory("Hangar\\Many\\" + std::to_string(i));
    for (const char* category : {"Jets", "Props"})
        ASSERT_TRUE(drive.Files().Rename(drive.At("Hangar\\" + std::string(category)), drive.At(category)));
    Start();
    program->ListAllPackages();
    EXPECT_EQ(form.listLines.size(), 2000u);
    EXPECT_EQ(form.status, "");

    drive.MakeDirectory("Hangar\\Many\\one more");
    program->Refresh();
    ExpectShown("Package List", {}); // what stood there is no longer true
    EXPECT_EQ(form.status, "\"Package List\" has 2001 lines and is not shown: the list window holds 2000 at most.");
    program->ListCategories();
    program->ListAllPackages();
    EXPECT_EQ(form.listCaption, "Package Categories");
    EXPECT_NE(form.status, "");
}

TEST_F(Overviews, AnOpenListFollowsWhatCommandsChange) {
    Start();
    Select("Jets", 0);
    program->RunCommand("mnuPackagesNoImages");
    ASSERT_TRUE(drive.Files().RemoveDirectory(drive.At("FS\\aircraft\\Big_Bird")));
    user.Expect("Are you sure you want to delete the 1 files selected?", Answer::Yes);
    program->DeleteComponents(Images, {0});
    EXPECT_EQ(form.listLines[3], "Big Bird");

    program->RunCommand("mnuInstalledPackages");
    ExpectShown("Packages Installed in MSFS", {"< Lear >", "< Lear >"});
    user.Expect("Done.");
    program->InstallPackage();
    ExpectShown("Packages Installed in MSFS", {"< Big Bird >", "< Lear >", "< Lear >"});

    // A list that would look the same is left alone, and one that was closed stays closed.
    const int shows = form.listShows;
    program->Refresh();
    form.isListVisible = false;
    drive.MakeDirectory("FS\\aircraft\\concorde");
    program->Refresh();
    EXPECT_EQ(form.listShows, shows);
    EXPECT_EQ(form.view.statusCounts, "5 packages  -  4 installed in MSFS  -  Staging is empty");
}

// The users of an alias are named as the simulator names them, without a category.
TEST_F(Overviews, UsersOfAnAlias) {
    drive.Put("Hangar\\Jets\\Lear\\Panel\\panel.cfg", "[Window00]\r\n");
    for (const std::string owner : {"Big_Bird", "Gone"})
        drive.Put("FS\\aircraft\\" + owner + "\\panel\\panel.cfg", "alias=lear\\panel");
    Start();
    Select("Jets", 2);
    user.Expect("Are you sure you want to remove...", Answer::Yes).Expect("Cannot remove...");
    program->RemovePackageFromSim();
    ExpectShown("panel used in ...", {"< Big Bird >", "< Gone >"});
    program->ChooseFileListLine(0);
    EXPECT_EQ(Shown(), drive.At("Hangar\\Jets\\Big Bird\\"));
    user.Expect(Gone);
    program->ChooseFileListLine(1);
}

// One listing of the simulator answers as the disk does.
TEST_F(Overviews, WhatTheSimulatorHolds) {
    drive.Fill("FS\\aircraft", "my plane\\, My_Plane\\");
    const bool hasLink = drive.MakeLink("FS\\aircraft\\Linked", "Hangar\\Jets");
    const SimAircraft simAircraft(drive.Files(), locations);
    for (const char* name : {"My Plane", "my plane", "BIG BIRD", "Big_Bird", "lear", "Cessna", "", "Linked"})
        EXPECT_EQ(simAircraft.FindDirectory(name), FindSimAircraftDirectory(drive.Files(), locations, name)) << name;
    EXPECT_EQ(simAircraft.Holds("Linked"), hasLink);
}

} // namespace
} // namespace korvadex::test
