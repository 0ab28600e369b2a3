// The menu entries by name, as the window starts them.
#include "app/commands.h"
#include "tests/support/program_fixture.h"

#include <stdexcept>

namespace korvadex::test {
namespace {

class Commands : public ProgramTest {
  protected:
    Commands() {
        drive.Fill("", "FS\\aircraft\\Installed\\, Hangar\\Jets\\Installed\\x.air=x, Hangar\\Jets\\Lear\\x.air=x, "
                       "Staging\\x.air=x");
        Start();
    }
};

TEST_F(Commands, EachEntryOfThePackageStartsItsOwn) {
    const struct {
        const char *package, *entry, *text;
        Answer answer = Answer::Ok;
    } rows[] = {
        {"Installed", "mnuHangarToMsfs", "This package is already installed in Flight Simulator."},
        {"Installed", "mnuRemoveFromMsfs",
         "Are you sure you want to remove this package from the Flight Simulator directory?", Answer::No},
        {"Lear", "mnuRemoveFromHangar", "Are you sure you want to remove this package from the hangar?", Answer::No},
        {"Installed", "mnuRename", "Sorry, no renaming allowed while package is installed in MSFS...."},
        {"Lear", "mnuCreatePanelAlias", "...does not contain a panel.cfg file.  Cannot create panel alias."},
        {"Lear", "mnuPastePanelAlias", "You'll have to use the 'Create panel alias' option..."},
        {"Lear", "mnuRestoreOldPanel", "This package does not contain an oldpanel.cfg file to restore."},
        {"Lear", "mnuCreateSoundAlias", "...does not contain a sound.cfg file.  Cannot create sound alias."},
        {"Lear", "mnuPasteSoundAlias", "You'll have to use the 'Create sound alias' option..."},
        {"Lear", "mnuRestoreOldSound", "This package does not contain an oldsound.cfg file to restore."},
        {"Lear", "mnuCheckRefs", "Done checking for panel and sound aliases to this package.  None found."},
        {"Installed", "mnuGaugeCrosscheck", "This package doesn't contain a panel to do a gauge crosscheck with."},
        {"Lear", "mnuCopyToStaging", "The staging area is not clear.  Are you sure?", Answer::No},
    };
    const auto before = drive.Tree();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.entry);
        Select("Jets", row.package == std::string("Lear"));
        user.Expect(row.text, row.answer);
        program->RunCommand(row.entry);
    }
    EXPECT_EQ(drive.Tree(), before);
}

TEST_F(Commands, OfTheOtherSideDoNothing) {
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
    Select("Jets", 0);
    runAll(Side::Staging);
    EXPECT_EQ(drive.Tree(), before);
    EXPECT_TRUE(user.transcript.empty());
    for (const char* unknown : {"install", "mnuSep5", ""})
        EXPECT_THROW(program->RunCommand(unknown), std::invalid_argument) << unknown;
}

} // namespace
} // namespace korvadex::test
