// The main window: what it shows, what it offers, and that everyone can reach it.
#include "package/file_primitives.h"
#include "platform/windows_path.h"
#include "tests/support/window_fixture.h"
#include "tests/support/zip_builder.h"
#include "ui/component_lists.h"
#include "ui/menus.h"
#include "ui/toolbar.h"

#include <set>

namespace korvadex::test {

namespace {

// Two categories, the shown one with five packages, and Staging empty.
class HangarWindow : public WindowTest {
  protected:
    HangarWindow() {
        for (const char* name : {"Learjet", "Piper Cub", "Cub Crafter", "Beaver", "Super cub"})
            drive.Put("Hangar\\Jets\\" + std::string(name) + "\\Documentation\\read.txt", name);
        for (const char* name : {"a", "b", "c"})
            drive.Put("Hangar\\Jets\\Beaver\\Documentation\\" + std::string(name) + ".txt", "x");
        drive.Fill("", "Hangar\\Props\\Dakota\\, FS\\aircraft\\Super_cub\\");
        Start();
        Pick(window, "cboPackageCategory", "Jets");
    }

    void ShowPackage(const char* name) {
        int index = 0;
        while (program.View().packages[std::size_t(index)].name != name)
            ++index;
        program.ChoosePackage(index);
    }
    std::string Shown() {
        const std::string& path = program.Package().path;
        return LastPathComponent(path.substr(0, path.size() - 1));
    }
};

// Does something as soon as the widget has come up and events are looked at.
class WhenShown : public QObject {
  public:
    WhenShown(QWidget& widget, std::function<void()> deed) : act(std::move(deed)) { widget.installEventFilter(this); }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Show && act)
            QMetaObject::invokeMethod(this, std::exchange(act, {}), Qt::QueuedConnection);
        return false;
    }

  private:
    std::function<void()> act;
};

} // namespace

TEST_F(HangarWindow, EachSideHasItsOwnControls) {
    const auto menu = [&](const char* name) {
        const QAction* action = Control<QMenu>(window, name).menuAction();
        EXPECT_EQ(QKeySequence::mnemonic(action->text()).isEmpty(), !action->isVisible()) << name;
        return action->isVisible();
    };
    for (const bool isHangar : {true, false, true}) {
        isHangar ? program.GoToHangar() : program.GoToStaging();
        for (const char* name : {"cmdFirstPackage", "cmdPackageNames", "cmdGoToStaging", "cboPackageName"})
            EXPECT_EQ(Control<QWidget>(window, name).isVisible(), isHangar) << name;
        for (const char* name : {"cmdGoToHangar", "txtPackageName"})
            EXPECT_EQ(Control<QWidget>(window, name).isVisible(), !isHangar) << name;
        EXPECT_EQ(menu("mnuHangarOptions"), isHangar);
        EXPECT_EQ(menu("mnuStagingOptions"), !isHangar);
        EXPECT_EQ(Control<QLabel>(window, "lblPackageName").buddy()->objectName(),
                  isHangar ? "cboPackageName" : "txtPackageName");
        EXPECT_LE(window.minimumSizeHint().width(), 660); // 1366 x 768 at 200 %
        EXPECT_LE(window.minimumSizeHint().height(), 330);
    }
}

