// What the case files of the two sides, lists and pictures cannot say.
#include "app/commands.h"
#include "package/file_primitives.h"
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
        drive.Fill("", "Hangar\\Empty\\, Hangar\\Jets\\Big Bird\\x.air=x, Hangar\\Jets\\Concorde\\x.air=x, "
                       "Hangar\\Jets\\Lear\\x.air=x, Hangar\\Props\\Cessna\\x.air=x, Hangar\\Props\\Lear\\x.air=x, "
                       "FS\\aircraft\\Big_Bird\\");
    }
};

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
                if (!command.extras.object) // what is undone need not be what is shown
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
    ASSERT_TRUE(drive.Files().Rename(drive.At("Staging"), drive.At("Away")));
    for (const Menu& menu : MainMenus())
        if (menu.side == Side::Staging)
            for (const Command& command : menu.commands) {
                if (command.extras.object)
                    continue;
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
        for (int i = 0; i < 2; ++i)
            program->Shutdown();
        EXPECT_EQ(form.status, "Korvadex ends when this command has come to its end.");
        EXPECT_EQ(form.ends, 0);
    });
    form.onShow = [this] { program->ChooseCategory(1); }; // as a chooser does that is filled
    program->SetFirstPackage();
    EXPECT_EQ(form.view.header, "H A N G A R");
    EXPECT_EQ(Shown(), "");
    EXPECT_EQ(form.view.packageName, "");
    EXPECT_EQ(form.ends, 1);
}

TEST_F(Sides, WhatIsGreyWouldOnlyRefuse) {
    drive.Fill("Hangar\\Jets\\Lear", "Panel\\panel.cfg=x, Sound\\sound.cfg=x");
    Start();
    user.isPatient = true;
    const auto move = [&](const char* from, const char* to) {
        ASSERT_TRUE(drive.Files().Rename(drive.At(from), drive.At(to)));
    };
    const std::string ofQueue = " TakeNext TakeAll";
    const std::string all = ofQueue +
                            " HangarUndo HangarRedo HangarToMsfs RemoveFromMsfs RemoveFromHangar Rename "
                            "CreatePanelAlias PastePanelAlias RestoreOldPanel CreateSoundAlias PasteSoundAlias "
                            "RestoreOldSound CheckRefs GaugeCrosscheck CopyToStaging Compress Decompress CreateNotes "
                            "DeleteNotes ReadNotes ImportImageClipboard ImportImage Information";
    const std::string ofStaging = " StagingToHangar RemoveStaging RemovePanelFromStaging RemoveAircraftFromStaging "
                                  "RemoveSoundFromStaging";
    const struct {
        const char* state;
        std::function<void()> enter;
        std::string grey;
        std::function<void()> change = {}; // by another program
        const char* works = "";            // then
    } rows[] = {
        {"none selected", [&] { program->ChooseCategory(0); }, all},
        {"installed", [&] { Select("Jets", 0); },
         ofQueue + " HangarUndo HangarRedo HangarToMsfs PastePanelAlias PasteSoundAlias",
         [&] { move("FS\\aircraft\\Big_Bird", "FS\\Big_Bird"); }, "mnuHangarToMsfs"},
        {"not installed", [&] { Select("Jets", 2); },
         ofQueue + " HangarUndo HangarRedo RemoveFromMsfs PastePanelAlias PasteSoundAlias GaugeCrosscheck",
         [&] { drive.MakeDirectory("FS\\aircraft\\Lear"); }, "mnuRemoveFromMsfs"},
        {"lenders held",
         [&] {
             Select("Jets", 2);
             program->CreatePanelAlias();
             program->CreateSoundAlias();
         },
         ofQueue + " HangarUndo HangarRedo HangarToMsfs"},
        {"empty Staging", [&] { program->GoToStaging(); },
         " PhotosByCategory PhotosForAll" + ofQueue + " StagingUndo StagingRedo" + ofStaging,
         [&] { drive.Put("Staging\\late.txt", "x"); }, "mnuStagingToHangar"},
        {"files in Staging", [&] { program->GoToStaging(); },
         " PhotosByCategory PhotosForAll" + ofQueue + " StagingUndo StagingRedo"},
        {"empty Hangar",
         [&] {
             program->GoToHangar();
             if (!drive.Has("Jets"))
                 for (const char* category : {"Jets", "Props"})
                     move(("Hangar\\" + std::string(category)).c_str(), category);
             program->Refresh();
         },
         " CompressAll DecompressAll UninstallCategory UninstallAll" + all,
         [&] { move("Props", "Hangar\\Empty\\Glider"); }, "mnuCompressAll"},
    };
    const auto now = [&] {
        return std::tuple(drive.Tree(), form.listShows, form.galleryShows, launcher.started.size());
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.state);
        row.enter();
        std::string grey;
        const Side side = form.view.HangarSideShown ? Side::Hangar : Side::Staging;
        for (const Menu& menu : MainMenus())
            for (const Command& command : menu.commands) {
                if (menu.side.value_or(side) != side || CanWork(command, form.view))
                    continue;
                grey.append(" ").append(std::string_view(command.entry).substr(3));
                const auto before = now();
                user.transcript.clear();
                program->RunCommand(command.entry);
                EXPECT_EQ(now(), before) << command.entry;
                EXPECT_LE(user.transcript.size(), 2u) << command.entry; // a question, and why not
                row.enter();
            }
        EXPECT_EQ(grey, std::string(" LastArchives").append(row.grey));
        if (!row.change)
            continue;
        row.change();
        program->LookAgain();
        EXPECT_TRUE(CanWork(CommandOfEntry(row.works), form.view));
    }
    for (const PackageCommand& command : PackageCommands())
        for (const auto& [name, need] : {std::pair("Lear", NeedsInstalled), std::pair("Concorde", NeedsNotInstalled)})
            EXPECT_EQ(program->CanWorkOn(command, {{"Jets", name}}), !command.needs || command.needs == need);
}

