// Undo in the menus, and the window History.
#include "package/file_primitives.h"
#include "tests/support/window_fixture.h"

namespace korvadex::test {

namespace {

class HistoryForm : public WindowTest {
  protected:
    HistoryForm() {
        drive.Fill("Hangar", "R&D\\Lear\\Documentation\\read.txt=read, R&D\\Cub\\aircraft.cfg=title=x");
        Start("R&D\\Lear");
    }
    // The package that is shown, of the Hangar.
    void Remove() {
        user.ExpectMessage("Are you sure you want to remove this package from the hangar?", "Yes");
        user.ExpectMessage("Done.", "OK");
        ChooseEntry("mnuRemoveFromHangar");
    }
    std::string Undo(const char* entry = "mnuHangarUndo") {
        const auto& action = Control<QAction>(window, entry);
        return action.isEnabled() ? action.text().toStdString() : "";
    }
    static std::vector<std::string> Rows(const QWidget& form, const char* list, int column) {
        std::vector<std::string> rows;
        const auto& tree = Control<QTreeWidget>(form, list);
        for (int i = 0; i < tree.topLevelItemCount(); ++i)
            rows.push_back(tree.topLevelItem(i)->text(column).toStdString());
        return rows;
    }
    static bool IsEnabled(const QWidget& form, const char* button) {
        return Control<QPushButton>(form, button).isEnabled();
    }
};

using testing::ElementsAre;

} // namespace

TEST_F(HistoryForm, TheMenusNameWhatTheyTakeBack) {
    EXPECT_EQ(Undo(), "");
    Press(Qt::Key_Z, Qt::ControlModifier); // nothing
    Remove();
    EXPECT_EQ(Undo(), "Undo Remove from Hangar R&&D\\Lear");
    EXPECT_EQ(Undo("mnuStagingUndo"), "&Undo Remove from Hangar R&&D\\Lear");
    EXPECT_FALSE(drive.Has("Hangar\\R&D\\Lear"));
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(drive.Has("Hangar\\R&D\\Lear\\Documentation\\read.txt"));
    EXPECT_EQ(Text("lblStatus"), "Taken back: Remove from Hangar R&D\\Lear");
    EXPECT_EQ(Undo(), "");
    EXPECT_EQ(Undo("mnuHangarRedo"), "Redo Remove from Hangar R&&D\\Lear");
    program.GoToStaging();
    Control<QPushButton>(window, "cmdRefresh").setFocus();
    Press(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_FALSE(drive.Has("Hangar\\R&D\\Lear"));
}

TEST_F(HistoryForm, InAFieldTheKeysAreTheFieldsOwn) {
    Remove(); // Lear, then Cub
    Remove();
    Press(Qt::Key_Z, Qt::ControlModifier);
    const auto before = drive.Tree();
    program.GoToStaging();
    auto& field = Control<QLineEdit>(window, "txtPackageName");
    Type(window, "txtPackageName", "Lear");
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(field.text(), "");
    Press(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(field.text(), "Lear");
    EXPECT_EQ(drive.Tree(), before);
    Control<QLineEdit>(window, "txtAircraftName").setFocus(); // only shows
    Press(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_FALSE(drive.Has("Hangar\\R&D\\Cub"));
}

TEST_F(HistoryForm, ALongNameIsCut) {
    const std::string name(100, 'x');
    ASSERT_TRUE(drive.Files().Rename(drive.At("Hangar\\R&D\\Lear"), drive.At("Hangar\\R&D\\" + name)));
    program.Refresh();
    program.ChoosePackage(1);
    Remove();
    EXPECT_EQ(Undo(), "Undo Remove from Hangar R&&D\\" + name.substr(0, 34) + "...");
}

TEST_F(HistoryForm, TakesBackDoesAgainAndEmpties) {
    Remove(); // Lear, then Cub
    Remove();
    EXPECT_TRUE(program.View().isHangarEmpty);
    user.Expect("frmHistory", [&](QWidget& form) {
        EXPECT_THAT(Rows(form, "lstCommands", 2), ElementsAre("R&D\\Cub", "R&D\\Lear"));
        EXPECT_THAT(Rows(form, "lstFiles", 1), ElementsAre(drive.At("Hangar\\R&D\\Cub\\aircraft.cfg")));
        EXPECT_TRUE(IsEnabled(form, "cmdTakeBack"));
        EXPECT_FALSE(IsEnabled(form, "cmdDoAgain"));
        PressKey(form, Qt::Key_Down);
        EXPECT_THAT(Rows(form, "lstFiles", 0), ElementsAre("went"));
        EXPECT_THAT(Rows(form, "lstFiles", 1), ElementsAre(drive.At("Hangar\\R&D\\Lear\\Documentation\\read.txt")));
        user.ExpectMessage("Do you want to take back the last 2 commands, down to*", "Yes");
        Click(form, "cmdTakeBack");
        // The main window shows it at once.
        EXPECT_EQ(form.parentWidget()->findChild<QLineEdit*>("txtAircraftName")->text(), "");
        EXPECT_EQ(program.View().packages.size(), 2u);
        EXPECT_EQ(program.Package().path, drive.At("Hangar\\R&D\\Lear\\"));
        EXPECT_THAT(Rows(form, "lstCommands", 5), ElementsAre("Taken back", "Taken back"));
        EXPECT_FALSE(IsEnabled(form, "cmdTakeBack"));
        Click(form, "cmdDoAgain"); // the selected one is the first
        EXPECT_THAT(Rows(form, "lstCommands", 5), ElementsAre("Taken back", ""));
        EXPECT_FALSE(drive.Has("Hangar\\R&D\\Lear"));

        // A number counts when it is whole.
        auto& commands = Control<QSpinBox>(form, "spnCommands");
        EXPECT_EQ(commands.value(), 30);
        EXPECT_EQ(Control<QSpinBox>(form, "spnMegabytes").value(), 2048);
        form.activateWindow(); // a message box was the last
        EXPECT_TRUE(QTest::qWaitForWindowActive(&form));
        commands.setFocus();
        commands.selectAll();
        QTest::keyClicks(&commands, "100");
        EXPECT_THAT(Rows(form, "lstCommands", 5), testing::SizeIs(2));
        user.ExpectMessage("There is more in the history than that*", "No");
        commands.selectAll();
        QTest::keyClicks(&commands, "1");
        PressKey(form, Qt::Key_Tab);
        EXPECT_EQ(commands.value(), 30);
        commands.setFocus();
        commands.selectAll();
        QTest::keyClicks(&commands, "100");
        PressKey(form, Qt::Key_Escape); // taken over all the same
    });
    ChooseEntry("mnuHistory");
    EXPECT_THAT(drive.Get("App\\kx.ini"), testing::HasSubstr("\r\nHISTORYCOMMANDS=100\r\n"));
    EXPECT_EQ(Undo(), "Undo Remove from Hangar R&&D\\Lear");

    user.Expect("frmHistory", [&](QWidget& form) {
        user.ExpectMessage("Do you want to empty the history?*", "Yes");
        Click(form, "cmdEmpty");
        EXPECT_TRUE(Control<QLabel>(form, "lblInvitation").isVisible());
        for (const char* button : {"cmdTakeBack", "cmdDoAgain", "cmdEmpty"})
            EXPECT_FALSE(IsEnabled(form, button)) << button;
        Click(form, "cmdClose");
    });
    ChooseEntry("mnuHistory");
    EXPECT_EQ(Undo(), "");
    EXPECT_FALSE(drive.Has("Hangar\\~kx~kept"));
}

TEST_F(HistoryForm, EveryControlHasANameAndItsTurnInTheTabOrder) {
    Remove();
    user.Expect("frmHistory", [](QWidget& form) {
        EXPECT_LE(form.minimumSizeHint().width(), 660); // 1366 x 768 at 200 %
        EXPECT_LE(form.minimumSizeHint().height(), 330);
        EXPECT_EQ(TabOrder(*form.focusWidget()).join(' ').toStdString(),
                  "lstCommands lstFiles cmdTakeBack cmdDoAgain cmdEmpty spnCommands spnMegabytes cmdClose");
        PressKey(form, Qt::Key_Escape);
    });
    ChooseEntry("mnuHistory");
}

} // namespace korvadex::test
