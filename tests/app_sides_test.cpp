#include "app/commands.h"
#include "platform/windows_path.h"
#include "tests/support/faulty_files.h"
#include "tests/support/program_fixture.h"
#include "tests/support/zip_builder.h"

#include <stdexcept>

namespace korvadex::test {
namespace {

using Names = std::vector<std::string>;

class Sides : public ProgramTest {
  protected:
    Sides() {
        drive.Fill("Hangar", "Empty\\a file is no package.txt=x, Jets\\Big Bird\\x.air=x, Jets\\Concorde\\x.air=x, "
                             "Jets\\Lear\\x.air=x, Jets\\~kx~scratch\\1~Half\\Half.air=x, "
                             "Props\\Cessna\\x.air=x, Props\\Lear\\x.air=x");
        drive.MakeDirectory("FS\\aircraft\\Big_Bird");
    }
};

TEST_F(Sides, ChoosingACategoryFillsThePackages) {
    Start();
    EXPECT_EQ(form.view.categories, (Names{"Empty", "Jets", "Props"}));

    Select("Jets", 2);
    EXPECT_EQ(form.PackageLines(), (Names{"< Big Bird >", "Concorde", "Lear"}));
    EXPECT_EQ(Shown(), drive.At("Hangar\\Jets\\Lear\\"));

    // The place in the list is kept where the other list has one, else the first is taken.
    program->ChooseCategory(2);
    EXPECT_EQ(Shown(), drive.At("Hangar\\Props\\Cessna\\"));
    program->ChoosePackage(1);
    program->ChooseCategory(1);
    EXPECT_EQ(Shown(), drive.At("Hangar\\Jets\\Concorde\\"));

    const int revision = form.view.listRevision;
    program->ChooseCategory(0);
    EXPECT_EQ(form.view.packageIndex, -1);
    EXPECT_EQ(Shown(), "");
    EXPECT_EQ(form.view.sizeText, "");
    EXPECT_GT(form.view.listRevision, revision);

    program->ChooseCategory(7);
    program->ChoosePackage(3);
    EXPECT_EQ(Shown(), "");
}

TEST_F(Sides, ARefreshKeepsTheSelectionByName) {
    Start();
    Select("Jets", 2);
    drive.Put("Staging\\new.txt", "x");
    program->ShowNextImage();
    EXPECT_EQ(form.view.caption, "Korvadex     (Staging Contains Files)");
    EXPECT_THAT(form.view.statusCounts, testing::EndsWith("Staging contains files"));
    ASSERT_TRUE(drive.Files().Delete(drive.At("Staging\\new.txt")));
    drive.Fill("", "Hangar\\Jets\\Airbus\\Airbus.air=x, Hangar\\Gliders\\, FS\\aircraft\\lear\\");
    program->Refresh();
    EXPECT_EQ(form.view.categories, (Names{"Empty", "Gliders", "Jets", "Props"}));
    EXPECT_EQ(form.view.categoryIndex, 2);
    EXPECT_EQ(form.PackageLines(), (Names{"Airbus", "< Big Bird >", "Concorde", "< Lear >"}));
    // Both packages called Lear are the simulator's lear.
    EXPECT_EQ(form.view.statusCounts, "6 packages  -  3 installed in MSFS  -  Staging is empty");
    EXPECT_EQ(form.view.packageIndex, 3);
    EXPECT_EQ(Shown(), drive.At("Hangar\\Jets\\Lear\\"));

    // The package is gone: the list's first follows its last.
    ASSERT_TRUE(drive.Files().Delete(drive.At("Hangar\\Jets\\Lear\\x.air")));
    ASSERT_TRUE(drive.Files().RemoveDirectory(drive.At("Hangar\\Jets\\Lear")));
    program->Refresh();
    EXPECT_EQ(Shown(), drive.At("Hangar\\Jets\\Airbus\\"));
}

TEST_F(Sides, WhatHasGoneFromTheDiskIsSaidByEveryCommand) {
    std::vector<std::function<void()>> commands = {
        [this] { program->SetFirstPackage(); },
        [this] { program->Explore(); },
        [this] { program->DeleteShownImage(); },
        [this] { program->OpenComponent(Aircraft, 0); },
        [this] { program->DeleteComponents(Aircraft, {0}); },
    };
    for (const Menu& menu : MainMenus())
        if (menu.side == Side::Hangar || menu.name == std::string("mnuNotes"))
            for (const Command& command : menu.commands)
                commands.push_back([&] { program->RunCommand(command.entry); });
    const std::string lear = drive.At("Hangar\\Jets\\Lear"), away = drive.At("Away");
    drive.Fill("Hangar\\Jets\\Lear", "Images\\a.jpg=x, Panel\\panel.cfg=x, Panel\\oldpanel.cfg=x");
    Start();
    const auto expectAnswer = [&](const std::string& gone, const std::string& message, const auto& run) {
        Select("Jets", 2);
        ASSERT_TRUE(drive.Files().Rename(gone, away));
        const auto before = drive.Tree();
        user.Expect(message, MessageIcon::Exclamation);
        run();
        EXPECT_EQ(form.view.statusCounts.find(" is not there") != std::string::npos,
                  message.find("is not there") != std::string::npos);
        EXPECT_EQ(drive.Tree(), before);
        ASSERT_TRUE(drive.Files().Rename(away, gone));
        program->Refresh();
    };
    for (const auto& command : commands)
        expectAnswer(lear, "The package you've selected no longer seems to be in the Hangar.", [&] {
            command();
            EXPECT_EQ(form.PackageLines(), (Names{"< Big Bird >", "Concorde"}));
        });
    expectAnswer(WithoutBackslash(locations.HangarDir),
                 "The Hangar directory " + locations.HangarDir + " is not there...",
                 [&] { program->InstallPackage(); });
    for (const char* entry :
         {"mnuHangarToMsfs", "mnuRemoveFromMsfs", "mnuRemoveFromHangar", "mnuCopyToStaging", "mnuInformation"})
        expectAnswer(WithoutBackslash(locations.MsfsDir),
                     "The MSFS directory " + locations.MsfsDir + " is not there...",
                     [&] { program->RunCommand(entry); });

    program->GoToStaging();
    ASSERT_TRUE(drive.Files().RemoveDirectory(drive.At("Staging")));
    for (const Menu& menu : MainMenus())
        if (menu.side == Side::Staging)
            for (const Command& command : menu.commands) {
                user.Expect("The Staging directory " + locations.StagingDir + " is not there...",
                            MessageIcon::Exclamation);
                program->RunCommand(command.entry);
            }
    EXPECT_TRUE(form.view.statusCounts.ends_with("Staging is not there"));
    EXPECT_TRUE(launcher.started.empty());
}

TEST_F(Sides, CommandsOfTheOtherOneDoNothing) {
    Start();
    Select("Jets", 0);
    program->GoToStaging();
    const auto before = drive.Tree();
    const auto runAll = [&](Side side) {
        for (const Menu& menu : MainMenus())
            for (const Command& command : menu.commands)
                if (menu.side == side && !command.extras.hasButtonOnBothSides)
                    program->RunCommand(command.entry);
    };
    runAll(Side::Hangar);
    program->RunCommand("Uninstall");
    program->GoToHangar();
    runAll(Side::Staging);
    EXPECT_EQ(drive.Tree(), before);
    EXPECT_TRUE(user.transcript.empty());
    for (const char* unknown : {"install", "mnuSep5", ""})
        EXPECT_THROW(program->RunCommand(unknown), std::invalid_argument) << unknown;
}

TEST_F(Sides, SwitchingSides) {
    Start();
    Select("Jets", 1);
    program->GoToStaging();
    EXPECT_EQ(form.view.header, "S T A G I N G");
    EXPECT_FALSE(form.view.HangarSideShown);
    EXPECT_EQ(form.view.caption, "Korvadex");
    EXPECT_EQ(Shown(), locations.StagingDir);

    // In Staging a category is where the package will go; nothing of it is loaded.
    program->ChooseCategory(2);
    EXPECT_EQ(Shown(), locations.StagingDir);
    program->ChoosePackage(0);
    EXPECT_EQ(Shown(), locations.StagingDir);

    drive.Put("Staging\\readme.txt", std::string(2'000'000, 'x'));
    program->Refresh();
    EXPECT_EQ(form.view.caption, "Korvadex     (Staging Contains Files)");
    EXPECT_EQ(form.view.statusCounts, "5 packages  -  1 installed in MSFS  -  Staging contains files");
    EXPECT_EQ(form.view.sizeText, "2 Meg");

    program->GoToHangar();
    EXPECT_EQ(form.view.header, "H A N G A R");
    EXPECT_EQ(Shown(), drive.At("Hangar\\Props\\Lear\\"));
    EXPECT_EQ(form.view.caption, "Korvadex     (Staging Contains Files)");
}

TEST_F(Sides, TheNameFileFillsAnEmptyNameOnly) {
    drive.Put("Staging\\kx_msfsimportname.TXT", "Big_Bird\r\nsecond line\r\n");
    Start();
    program->SetPackageName("Typed");
    program->GoToStaging();
    EXPECT_EQ(form.view.packageName, "Typed");
    program->SetPackageName(" ");
    program->Refresh();
    EXPECT_EQ(form.view.packageName, "Big_Bird");
}

TEST_F(Sides, TheSizeOfACompressedPackage) {
    drive.Put("Hangar\\Jets\\Concorde\\KX_Compression.txt", "9999 Meg have been compressed.\r\n");
    Start();
    Select("Jets", 1);
    EXPECT_EQ(form.view.sizeText, "0 Meg (compressed)");
}

TEST_F(Sides, TheFirstPackage) {
    Start();
    user.Expect("Please select a package in the Hangar first.", MessageIcon::None);
    program->SetFirstPackage();

    Select("Jets", 0);
    user.Expect("Done.\n\nThe Jets\\Big Bird will be the first package you see when you start Korvadex",
                MessageIcon::None);
    program->SetFirstPackage();
    EXPECT_EQ(SavedSettings(), SettingsText("Jets\\Big Bird"));

    // A name that the settings file has no byte for would keep everything else from being saved.
    drive.Put("Hangar\\Jets\\\xD0\x96\\x.air", "x");
    Start();
    Select("Jets", 3);
    user.Expect("The name of this package has a character...", MessageIcon::Exclamation);
    program->SetFirstPackage();
    program->Shutdown();
    EXPECT_EQ(SavedSettings(), SettingsText("Jets\\Big Bird"));
}

class LinkedHangar : public ProgramTest {};

TEST_F(LinkedHangar, ALinkedCategoryOrPackageIsOneLikeTheOthers) {
    drive.Fill("Elsewhere", "Gliders\\Wing\\Wing.air=x, Cub\\Cub.air=y");
    if (!drive.MakeLink("Hangar\\Gliders", "Elsewhere\\Gliders") ||
        !drive.MakeLink("Elsewhere\\Gliders\\Linked", "Elsewhere\\Cub") ||
        !drive.MakeLink("Elsewhere\\Gliders\\Loop", "Hangar"))
        GTEST_SKIP() << "no links here";
    Start();
    EXPECT_EQ(form.view.categories, Names{"Gliders"});
    Select("Gliders", 0);
    EXPECT_EQ(form.PackageLines(), (Names{"Linked", "Wing"}));
    EXPECT_EQ(program->Package().ComponentFiles[Aircraft].size(), 1u);

    user.ExpectRename({"Linked", ""}, false, {{"Cub", ""}});
    program->RenamePackage();
    EXPECT_EQ(Shown(), drive.At("Hangar\\Gliders\\Cub\\"));
    // Only the link goes.
    const auto place = drive.At("Elsewhere\\Cub");
    user.Expect("Are you sure you want to remove this package from the hangar?\n\nIt is a link to " + place +
                    ".  Only the link will be removed.",
                Answer::Yes);
    user.Expect("Done.\n\nThe link was removed.  The files of the package are still in " + place + ".");
    program->RemovePackageFromHangar();
    EXPECT_EQ(form.PackageLines(), Names{"Wing"});
    EXPECT_EQ(drive.Get("Elsewhere\\Cub\\Cub.air"), "y");

    drive.MakeLink("Hangar\\Gone", "Nowhere");
    program->Refresh();
    EXPECT_EQ(form.view.categories, Names{"Gliders"});
}

TEST_F(Sides, AListThatALimitCutIsSaidInTheStatusBar) {
    for (int i = 0; i <= MaxSubdirectoriesPerLevel; ++i)
        drive.MakeDirectory("Hangar\\Props\\Many\\" + std::to_string(i));
    Start();
    EXPECT_EQ(form.status, "");
    Select("Props", 2);
    EXPECT_EQ(form.status, DescribeCut(ListCut::Level, WalkLimits{}));
    program->ChooseCategory(1);
    EXPECT_EQ(form.status, "");
}

TEST_F(Sides, OpeningFiles) {
    const std::string directory = "Hangar\\Jets\\Concorde\\Documentation\\";
    drive.Put(directory + "readme.txt", "x");
    Start();
    Select("Jets", 1);
    program->OpenComponent(Documentation, 0);
    program->ShowComponentInFolder(Documentation, 0);
    program->OpenComponent(Documentation, 1);
    program->OpenComponent(GroupCount, 0);
    program->ShowComponentInFolder(Documentation, 1);
    EXPECT_EQ(launcher.started,
              (Names{"open " + drive.At(directory) + "readme.txt", "explore " + drive.At(directory)}));
}

TEST_F(Sides, APackedFileIsOpenedAsAnUnpackedCopy) {
    const std::string packed = ZipBuilder().Add("panel.bmp", "BM").Bytes();
    drive.Put("Hangar\\Jets\\Concorde\\Texture\\panel.bmp", packed);
    Start();
    Select("Jets", 1);
    program->OpenComponent(Texture, 0);
    ASSERT_EQ(launcher.started.size(), 1u);
    const std::string opened = launcher.started[0].substr(5);
    EXPECT_EQ(LastPathComponent(opened), "panel.bmp");
    EXPECT_EQ(drive.Get(opened.substr(drive.Root().size())), "BM");
    EXPECT_TRUE(drive.Files().Info(opened)->readOnly);
    EXPECT_EQ(drive.Get("Hangar\\Jets\\Concorde\\Texture\\panel.bmp"), packed);
    EXPECT_THAT(form.status, testing::HasSubstr("an unpacked copy of panel.bmp"));
    Start(); // the next time
    EXPECT_FALSE(drive.Files().Info(opened));

    FaultyFiles full(drive.Files());
    full.FailOn("CreateDirectory", "Hangar", FileFault::ReadOnlyDisk);
    ASSERT_TRUE(Make(full).Start());
    Select("Jets", 1);
    program->OpenComponent(Texture, 0);
    EXPECT_THAT(launcher.started.back(), testing::HasSubstr("Staging"));
    full.FailOn("Copy", "panel.bmp", FileFault::DiskFull);
    user.Expect("The file " + drive.At("Hangar\\Jets\\Concorde\\Texture\\panel.bmp") + " is packed, and no...");
    ASSERT_TRUE(Make(full).Start());
    Select("Jets", 1);
    program->OpenComponent(Texture, 0);
    EXPECT_EQ(launcher.started.size(), 2u);
    EXPECT_FALSE(drive.Has("Hangar\\~kx~scratch"));
}

TEST_F(Sides, ACommandIsNotInterruptedByAnother) {
    Start();
    user.Expect("Please select a package in the Hangar first.").Then([this] {
        program->GoToStaging();
        program->ListAllPackages();
        program->SetPackageName("typed meanwhile");
        program->Shutdown();
    });
    form.onShow = [this] { program->ChooseCategory(1); }; // as a chooser does that is filled
    program->SetFirstPackage();
    EXPECT_EQ(form.view.header, "H A N G A R");
    EXPECT_EQ(Shown(), "");
    EXPECT_EQ(form.view.packageName, "");
    EXPECT_EQ(form.ends, 0);
}

TEST_F(Sides, TheReadMePage) {
    Start();
    user.Expect("The read-me page " + drive.At("App\\kxdoc.htm") + " does not exist.");
    program->RunCommand("mnuReadMe");
    drive.Put("App\\kxdoc.htm", "x");
    program->OpenReadMe();
    EXPECT_EQ(launcher.started, Names{"open " + drive.At("App\\kxdoc.htm")});
    launcher.documentCode = 2;
    user.Expect("No program could be started for the read-me page " + drive.At("App\\kxdoc.htm") + "...");
    program->OpenReadMe();
}

} // namespace
} // namespace korvadex::test