TEST_F(HangarWindow, MenusAndToolbarOfferWhatTheTableOfCommandsHas) {
    std::string started;
    const auto note = [&](const char* name) { started = name; };
    QObject::connect(window.findChild<Menus*>(), &Menus::Chosen, note);
    QObject::connect(window.findChild<Toolbar*>(), &Toolbar::Chosen, note);
    window.SetProgram(nullptr);

    std::vector<std::string> keys;
    for (const Menu& menu : MainMenus()) {
        SCOPED_TRACE(menu.name);
        std::vector<std::string> expected, offered;
        std::set<QString> accessKeys, shortcuts;
        for (const Command& command : menu.commands) {
            if (command.extras.separator)
                expected.push_back(command.extras.separator);
            expected.push_back(command.entry);
        }
        for (QAction* entry : Control<QMenu>(window, menu.name).actions()) {
            offered.push_back(entry->objectName().toStdString());
            if (entry->isSeparator())
                continue;
            const Command& command = CommandOfEntry(offered.back());
            EXPECT_EQ(entry->isEnabled(), CanWork(command, program.View())) << offered.back();
            entry->setEnabled(true);
            entry->trigger();
            EXPECT_EQ(started == offered.back(), command.routine != nullptr) << started;
            EXPECT_EQ(entry->text(), command.caption);
            const QKeySequence accessKey = QKeySequence::mnemonic(entry->text());
            EXPECT_TRUE(accessKey.isEmpty() ? !entry->shortcut().isEmpty()
                                            : accessKeys.insert(accessKey.toString()).second)
                << started;
            EXPECT_EQ(entry->shortcut(), QKeySequence(command.extras.shortcut));
            EXPECT_TRUE(entry->shortcut().isEmpty() || shortcuts.insert(entry->shortcut().toString()).second);
        }
        EXPECT_EQ(offered, expected);
    }
    auto& toolbar = Control<Toolbar>(window, "Toolbar1");
    for (const Side side : {Side::Staging, Side::Hangar}) {
        MainView view;
        view.HangarSideShown = side == Side::Hangar;
        view.present = ~0u;
        toolbar.ShowState(view);
        keys.clear();
        for (QAction* button : toolbar.actions()) {
            const auto key = button->objectName().toStdString();
            const Command* command = CommandOfKey(key, side);
            EXPECT_EQ(button->isEnabled(), command != nullptr) << key;
            if (command) {
                button->trigger();
                EXPECT_EQ(started, key);
                EXPECT_EQ(button->toolTip(), command->extras.toolTip);
                EXPECT_FALSE(button->icon().isNull()) << key;
            }
            EXPECT_EQ(button->isSeparator(), button->toolTip().isEmpty()) << key;
            keys.push_back(key);
        }
        EXPECT_TRUE(std::ranges::equal(keys, ToolbarKeys()));
    }
    for (const Menu& menu : MainMenus())
        for (const Command& command : menu.commands) {
            const std::string key = command.extras.key;
            EXPECT_THAT(keys, testing::Contains(key));
            EXPECT_TRUE(key.empty() || CommandOfKey(key, menu.side.value_or(Side::Hangar)) == &command) << key;
        }
}

TEST_F(HangarWindow, EveryControlHasANameAndItsTurnInTheTabOrder) {
    QStringList expected = {"cboPackageCategory", "txtPackageFilter", "cboPackageName", "txtPackageName",
                            "txtAircraftName",    "txtPanelAlias",    "txtSoundAlias"};
    for (int group = 0; group < GroupCount; ++group)
        expected.append(QString("lstComponents_%1").arg(group));
    expected += {"txtCollectionFilter", "cboCollectionOrder", "lstQueue"};
    const auto order = TabOrder(Control<QWidget>(window, "cboPackageCategory"));
    EXPECT_EQ(order.filter(QRegularExpression("^(cbo|txt|lst)")), expected);
}

TEST_F(HangarWindow, AccessKeysAreUnique) {
    std::map<QChar, QString> owners;
    const auto add = [&](const QString& text) {
        const int at = int(text.indexOf('&'));
        if (at < 0)
            return;
        const QChar key = text[at + 1].toLower();
        EXPECT_EQ(owners.count(key), 0U) << text.toStdString() << " and " << owners[key].toStdString();
        owners[key] = text;
    };
    for (const auto* label : window.findChildren<QLabel*>())
        if (label->buddy() && label->window() == &window)
            add(label->text());
    for (const auto* button : window.findChildren<QPushButton*>())
        if (button->window() == &window)
            add(button->text());
    for (const auto* menu : Control<QMenuBar>(window, "mnuBar").actions())
        if (menu->isVisible())
            add(menu->text());
    EXPECT_GE(owners.size(), 15U);
}