TEST_F(Sides, TheReadMePageIsOpenedAtAChapterOrNamed) {
    drive.Put("App\\kxdoc.htm", "x");
    Start();
    const auto leadsTo = [&](const std::string& chapter) {
        const auto page = drive.Get("App\\kxhelp.htm");
        return page.find("kxdoc.htm#" + chapter + "\"") != page.npos && page.find("url=file:///") != page.npos;
    };
    program->OpenHelpOnSide();
    EXPECT_TRUE(leadsTo("window"));
    program->OpenHelp("history");
    EXPECT_TRUE(leadsTo("history"));
    program->GoToStaging();
    program->OpenHelp("");
    EXPECT_TRUE(leadsTo("staging"));
    EXPECT_EQ(launcher.started.back(), "open " + drive.At("App\\kxhelp.htm"));
    EXPECT_TRUE(DeleteFileForced(drive.Files(), drive.At("App\\kxhelp.htm")));
    drive.MakeDirectory("App\\kxhelp.htm");
    program->OpenHelpOnSide();
    EXPECT_EQ(launcher.started.back(), "open " + drive.At("App\\kxdoc.htm"));
    launcher.documentCode = 2;
    user.Expect("No program could be started for the read-me page " + drive.At("App\\kxdoc.htm") + "...");
    program->OpenReadMe();
}

TEST_F(Sides, AnOverviewOfMoreThanTwoThousandLinesIsNotShown) {
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
    EXPECT_EQ(form.listCaption, "Package List");
    EXPECT_EQ(form.listLines, Names()); // what stood there is no longer true
    EXPECT_EQ(form.status, "\"Package List\" has 2001 lines and is not shown: the list window holds 2000 at most.");
    program->ListCategories();
    program->ListAllPackages();
    EXPECT_EQ(form.listCaption, "Package Categories");
    EXPECT_NE(form.status, "");
}

TEST_F(Sides, InformationIsThatOfTheFileAsItIsNow) {
    drive.Put("FS\\fs2002.exe", "MZ");
    Start();
    Select("Jets", 2);
    for (const char* id : {"N1", "N2"}) {
        drive.Put("Hangar\\Jets\\Lear\\aircraft.cfg", "[fltsim.0]\r\natc_id=" + std::string(id) + "\r\n");
        user.ExpectInfo([&](const InfoForm& shown) { EXPECT_EQ(shown.info.atcId, id); });
        program->RunCommand("Information");
    }
}

} // namespace
} // namespace korvadex::test
