// The queue of archives beside the form, by mouse and by keys.
#include "tests/support/window_fixture.h"
#include "tests/support/zip_builder.h"

namespace korvadex::test {

namespace {

class QueueWindow : public WindowTest {
  protected:
    QueueWindow() {
        for (const char* name : {"a", "deep\\c"})
            drive.Put(std::string("Zips\\") + name + ".zip",
                      ZipBuilder()
                          .Add("aircraft.cfg", std::string("[fltsim.0]\r\ntitle=Plane ") + name[0] + "\r\n")
                          .Add("model.cfg", "m")
                          .Add("panel.cfg", "p")
                          .Add("sound.cfg", "s")
                          .Bytes());
        drive.Put("Zips\\b.zip", ZipBuilder().Add("b.txt", "b").Bytes());
        drive.Put("Zips\\d.zip", "damaged");
        drive.Put("Staging\\ours.txt", "x");
        drive.MakeDirectory("Hangar\\Jets");
        Start();
        EXPECT_FALSE(Control<QWidget>(window, "pnlQueue").isVisible());
        EXPECT_TRUE(Drop(window, {Url("Zips")}));
        QCoreApplication::processEvents();
    }
    QTreeWidget& List() { return Control<QTreeWidget>(window, "lstQueue"); }
    std::string Rows() {
        std::string rows;
        for (int i = 0; i < List().topLevelItemCount(); ++i)
            rows += (List().topLevelItem(i)->text(0) + ":" + List().topLevelItem(i)->text(1) + "|").toStdString();
        return rows;
    }
    void PressInList(Qt::Key key) {
        QTest::keyClick(&List(), key);
        QCoreApplication::processEvents();
        user.Finish();
    }
    void ClearStaging() {
        user.ExpectMessage("Are you sure you want to erase everything in the staging directory?", "Yes");
        user.ExpectMessage("Done.", "OK");
        program.RemoveAllFromStaging();
    }
    void Press(const char* button) {
        Click(window, button);
        QCoreApplication::processEvents();
        user.Finish();
    }
};

} // namespace

TEST_F(QueueWindow, IsUsedByKeysAndMenu) {
    EXPECT_EQ(Rows(), "a.zip:|b.zip:|d.zip:|c.zip:|");
    EXPECT_EQ(Text("lblQueue"), "4 archives wait");
    // Beside a hidden collection as well.
    EXPECT_TRUE(List().isVisible());
    WindowTest::Press(Qt::Key_F9);
    EXPECT_TRUE(List().isVisible());
    auto& splitter = Control<QSplitter>(window, "splLeft");
    QTest::mousePress(splitter.handle(1), Qt::LeftButton);
    QTest::mouseMove(splitter.handle(1), splitter.handle(1)->rect().center() + QPoint(0, 30));
    QTest::mouseRelease(splitter.handle(1), Qt::LeftButton);
    const auto moved = splitter.sizes();
    const WindowLayout layout = window.Layout();
    EXPECT_GT(layout.queueShare, 0);
    splitter.setSizes({moved[1], moved[0]});
    window.ApplyLayout(layout);
    EXPECT_EQ(splitter.sizes(), moved);
    EXPECT_FALSE(Control<QPushButton>(window, "cmdUnqueue").isEnabled());
    List().setCurrentItem(List().topLevelItem(0));
    EXPECT_TRUE(TabOrder(List()).mid(0, 5) ==
                QStringList({"lstQueue", "cmdTakeNext", "cmdSkip", "cmdUnqueue", "cmdTakeAll"}));

    auto& status = Control<QLabel>(window, "lblStatus");
    for (const char* text : {"short", "long "}) {
        window.ShowStatus(text + std::string(text[0] == 'l' ? 2000 : 0, 'x'));
        QHelpEvent hover(QEvent::ToolTip, {1, 1}, status.mapToGlobal(QPoint(1, 1)));
        QCoreApplication::sendEvent(&status, &hover);
        EXPECT_EQ(status.toolTip().isEmpty(), text[0] == 's');
    }
    EXPECT_TRUE(List().isColumnHidden(1)) << "there is no reason yet";

    user.ExpectMessage("Staging still contains files.*", "OK");
    Press("cmdTakeNext");
    ClearStaging();
    Press("cmdTakeNext");
    EXPECT_EQ(Text("lblStatus"), "1 of 4: a.zip");
    EXPECT_EQ(Rows(), "b.zip:|d.zip:|c.zip:|");
    List().setFocus();
    List().setCurrentItem(List().topLevelItem(1));
    PressInList(Qt::Key_Delete);
    EXPECT_EQ(Rows(), "b.zip:|c.zip:|");
    ClearStaging();
    List().setCurrentItem(List().topLevelItem(1));
    PressInList(Qt::Key_Return);
    EXPECT_EQ(Text("lblStatus"), "2 of 3: c.zip");
    EXPECT_TRUE(drive.Has("Staging\\ZIP_c.zip"));

    List().setCurrentItem(List().topLevelItem(0));
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {1, 1}, List().mapToGlobal(QPoint(1, 1)));
    QCoreApplication::sendEvent(List().viewport(), &event);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    menu->close();
    user.ExpectMessage("Staging currently contains files.  Proceed?*", "Yes");
    Control<QAction>(*menu, "mnuAddArchive").trigger();
    QCoreApplication::processEvents();
    user.Finish();
    EXPECT_TRUE(drive.Has("Staging\\ZIP_b.zip"));
    EXPECT_FALSE(List().isVisible());
}

TEST_F(QueueWindow, WhatTheKeysReachIsInSight) {
    window.resize(660, 330); // 1366 x 768 at 200 %
    Activate();
    auto& first = static_cast<QWidget&>(List());
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
        first.setFocus();
        QWidgetList reached;
        for (const QWidget* focus = &first; !reached.contains(focus); focus = window.focusWidget()) {
            reached.append(const_cast<QWidget*>(focus));
            EXPECT_GE(InSight(*focus).height(), qMin(focus->height(), 60)) << focus->objectName().toStdString();
            WindowTest::Press(key);
            QCoreApplication::processEvents();
        }
        EXPECT_TRUE(first.hasFocus()) << window.focusWidget()->objectName().toStdString();
        EXPECT_GT(reached.size(), 10);
    }
}

TEST_F(QueueWindow, TakesAllIntoACategoryThatIsChosenOnce) {
    ClearStaging();
    user.Expect("InputBox", [](QWidget& box) {
        auto& field = Control<QComboBox>(box, "cboInput");
        EXPECT_EQ(field.currentText(), "Jets");
        EXPECT_FALSE(field.accessibleName().isEmpty());
        EXPECT_FALSE(Control<QWidget>(box, "txtInput").isVisible());
        field.lineEdit()->selectAll();
        QTest::keyClicks(&field, "Newly made");
        PressKey(field, Qt::Key_Return);
    });
    user.ExpectMessage("2 of 4 archives were taken into the Hangar.*", "OK");
    Press("cmdTakeAll");
    EXPECT_TRUE(drive.Has("Hangar\\Newly made\\Plane a\\Model\\model.cfg"));
    EXPECT_THAT(Rows(),
                testing::MatchesRegex("b.zip:The aircraft.cfg file is missing.*\\|d.zip:There was a problem.*"));
    const auto& report = Control<QDialog>(window, "frmFileList");
    EXPECT_TRUE(QTest::qWaitFor([&] { return report.isActiveWindow(); }));
}

} // namespace korvadex::test
