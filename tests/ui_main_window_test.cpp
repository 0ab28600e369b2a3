// The main window: what it shows, what it offers, and that everyone can reach it.
#include "package/file_primitives.h"
#include "platform/windows_path.h"
#include "tests/support/command_fixture.h"
#include "tests/support/modal_user.h"
#include "tests/support/temporary_drive.h"
#include "tests/support/zip_builder.h"
#include "ui/component_lists.h"
#include "ui/dialogs.h"
#include "ui/frmHangar.h"
#include "ui/menus.h"
#include "ui/picture_box.h"
#include "ui/toolbar.h"

#include <QtTest>
#include <QtWidgets>

namespace korvadex::test {

namespace {

class MainWindowTest : public testing::Test {
  protected:
    MainWindowTest() {
        view.categories = {"Jets", "Props"};
        view.categoryIndex = 1;
        view.packages = {"Lear", "< B 17 >"};
        view.packageIndex = 1;
        view.listRevision = 1;
        package.aircraftTitle = "B 17  Fortress";
        package.panelText = "None  (Original panel)";
        package.soundText = "b 17\\sound";
        for (const char* name : {"a.bmp", "b.bmp", "c.bmp", "d.bmp"})
            package.ComponentFiles[Texture].push_back(Entry(std::string("Hangar\\") + name));
    }

    FileEntry Entry(const std::string& relative) {
        drive.Put(relative, "x");
        return {drive.At(relative), {}};
    }
    void Show() {
        window.ShowView(view, package);
        window.show();
    }
    void ShowStaging() {
        view.HangarSideShown = false;
        view.header = StagingHeader;
        Show();
    }
    bool IsVisible(const char* name) { return Control<QWidget>(window, name).isVisible(); }

    TemporaryDrive drive;
    MainView view;
    LoadedPackage package;
    frmHangar window{drive.Files()};
};

void SavePicture(TemporaryDrive& drive, const std::string& relative, QSize size, QColor colour) {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, "JPG", 90);
    drive.Put(relative, bytes.toStdString());
}

} // namespace

TEST_F(MainWindowTest, ShowsThePackage) {
    Show();
    EXPECT_EQ(Control<QComboBox>(window, "cboPackageCategory").currentText(), "Props");
    EXPECT_EQ(Control<QComboBox>(window, "cboPackageName").currentText(), "< B 17 >");
    EXPECT_EQ(Control<QLineEdit>(window, "txtAircraftName").text(), "B 17  Fortress");
    EXPECT_EQ(Control<QLineEdit>(window, "txtPanelAlias").text(), "None  (Original panel)");
    EXPECT_EQ(Control<QLineEdit>(window, "txtSoundAlias").text(), "b 17\\sound");
    EXPECT_EQ(Control<QLabel>(window, "lblImageName").text(), "No images currently available for viewing.");
    const auto& textures = Control<QListWidget>(window, "lstComponents_5");
    EXPECT_EQ(textures.count(), 4);
    EXPECT_EQ(textures.item(2)->text(), "c.bmp");
    EXPECT_TRUE(Control<ComponentLists>(window, "tabComponents").tabText(Texture).startsWith("Texture"));

    // Nothing is left of the package when the next one is shown.
    package = {};
    view.listRevision = 2;
    view.packages.clear();
    view.packageIndex = -1;
    Show();
    EXPECT_EQ(textures.count(), 0);
    EXPECT_EQ(Control<QComboBox>(window, "cboPackageName").currentText(), "");
    EXPECT_EQ(Control<QLineEdit>(window, "txtAircraftName").text(), "");
}