TEST_F(HangarWindow, IsShownWhereItCanBeReached) {
    const QRect screen = window.screen()->availableGeometry();
    window.ApplyGeometry({.top = 300, .left = 450, .height = 8700, .width = 10500});
    ASSERT_TRUE(window.Geometry());
    EXPECT_EQ(window.Geometry()->top, 300);
    EXPECT_EQ(window.Geometry()->left, 450);
    // A screen that is gone, one with more room, one on the other side.
    for (const auto& [top, left] : {std::pair(900000.0, 900000.0), {300.0, 6000.0}, {-9000.0, -9000.0}}) {
        window.ApplyGeometry({.top = top, .left = left, .height = {}, .width = {}});
        EXPECT_TRUE(screen.contains(window.geometry())) << top;
    }
    const auto normal = *window.Geometry();
    window.showMaximized();
    EXPECT_EQ(window.Geometry()->top, normal.top);
    EXPECT_EQ(window.Geometry()->left, normal.left);
    EXPECT_TRUE(window.Layout().isMaximised);
    window.showMinimized();
    EXPECT_FALSE(window.Geometry());
    window.showNormal();
    auto& splitter = Control<QSplitter>(window, "splMain");
    const auto sizes = splitter.sizes();
    QTest::mousePress(splitter.handle(1), Qt::LeftButton);
    QTest::mouseMove(splitter.handle(1), splitter.handle(1)->rect().center() + QPoint(0, 30));
    QTest::mouseRelease(splitter.handle(1), Qt::LeftButton);
    const auto moved = splitter.sizes();
    EXPECT_GT(moved[0], sizes[0]);
    WindowLayout layout = window.Layout();
    EXPECT_FALSE(layout.isOnePicturePerPackage);
    layout.isOnePicturePerPackage = true;
    splitter.setSizes(sizes);
    window.ApplyLayout(layout);
    EXPECT_EQ(splitter.sizes(), moved);
    EXPECT_TRUE(window.Layout().isOnePicturePerPackage);
}