TEST_F(MainWindowTest, EachSideHasItsOwnControls) {
    const char* const hangarOnly[] = {"cmdFirstPackage", "cmdPackageNames", "cmdGoToStaging",
                                      "cboPackageName"};
    const char* const stagingOnly[] = {"cmdGoToHangar", "txtPackageName"};
    const auto menu = [&](const char* name) {
        const QAction* action = Control<QMenu>(window, name).menuAction();
        EXPECT_EQ(QKeySequence::mnemonic(action->text()).isEmpty(), !action->isVisible()) << name;
        return action->isVisible();
    };
    const auto tip = [&](const char* key) { return Control<QAction>(window, key).toolTip().toStdString(); };
    for (const bool isHangar : {true, false, true}) {
        view.HangarSideShown = isHangar;
        Show();
        for (const char* name : hangarOnly)
            EXPECT_EQ(IsVisible(name), isHangar) << name;
        for (const char* name : stagingOnly)
            EXPECT_EQ(IsVisible(name), !isHangar) << name;
        EXPECT_EQ(menu("mnuHangarOptions"), isHangar);
        EXPECT_EQ(menu("mnuStagingOptions"), !isHangar);
        EXPECT_EQ(tip("Install"), isHangar ? "Copy package to MSFS" : "Copy packge to Hangar");
        EXPECT_EQ(tip("RemovePackage"), isHangar ? "Remove package from Hangar" : "Remove all from Staging");
        EXPECT_EQ(tip("Uninstall"), "Remove package from MSFS");
        EXPECT_EQ(Control<QLabel>(window, "lblPackageName").buddy()->objectName(),
                  isHangar ? "cboPackageName" : "txtPackageName");
    }
}

TEST_F(MainWindowTest, MenuEntriesGiveTheirCodeToTheirProcessor) {
    auto& menus = *Control<QMenuBar>(window, "mnuBar").findChild<Menus*>();
    QSignalSpy commands(&menus, &Menus::CommandChosen);
    const char* const entries[] = {
        // Staging, then Hangar, in the order of the codes
        "mnuStagingToHangar", "mnuProcessZipFile", "mnuImportFromMSFS", "mnuRemoveStaging",
        "mnuRemovePanelFromStaging", "mnuRemoveAircraftFromStaging", "mnuRemoveSoundFromStaging",
        "mnuHangarToMsfs", "mnuRemoveFromMsfs", "mnuRemoveFromHangar", "mnuRename", "mnuCreatePanelAlias",
        "mnuCreateSoundAlias", "mnuPastePanelAlias", "mnuPasteSoundAlias", "mnuRestoreOldPanel",
        "mnuRestoreOldSound", "mnuCheckRefs", "mnuGaugeCrosscheck", "mnuCopyToStaging", "mnuCompress",
        "mnuDecompress",
        // no code
        "mnuUnusedGauges", "mnuReadNotes"};
    for (const char* name : entries)
        Control<QAction>(window, name).trigger();
    std::vector<std::pair<Side, int>> given;
    for (const auto& command : commands)
        given.emplace_back(command[0].value<Side>(), command[1].toInt());
    std::vector<std::pair<Side, int>> expected;
    for (const int code : {0, 1, 2, 4, 5, 6, 7})
        expected.emplace_back(Side::Staging, code);
    for (const int code : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 12, 13, 14, 15})
        expected.emplace_back(Side::Hangar, code);
    EXPECT_EQ(given, expected);
}

TEST_F(MainWindowTest, ToolbarButtonsGiveTheirKey) {
    auto& toolbar = Control<Toolbar>(window, "Toolbar1");
    QSignalSpy keys(&toolbar, &Toolbar::KeyPressed);
    const auto press = [&](const char* key) {
        QTest::mouseClick(toolbar.widgetForAction(&Control<QAction>(window, key)), Qt::LeftButton);
    };
    Show();
    press("ProcessZip");
    press("Uninstall");
    press("RemovePackage");
    press("Compress");
    ShowStaging();
    press("Uninstall"); // not from Staging
    press("Compress");
    press("RemovePackage");
    press("Install");
    press("RunMSFS");
    press("UnusedGauges");
    press("ReadNotes");
    QStringList given;
    for (const auto& key : keys)
        given.append(key[0].toString());
    EXPECT_EQ(given, QStringList({"ProcessZip", "Uninstall", "RemovePackage", "Compress", "Compress",
                                  "RemovePackage", "Install", "RunMSFS", "UnusedGauges", "ReadNotes"}));
    for (const auto* action : toolbar.actions())
        EXPECT_TRUE(action->isSeparator() || !action->icon().isNull()) << action->objectName().toStdString();
}