TEST_F(HangarWindow, TheWheelChangesOnlyWhatHasTheFocus) {
    auto& chooser = Control<QComboBox>(window, "cboPackageCategory");
    const auto turn = [&] {
        const QPointF at = chooser.rect().center();
        QWheelEvent event(at, chooser.mapToGlobal(at), {}, {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(&chooser, &event);
        return chooser.currentText();
    };
    Control<QWidget>(window, "txtPackageFilter").setFocus();
    EXPECT_EQ(turn(), "Jets");
    chooser.setFocus();
    EXPECT_EQ(turn(), "Props");
}

TEST_F(HangarWindow, TheFilterNarrowsWhatTheChooserOffersAndNothingElse) {
    ShowPackage("Beaver");
    auto& chooser = Control<QComboBox>(window, "cboPackageName");
    auto& filter = Control<QLineEdit>(window, "txtPackageFilter");
    Press(Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(filter.hasFocus());
    QTest::keyClicks(&filter, "CUB");
    EXPECT_EQ(Text("lblFilterCount"), "3 of 5");
    EXPECT_EQ(Shown(), "Beaver") << "filtered out of view, yet shown";

    // Enter takes the first that is left; the keys pass over the others, those of the open list too.
    Press(Qt::Key_Return);
    EXPECT_EQ(Shown(), "Cub Crafter");
    Press(Qt::Key_Down);
    EXPECT_EQ(Shown(), "Piper Cub");
    Press(Qt::Key_F, Qt::ControlModifier);
    Press(Qt::Key_Down);
    ASSERT_TRUE(chooser.view()->isVisible());
    int visible = 0;
    for (int row = 0; row < chooser.count(); ++row)
        visible += !chooser.view()->visualRect(chooser.model()->index(row, 0)).isEmpty();
    EXPECT_EQ(visible, 3);
    QTest::keyClick(chooser.view(), Qt::Key_Down);
    QTest::keyClick(chooser.view(), Qt::Key_Return);
    EXPECT_EQ(Shown(), "Super cub");

    // It stays through a command; Escape takes it away and leads back to the chooser.
    Press(Qt::Key_F5);
    EXPECT_EQ(Text("lblFilterCount"), "3 of 5");
    filter.setFocus();
    Press(Qt::Key_Escape);
    EXPECT_TRUE(chooser.hasFocus());
    EXPECT_EQ(filter.text() + Control<QLabel>(window, "lblFilterCount").text(), "");
    while (chooser.currentIndex() > 0)
        Press(Qt::Key_Up);
    EXPECT_EQ(Shown(), "Beaver");

    const auto below = [&] { return Control<QWidget>(window, "txtAircraftName").mapTo(&window, QPoint()).y(); };
    const int place = below();
    Click(window, "cmdGoToStaging");
    QCoreApplication::processEvents();
    EXPECT_FALSE(filter.isEnabled());
    EXPECT_EQ(below(), place);
}

TEST_F(HangarWindow, AProposedNameIsMarkedSoThatTypingReplacesIt) {
    Start();
    drive.Put("Downloads\\zipped.zip", ZipBuilder().Add("aircraft.cfg", "[fltsim.0]\r\ntitle=Lear 45\r\n").Bytes());
    program.OfferArchives({drive.At("Downloads\\zipped.zip")});
    EXPECT_EQ(Control<QTabWidget>(window, "tabComponents").currentIndex(), Aircraft);
    EXPECT_EQ(window.windowTitle(), "Korvadex     (Staging Contains Files)  -  Main");
    program.GoToHangar();
    auto& archives = *Control<QAction>(window, "mnuLastArchives").menu();
    EXPECT_TRUE(DeleteContents(drive.Files(), drive.At("Staging\\")).empty());
    archives.actions().value(0)->trigger();
    QCoreApplication::processEvents();
    auto& field = Control<QLineEdit>(window, "txtPackageName");
    EXPECT_EQ(field.selectedText(), "Lear 45");
    for (const auto key : {Qt::Key_M, Qt::Key_N}) {
        Press(key);
        EXPECT_EQ(field.text(), QString(QChar(key)).toLower());
        EXPECT_EQ(program.View().packageName, field.text().toStdString());
        Press(Qt::Key_K, Qt::AltModifier);
        EXPECT_EQ(field.selectedText(), field.text());
    }
}

TEST_F(WindowTest, AnEmptyWindowInvites) {
    Start();
    const auto isInviting = [&] {
        EXPECT_NE(Control<QWidget>(window, "wgtInvitation").isVisible(),
                  Control<QWidget>(window, "tabComponents").isVisible());
        return Control<QWidget>(window, "wgtInvitation").isVisible();
    };
    EXPECT_TRUE(isInviting());
    // From the Hangar and from Staging: the command of Ctrl+O.
    for (int i = 0; i < 2; ++i) {
        user.Expect("zipFileDialog", [](QWidget& dialog) { PressKey(dialog, Qt::Key_Escape); });
        Click(window, "cmdProcessZip");
        user.Finish();
        EXPECT_EQ(Text("lblHeader"), StagingHeader);
        EXPECT_TRUE(isInviting());
    }
    drive.Put("a.zip", ZipBuilder().Add("aircraft.cfg", "[fltsim.0]\r\ntitle=Lear\r\n").Bytes());
    EXPECT_TRUE(Drop(Control<QWidget>(window, "wgtInvitation"), {Url("a.zip")}));
    EXPECT_FALSE(isInviting());
    program.GoToHangar();
    EXPECT_TRUE(isInviting());
    drive.Put("Hangar\\Aircraft - Military\\Lear\\aircraft.cfg", "x");
    program.Refresh();
    EXPECT_FALSE(isInviting());
}

TEST_F(HangarWindow, KeysDoWhatTheShownSideOffers) {
    ShowPackage("Super cub");
    user.ExpectMessage("Are you sure you want to remove this package from the Flight Simulator directory?", "No");
    Press(Qt::Key_U, Qt::ControlModifier);
    Press(Qt::Key_I, Qt::ControlModifier); // grey, as it is installed
    drive.Put("Hangar\\Jets\\Super cub\\Documentation\\new.txt", "x");
    Press(Qt::Key_F5);
    EXPECT_EQ(Control<QListWidget>(window, "lstComponents_7").count(), 2);

    // From the Hangar, and by the menu's own entry.
    for (int i = 0; i < 2; ++i) {
        user.Expect("zipFileDialog", [](QWidget& dialog) { PressKey(dialog, Qt::Key_Escape); });
        Press(Qt::Key_O, Qt::ControlModifier);
        EXPECT_EQ(Text("lblHeader"), StagingHeader);
    }
    for (const auto& [key, side] : {std::pair(Qt::Key_F8, HangarHeader), {Qt::Key_F7, StagingHeader}})
        for (int i = 0; i < 2; ++i) {
            Press(key);
            EXPECT_EQ(Text("lblHeader"), side);
        }
    Control<QWidget>(window, "txtPackageName").setFocus();
    Press(Qt::Key_H, Qt::ControlModifier); // grey, as Staging is empty
    user.ExpectMessage("Staging is empty.  There is nothing to copy to the Hangar.", "OK");
    Press(Qt::Key_Return);
    Press(Qt::Key_I, Qt::ControlModifier); // these two ask nothing here
    Press(Qt::Key_U, Qt::ControlModifier);
    Press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_FALSE(Control<QLineEdit>(window, "txtPackageFilter").hasFocus());
}

TEST_F(HangarWindow, ExploreAndAbout) {
    ShowPackage("Beaver");
    Click(window, "cmdExplore");
    EXPECT_EQ(launcher.started, std::vector<std::string>{"explore " + drive.At("Hangar\\Jets\\Beaver\\")});
    user.Expect("frmAbout", [](QWidget& dialog) { Click(dialog, "cmdOK"); });
    ChooseEntry("mnuAbout");
}

TEST_F(HangarWindow, ListAndGalleryStandBesideTheWindow) {
    const auto& filter = Control<QLineEdit>(window, "txtPackageFilter");
    Type(window, "txtPackageFilter", "cub");
    ChooseEntry("mnuInstalledPackages");
    auto& lines = Control<QListWidget>(Control<QWidget>(window, "frmFileList"), "lstFileList");
    ClickRow(lines, 0);
    EXPECT_EQ(Shown(), "Super cub");
    EXPECT_EQ(filter.text(), "cub");
    ChooseEntry("mnuAllPackages");
    ClickRow(lines, int(lines.row(lines.findItems("Beaver", Qt::MatchExactly).value(0))));
    EXPECT_EQ(Shown(), "Beaver");
    EXPECT_EQ(filter.text(), "") << "what is shown is offered";
    ShowPackage("Learjet");
    EXPECT_EQ(lines.currentItem()->text(), "Learjet") << "the list follows";
    ShowPackage("Beaver");
    drive.Put("Hangar\\Jets\\Beaver\\Images\\beaver.jpg", PictureBytes({40, 30}));
    drive.Put("Hangar\\Props\\Dakota\\Images\\dakota.jpg", PictureBytes({40, 30}));
    const auto gallery = [] {
        const auto windows = QApplication::topLevelWidgets();
        return *std::find_if(windows.begin(), windows.end(),
                             [](const QWidget* top) { return top->objectName() == "frmPhotos" && top->isVisible(); });
    };
    ChooseEntry("mnuPhotosForAll");
    EXPECT_EQ(gallery()->windowTitle(), "All Packages");
    ChooseEntry("mnuPhotosByCategory");
    EXPECT_EQ(gallery()->windowTitle(), "Packages in Jets");
    ShowPackage("Learjet");
    ShowPackage("Beaver");
    EXPECT_EQ(Control<QLabel>(*gallery(), "lblPackage").text(), "Beaver");
    QTest::mouseDClick(&Control<QWidget>(*gallery(), "imgPhoto_0"), Qt::LeftButton);
    EXPECT_EQ(Control<QComboBox>(window, "cboPackageName").currentText(), "Beaver");
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    QWidget* opened = gallery();
    window.close();
    EXPECT_FALSE(opened->isVisible());
}

TEST_F(HangarWindow, ManyPackagesOfAListAreGoneThrough) {
    ShowPackage("Learjet");
    ChooseEntry("mnuAllPackages");
    auto& dialog = Control<QWidget>(window, "frmFileList");
    auto& lines = Control<QListWidget>(dialog, "lstFileList");
    const auto select = [&](const char* first, const char* second) {
        lines.clearSelection();
        for (const char* name : {first, second})
            QTest::mouseClick(lines.viewport(), Qt::LeftButton, Qt::ControlModifier,
                              lines.visualItemRect(lines.findItems(name, Qt::MatchExactly).value(0)).center());
    };
    select("Beaver", "Dakota");
    EXPECT_EQ(Shown(), "Learjet") << "lines are being selected";
    // Nothing but Stop works in the middle of it.
    auto& stop = Control<QPushButton>(window, "cmdStop");
    WhenShown middle(stop, [&] {
        EXPECT_THROW(Click(window, "cmdGoToStaging"), std::runtime_error); // grey
        Type(dialog, "txtFilter", "lost");
        QTest::keyClick(&lines, Qt::Key_Escape);
        EXPECT_FALSE(stop.isEnabled());
    });
    user.ExpectMessage("0 of 2 packages were installed.*", "OK");
    QTest::keyClick(&lines, Qt::Key_I, Qt::ControlModifier);
    user.Finish();
    EXPECT_TRUE(program.View().HangarSideShown && dialog.isVisible() && !stop.isVisible());
    EXPECT_EQ(Control<QLineEdit>(dialog, "txtFilter").text(), "");

    select("Beaver", "Dakota"); // in the report
    user.ExpectMessage("Done.", "OK");
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, lines.mapToGlobal(QPoint()));
    QCoreApplication::sendEvent(&lines, &event);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    QTest::mouseClick(menu, Qt::LeftButton, {},
                      menu->actionGeometry(&Control<QAction>(*menu, "mnuInstallEach")).center());
    QCoreApplication::processEvents();
    user.Finish();
    EXPECT_TRUE(drive.Has("FS\\aircraft\\Beaver") && drive.Has("FS\\aircraft\\Dakota"));
    EXPECT_EQ(dialog.windowTitle(), "Install 2 packages");
    lines.selectAll();
    user.ExpectMessage("Are you sure you want to remove these packages from the Flight Simulator directory?*", "Yes");
    user.ExpectMessage("Done.", "OK");
    QTest::keyClick(&lines, Qt::Key_U, Qt::ControlModifier);
    user.Finish();
    EXPECT_EQ(drive.Outline("FS\\aircraft"), "Super_cub\\");
    ClickRow(lines, lines.count() - 1);
    EXPECT_EQ(Shown(), "Dakota");
    user.Expect("frmRename", [](QWidget& rename) { PressKey(rename, Qt::Key_Escape); });
    QTest::keyClick(&lines, Qt::Key_F2);
    user.Finish();
    lines.selectAll();
    QTest::keyClick(&lines, Qt::Key_F2); // not for several
}

TEST_F(HangarWindow, IsGreyWhileACommandWorksAndCanStopOrEndIt) {
    ShowPackage("Beaver");
    auto& chooser = Control<QComboBox>(window, "cboPackageName");
    chooser.setFocus();
    auto& stop = Control<QPushButton>(window, "cmdStop");
    WhenShown stopped(stop, [&] {
        for (const char* grey : {"cmdRefresh", "cboPackageName", "Toolbar1", "mnuBar"})
            EXPECT_FALSE(Control<QWidget>(window, grey).isEnabled()) << grey;
        Click(window, "cmdStop");
    });
    user.ExpectMessage("The command was stopped.*", "OK");
    Press(Qt::Key_I, Qt::ControlModifier);
    EXPECT_FALSE(drive.Has("FS\\aircraft\\Beaver"));
    Activate();
    EXPECT_TRUE(chooser.hasFocus());

    WhenShown closed(stop, [&] {
        EXPECT_FALSE(window.close() || window.close());
        EXPECT_EQ(Text("lblStatus"), "Korvadex ends when this command has come to its end.");
    });
    user.ExpectMessage("Done.", "OK");
    Press(Qt::Key_I, Qt::ControlModifier);
    EXPECT_TRUE(drive.Has("FS\\aircraft\\Beaver") && !window.isVisible());
}

TEST_F(HangarWindow, FilesAreOpenedShownAndDeletedByKeyAndMenu) {
    ShowPackage("Beaver");
    auto& lists = Control<ComponentLists>(window, "tabComponents");
    lists.setCurrentIndex(Documentation);
    EXPECT_NE(lists.tabBar()->tabTextColor(Sound), lists.tabBar()->tabTextColor(Documentation));
    auto& list = Control<QListWidget>(window, "lstComponents_7");
    const auto at = [&](int row) { return list.visualItemRect(list.item(row)).center(); };
    const auto choose = [&](const char* entry, QContextMenuEvent::Reason reason, const QPoint& place) {
        QContextMenuEvent event(reason, place, list.mapToGlobal(place));
        QWidget& target = reason == QContextMenuEvent::Mouse ? *list.viewport() : list;
        QCoreApplication::sendEvent(&target, &event);
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_TRUE(menu);
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(&Control<QAction>(*menu, entry)).center());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        user.Finish();
    };
    const auto select = [&](std::initializer_list<int> rows) {
        list.clearSelection();
        for (const int row : rows)
            QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::ControlModifier, at(row));
    };
    const std::string directory = "Hangar\\Jets\\Beaver\\Documentation\\";
    list.setCurrentRow(1);
    choose("mnuOpenComponent", QContextMenuEvent::Mouse, at(1));
    choose("mnuShowComponentInFolder", QContextMenuEvent::Keyboard, {-500, -500});
    QTest::keyClick(&list, Qt::Key_Down);
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(launcher.started,
              (std::vector<std::string>{"open " + drive.At(directory) + "b.txt", "explore " + drive.At(directory),
                                        "open " + drive.At(directory) + "c.txt"}));
    launcher.failures = {{OpenedIn::ItsProgram, "c.txt"}};
    user.ExpectMessage("I don't know what action to take with the selected file type.*", "OK");
    EXPECT_TRUE(QTest::qWaitFor([&] { return launcher.failures.empty(); }));
    user.Finish();
    select({});
    user.ExpectMessage("Select a file to delete first.", "OK");
    QTest::keyClick(&list, Qt::Key_Delete);
    user.Finish();
    select({3, 0});
    user.ExpectMessage("Are you sure you want to delete the 2 files selected?", "Yes");
    QTest::keyClick(&list, Qt::Key_Delete);
    user.Finish();
    EXPECT_EQ(drive.Outline(directory), "b.txt=x, c.txt=x");
    select({1, 0});
    user.ExpectMessage("Are you sure you want to delete the 2 files selected?", "Yes");
    choose("mnuDeleteComponents", QContextMenuEvent::Mouse, at(1));
    EXPECT_EQ(list.count(), 0);
    EXPECT_EQ(lists.tabBar()->tabTextColor(Sound), lists.tabBar()->tabTextColor(Documentation));
}

} // namespace korvadex::test