TEST_F(MainWindowTest, FilesAreOpenedAndDeletedByKeyAndMouse) {
    Show();
    auto& lists = Control<ComponentLists>(window, "tabComponents");
    lists.setCurrentIndex(Texture);
    auto& list = Control<QListWidget>(window, "lstComponents_5");
    QSignalSpy opened(&lists, &ComponentLists::OpenRequested);
    std::vector<std::vector<int>> deleted;
    QObject::connect(&lists, &ComponentLists::DeleteRequested,
                     [&](int group, const std::vector<int>& positions) {
                         EXPECT_EQ(group, Texture);
                         deleted.push_back(positions);
                     });
    const auto at = [&](int row) { return list.visualItemRect(list.item(row)).center(); };
    QTest::keyClick(&list, Qt::Key_Delete);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, at(3));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::ControlModifier, at(0));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::ControlModifier, at(1));
    QTest::keyClick(&list, Qt::Key_Delete);
    EXPECT_EQ(deleted, (std::vector<std::vector<int>>{{}, {0, 1, 3}}));

    DoubleClickRow(list, 2);
    QTest::keyClick(&list, Qt::Key_Down);
    QTest::keyClick(&list, Qt::Key_Return);
    ASSERT_EQ(opened.size(), 2);
    EXPECT_EQ(opened[0], (QList<QVariant>{5, 2}));
    EXPECT_EQ(opened[1], (QList<QVariant>{5, 3}));
}

TEST_F(MainWindowTest, APictureIsDecodedAtTheSizeShown) {
    SavePicture(drive, "Hangar\\(wide).jpg", {3000, 1000}, Qt::red);
    SavePicture(drive, "Hangar\\tiny.jpg", {40, 30}, Qt::red);
    drive.Put("Hangar\\noise.jpg", "no picture at all");
    auto& shown = Control<PictureView>(window, "imgImageBox");
    const auto show = [&](const char* name) {
        package.pictures = {drive.At(std::string("Hangar\\") + name)};
        view.imageIndex = 1;
        ++view.listRevision;
        Show();
        EXPECT_EQ(Control<QLabel>(window, "lblImageName").text(), name);
    };
    const auto isFitting = [&] { return shown.Picture().image.width() == shown.Box().width(); };
    show("(wide).jpg");
    EXPECT_TRUE(QTest::qWaitFor(isFitting));
    EXPECT_NEAR(shown.Picture().image.height(), shown.Box().width() / 3.0, 1);
    window.resize(window.size() + QSize(120, 60));
    EXPECT_TRUE(QTest::qWaitFor(isFitting));
    show("tiny.jpg");
    EXPECT_EQ(shown.Picture().image.size(), QSize(40, 30));
    show("noise.jpg");
    EXPECT_TRUE(shown.Picture().image.isNull());
}

TEST_F(MainWindowTest, EveryControlHasANameAndItsTurnInTheTabOrder) {
    Show();
    QStringList order;
    QWidget* widget = &Control<QWidget>(window, "cboPackageCategory");
    for (QWidget* first = widget; order.isEmpty() || widget != first; widget = widget->nextInFocusChain()) {
        if (!(widget->focusPolicy() & Qt::TabFocus) || widget->objectName().startsWith("qt_"))
            continue;
        EXPECT_FALSE(QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name).isEmpty())
            << widget->objectName().toStdString();
        if (widget->objectName().startsWith("cbo") || widget->objectName().startsWith("txt") ||
            widget->objectName().startsWith("lst"))
            order.append(widget->objectName());
    }
    QStringList expected = {"cboPackageCategory", "txtPackageFilter", "cboPackageName", "txtPackageName",
                            "txtAircraftName",    "txtPanelAlias",    "txtSoundAlias"};
    for (int group = 0; group < GroupCount; ++group)
        expected.append(QString("lstComponents_%1").arg(group));
    EXPECT_EQ(order, expected);
}

TEST_F(MainWindowTest, AccessKeysAreUnique) {
    std::map<QChar, QString> owners;
    const auto add = [&](const QString& text) {
        const int at = int(text.indexOf('&'));
        if (at < 0)
            return;
        const QChar key = text[at + 1].toLower();
        EXPECT_EQ(owners.count(key), 0U) << text.toStdString() << " and " << owners[key].toStdString();
        owners[key] = text;
    };
    Show();
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

TEST_F(MainWindowTest, FitsOnASmallScreen) {
    for (const bool isHangar : {true, false}) {
        view.HangarSideShown = isHangar;
        Show();
        EXPECT_LE(window.minimumSizeHint().width(), 800);
        EXPECT_LE(window.minimumSizeHint().height(), 560);
    }
}

TEST_F(MainWindowTest, GeometryComesBackInTwips) {
    window.ApplyGeometry({.top = 300, .left = 450, .height = 8700, .width = 11850});
    Show();
    const auto geometry = window.Geometry();
    ASSERT_TRUE(geometry);
    EXPECT_EQ(geometry->top, 300);
    EXPECT_EQ(geometry->left, 450);
    EXPECT_EQ(geometry->height, 8700);
    EXPECT_EQ(geometry->width, 11850);

    // A screen that is gone leaves the window where it can be reached.
    window.ApplyGeometry({.top = 900000, .left = 900000, .height = {}, .width = {}});
    EXPECT_TRUE(window.screen()->geometry().intersects(window.geometry()));

    window.showMinimized();
    EXPECT_FALSE(window.Geometry());
}

TEST_F(MainWindowTest, ProgressIsShownWhileACommandRuns) {
    Show();
    auto& bar = Control<QProgressBar>(window, "prbProgress");
    EXPECT_FALSE(bar.isVisible());
    window.ShowProgress(0, 9);
    EXPECT_TRUE(bar.isVisible());
    window.SetProgress(4);
    EXPECT_EQ(bar.value(), 4);
    window.HideProgress();
    EXPECT_FALSE(bar.isVisible());
}

// The window with the program behind it: two categories, the shown one with five packages, and Staging empty.
class RunningWindowTest : public testing::Test {
  protected:
    RunningWindowTest() {
        for (const char* name : {"Learjet", "Piper Cub", "Cub Crafter", "Beaver", "Super cub"})
            drive.Put("Hangar\\Jets\\" + std::string(name) + "\\Documentation\\read.txt", name);
        drive.Put("Hangar\\Jets\\Beaver\\Documentation\\more.txt", "x");
        drive.MakeDirectory("Hangar\\Props\\Dakota");
        drive.MakeDirectory("FS\\aircraft\\Super_cub");
        drive.MakeDirectory("FS\\gauges");
        drive.MakeDirectory("Staging");
        drive.Put("App\\kx.ini", "ALTLOCATION0=Main\r\nALTSTAGINGDIR0=" + drive.At("Staging\\") +
                                     "\r\nALTHANGARDIR0=" + drive.At("Hangar\\") +
                                     "\r\nALTMSFSDIR0=" + drive.At("FS\\") + "\r\n");
        window.SetProgram(&program);
        dialogs.SetMainWindow(&window);
        EXPECT_TRUE(program.Start());
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        Pick(window, "cboPackageCategory", "Jets");
    }
    ~RunningWindowTest() override { window.close(); }

    void ShowPackage(const char* name) {
        int index = 0;
        while (WithoutInstalledMarks(program.View().packages[std::size_t(index)]) != name)
            ++index;
        program.ChoosePackage(index);
    }
    std::string Shown() {
        const std::string& path = program.Package().path;
        return LastPathComponent(path.substr(0, path.size() - 1));
    }
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        window.activateWindow(); // a message box may have been the last
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        QWidget* focus = window.focusWidget();
        QTest::keyClick(focus ? focus : &window, key, modifiers);
    }
    std::string Text(const char* label) { return Control<QLabel>(window, label).text().toStdString(); }

    TemporaryDrive drive;
    RecordingLauncher launcher;
    Dialogs dialogs{drive.Files()};
    frmHangar window{drive.Files()};
    Program program{drive.Files(), launcher, dialogs, dialogs, window, drive.At("App\\"), "the executable"};
    ModalUser user;
};

TEST_F(RunningWindowTest, TheFilterNarrowsWhatTheChooserOffersAndNothingElse) {
    ShowPackage("Beaver");
    const auto packages = program.View().packages;
    auto& chooser = Control<QComboBox>(window, "cboPackageName");
    auto& filter = Control<QLineEdit>(window, "txtPackageFilter");
    Press(Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(filter.hasFocus());
    QTest::keyClicks(&filter, "CUB");
    EXPECT_EQ(Text("lblFilterCount"), "3 of 5");
    EXPECT_EQ(Shown(), "Beaver") << "filtered out of view, yet shown";
    EXPECT_EQ(chooser.currentText(), "Beaver");

    // Enter takes the first that is left; the keys pass over the others, those of the open list too.
    std::vector<std::string> cubs;
    for (const auto& line : packages)
        if (QString::fromStdString(line).contains("cub", Qt::CaseInsensitive))
            cubs.push_back(WithoutInstalledMarks(line));
    Press(Qt::Key_Return);
    EXPECT_EQ(Shown(), cubs[0]);
    Press(Qt::Key_Down);
    EXPECT_EQ(Shown(), cubs[1]);
    Press(Qt::Key_F, Qt::ControlModifier);
    Press(Qt::Key_Down);
    ASSERT_TRUE(chooser.view()->isVisible());
    int visible = 0;
    for (int row = 0; row < chooser.count(); ++row)
        visible += !chooser.view()->visualRect(chooser.model()->index(row, 0)).isEmpty();
    EXPECT_EQ(visible, 3);
    QTest::keyClick(chooser.view(), Qt::Key_Down);
    QTest::keyClick(chooser.view(), Qt::Key_Return);
    EXPECT_EQ(Shown(), cubs[2]);
    EXPECT_EQ(program.View().packages, packages);

    // It stays through a command; Escape takes it away and leads back to the chooser.
    Press(Qt::Key_F5);
    EXPECT_EQ(Text("lblFilterCount"), "3 of 5");
    filter.setFocus();
    Press(Qt::Key_Escape);
    EXPECT_TRUE(chooser.hasFocus());
    EXPECT_EQ(filter.text() + Control<QLabel>(window, "lblFilterCount").text(), "");
    while (chooser.currentIndex() > 0)
        Press(Qt::Key_Up);
    EXPECT_EQ(Shown(), WithoutInstalledMarks(packages[0]));

    const auto below = [&] {
        return Control<QWidget>(window, "txtAircraftName").mapTo(&window, QPoint()).y();
    };
    const int place = below();
    Click(window, "cmdGoToStaging");
    QCoreApplication::processEvents();
    EXPECT_FALSE(filter.isEnabled());
    EXPECT_EQ(below(), place);
}

TEST_F(RunningWindowTest, EveryArchiveThatIsDroppedIsProcessed) {
    QMimeData data;
    QList<QUrl> urls;
    for (const char* name : {"one.zip", "notes.txt", "TWO.ZIP"}) {
        drive.Put(name, ZipBuilder().Add(std::string(name) + ".txt", "x").Bytes());
        urls.append(QUrl::fromLocalFile(QString::fromStdString(drive.Files().HostPath(drive.At(name)))));
    }
    const auto drop = [&] {
        data.setUrls(urls);
        QDragEnterEvent enter({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QCoreApplication::sendEvent(&window, &enter);
        QDropEvent event({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        event.ignore();
        QCoreApplication::sendEvent(&window, &event);
        QCoreApplication::processEvents();
        return enter.isAccepted() && event.isAccepted();
    };
    EXPECT_EQ(Text("lblCounts"), "6 packages  -  1 installed in MSFS  -  Staging is empty");
    user.ExpectMessage(
        "Staging currently contains files.  Proceed?  (select 'Yes' if you are adding to a package)", "Yes");
    EXPECT_TRUE(drop());
    user.Finish();
    EXPECT_TRUE(drive.Has("Staging\\ZIP_one.zip\\one.zip.txt"));
    EXPECT_TRUE(drive.Has("Staging\\ZIP_TWO.ZIP\\TWO.ZIP.txt"));
    EXPECT_EQ(Text("lblHeader"), StagingHeader);
    EXPECT_EQ(Text("lblCounts"), "6 packages  -  1 installed in MSFS  -  Staging contains files");
    urls = {urls[1]};
    EXPECT_FALSE(drop());
}

TEST_F(RunningWindowTest, KeysDoWhatTheShownSideOffers) {
    ShowPackage("Beaver");
    const auto question = "Are you sure you want to remove this package from the Flight Simulator directory?";
    user.ExpectMessage("This package is not currently installed in Flight Simulator.", "OK");
    Press(Qt::Key_U, Qt::ControlModifier);
    user.Finish();
    ShowPackage("Super cub");
    user.ExpectMessage(question, "No");
    Press(Qt::Key_U, Qt::ControlModifier);
    user.ExpectMessage("This package is already installed in Flight Simulator.", "OK");
    Press(Qt::Key_I, Qt::ControlModifier);
    user.Finish();
    drive.Put("Hangar\\Jets\\Super cub\\Documentation\\new.txt", "x");
    Press(Qt::Key_F5);
    EXPECT_EQ(Control<QListWidget>(window, "lstComponents_7").count(), 2);

    // From the Hangar, and by the menu's own entry.
    for (int i = 0; i < 2; ++i) {
        user.Expect("zipFileDialog", [](QWidget& dialog) { PressKey(dialog, Qt::Key_Escape); });
        Press(Qt::Key_O, Qt::ControlModifier);
        user.Finish();
        EXPECT_EQ(Text("lblHeader"), StagingHeader);
    }
    Press(Qt::Key_I, Qt::ControlModifier); // these two ask nothing here
    Press(Qt::Key_U, Qt::ControlModifier);
    Press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_FALSE(Control<QLineEdit>(window, "txtPackageFilter").hasFocus());
}

TEST_F(RunningWindowTest, TheToolsMenuAsksBeforeItRunsOverManyPackages) {
    const struct {
        const char* entry;
        const char* question;
        const char* no;
    } rows[] = {
        {"mnuUnusedGauges", "This may take a minute or two.*", "Cancel"},
        {"mnuCompressAll", "Compress all packages in Hangar?*", "No"},
        {"mnuDecompressAll", "Decompress all packages in the Hangar?*", "No"},
        {"mnuUninstallCategory", "Uninstall all packages in current category from Hangar?*", "No"},
        {"mnuUninstallAll", "Uninstall all packages from Hangar?  If*", "No"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.entry);
        user.ExpectMessage(row.question, row.no);
        Control<QAction>(window, row.entry).trigger();
        user.Finish();
    }
    drive.Put("FS\\gauges\\mine.gau", "x");
    user.ExpectMessage("This may take a minute or two.*", "OK");
    user.Expect("frmUnusedGauges", [](QWidget& dialog) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return Control<QPushButton>(dialog, "cmdOK").isEnabled(); }));
        EXPECT_EQ(Control<QListWidget>(dialog, "lstFileList").count(), 1);
        Click(dialog, "cmdOK");
    });
    Control<QAction>(window, "mnuUnusedGauges").trigger();
    user.Finish();
    drive.Put("FS\\fs2002.exe", "x");
    Control<QAction>(window, "mnuRunMSFS").trigger();
    EXPECT_EQ(launcher.started, std::vector<std::string>{"run " + drive.At("FS\\fs2002.exe")});
}

TEST_F(RunningWindowTest, TheDataAndHelpMenusReachTheirCommands) {
    ShowPackage("Beaver");
    drive.Put("App\\kxdoc.htm", "page");
    const auto choose = [&](const char* entry) {
        Control<QAction>(window, entry).trigger();
        user.Finish();
    };
    for (const char* entry : {"mnuCreateNotes", "mnuReadNotes", "mnuReadMe"})
        choose(entry);
    Click(window, "cmdExplore");
    const auto package = drive.At("Hangar\\Jets\\Beaver\\");
    const auto notes = package + "Documentation\\kx_note.txt";
    EXPECT_EQ(launcher.started,
              (std::vector<std::string>{"edit " + notes, "edit " + notes,
                                        "open " + drive.At("App\\kxdoc.htm"), "explore " + package}));
    choose("mnuDeleteNotes");
    EXPECT_FALSE(drive.Files().Info(notes));
    user.ExpectMessage("This information is for FS2002 only.", "OK");
    choose("mnuInformation");
    user.Expect("frmAbout", [](QWidget& dialog) { Click(dialog, "cmdOK"); });
    choose("mnuAbout");
}

TEST_F(RunningWindowTest, TheGalleryStandsBesideTheWindow) {
    SavePicture(drive, "Hangar\\Jets\\Super cub\\Images\\cub.jpg", {40, 30}, Qt::red);
    SavePicture(drive, "Hangar\\Props\\Dakota\\Images\\dakota.jpg", {40, 30}, Qt::red);
    const auto gallery = [] {
        const auto windows = QApplication::topLevelWidgets();
        return *std::find_if(windows.begin(), windows.end(), [](const QWidget* top) {
            return top->objectName() == "frmPhotos" && top->isVisible();
        });
    };
    Control<QAction>(window, "mnuPhotosForAll").trigger();
    EXPECT_EQ(gallery()->windowTitle(), "All Packages");
    Control<QAction>(window, "mnuPhotosByCategory").trigger();
    EXPECT_EQ(gallery()->windowTitle(), "Packages in Jets");
    QTest::mouseClick(&Control<QWidget>(*gallery(), "imgPhoto_0"), Qt::LeftButton);
    QTest::mouseDClick(&Control<QWidget>(*gallery(), "imgPhoto_0"), Qt::LeftButton);
    EXPECT_EQ(Shown(), "Super cub");
    EXPECT_EQ(Control<QComboBox>(window, "cboPackageName").currentText(), "< Super cub >");
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    QWidget* opened = gallery();
    window.close();
    EXPECT_FALSE(opened->isVisible());
}

TEST_F(RunningWindowTest, TheMenuOfAListOpensShowsAndDeletes) {
    ShowPackage("Beaver");
    auto& lists = Control<ComponentLists>(window, "tabComponents");
    lists.setCurrentIndex(Documentation);
    EXPECT_NE(lists.tabBar()->tabTextColor(Sound), lists.tabBar()->tabTextColor(Documentation));
    auto& list = Control<QListWidget>(window, "lstComponents_7");
    const auto choose = [&](const char* entry, QContextMenuEvent::Reason reason, const QPoint& at) {
        QContextMenuEvent event(reason, at, list.mapToGlobal(at));
        QWidget& target = reason == QContextMenuEvent::Mouse ? *list.viewport() : list;
        QCoreApplication::sendEvent(&target, &event);
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_TRUE(menu);
        QTest::mouseClick(menu, Qt::LeftButton, {},
                          menu->actionGeometry(&Control<QAction>(*menu, entry)).center());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    list.setCurrentRow(1);
    const QPoint at = list.visualItemRect(list.item(1)).center();
    const auto directory = drive.At("Hangar\\Jets\\Beaver\\Documentation\\");
    choose("mnuOpenComponent", QContextMenuEvent::Mouse, at);
    choose("mnuShowComponentInFolder", QContextMenuEvent::Keyboard, {-500, -500});
    EXPECT_EQ(launcher.started,
              (std::vector<std::string>{"open " + directory + list.item(1)->text().toStdString(),
                                        "explore " + directory}));
    list.selectAll();
    user.ExpectMessage("Are you sure you want to delete the 2 files selected?", "Yes");
    choose("mnuDeleteComponents", QContextMenuEvent::Mouse, at);
    user.Finish();
    EXPECT_EQ(list.count(), 0);
    EXPECT_TRUE(drive.Tree("Hangar\\Jets\\Beaver\\Documentation\\").size() <= 1);
    EXPECT_EQ(lists.tabBar()->tabTextColor(Sound), lists.tabBar()->tabTextColor(Documentation));
}

} // namespace korvadex::test
