// The collection beside the form, by mouse and by keys.
#include "platform/windows_path.h"
#include "tests/support/window_fixture.h"

namespace korvadex::test {

namespace {

class CollectionWindow : public WindowTest {
  protected:
    CollectionWindow() {
        drive.Put("Hangar\\Jets\\Beech\\aircraft.cfg", "[fltsim.0]\r\ntitle=Starship\r\n");
        drive.Put("Hangar\\Jets\\Lear\\a.txt", std::string(100, 'x'));
        drive.Fill("", "Hangar\\Props\\Cub\\a.txt=x, Hangar\\Props\\Dakota\\a.txt=x, "
                       "FS\\aircraft\\Cub\\");
        Start();
        Press(Qt::Key_F9);
        QCoreApplication::processEvents(); // it gets its place
    }

    QTreeView& Tree() { return Control<QTreeView>(window, "treCollection"); }
    QModelIndex Row(const QString& text) {
        const QModelIndex found =
            Tree()
                .model()
                ->match(Tree().model()->index(0, 0), Qt::DisplayRole, text, 1, Qt::MatchStartsWith | Qt::MatchRecursive)
                .value(0);
        EXPECT_TRUE(found.isValid()) << text.toStdString();
        return found;
    }
    void ClickOn(const QString& text, Qt::KeyboardModifiers modifiers = {}) {
        Tree().scrollTo(Row(text));
        QTest::mouseClick(Tree().viewport(), Qt::LeftButton, modifiers, Tree().visualRect(Row(text)).center());
        QCoreApplication::processEvents();
    }
    // In the tree, and what comes of it in a moment.
    void PressInTree(Qt::Key key) {
        QTest::keyClick(&Tree(), key);
        QCoreApplication::processEvents();
        user.Finish();
    }
    std::vector<std::string> OpenMenu() {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, {-1, -1}, Tree().mapToGlobal(QPoint(1, 1)));
        QCoreApplication::sendEvent(&Tree(), &event);
        std::vector<std::string> names;
        for (const QAction* entry : Menu().actions())
            if (entry->isEnabled() && !entry->isSeparator())
                names.push_back(entry->menu() ? entry->menu()->objectName().toStdString()
                                              : entry->objectName().toStdString());
        return names;
    }
    QMenu& Menu() { return *qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
    void Choose(QAction& entry) {
        Menu().close();
        entry.trigger();
        QCoreApplication::processEvents();
        user.Finish();
    }
    std::string Shown() { return program.Package().ref.Text(); }
    // The rows that are seen: "Jets  (2)|Beech|..."
    std::string Rows() {
        std::string rows;
        for (QModelIndex index = Tree().model()->index(0, 0); index.isValid(); index = Tree().indexBelow(index))
            rows += index.data().toString().toStdString() + "|";
        return rows;
    }
    QModelIndexList Selected() { return Tree().selectionModel()->selectedIndexes(); }
};

} // namespace

TEST_F(CollectionWindow, FollowsTheFormAndTheFormFollowsIt) {
    EXPECT_EQ(Rows(), "Jets  (2)|Beech|Lear|Props  (2)|Cub|Dakota|");
    Pick(window, "cboPackageCategory", "Props");
    EXPECT_EQ(Selected(), QModelIndexList{Row("Cub")});
    ClickOn("Lear");
    EXPECT_EQ(Shown(), "Jets\\Lear");
    EXPECT_EQ(Control<QComboBox>(window, "cboPackageCategory").currentText(), "Jets");
    PressInTree(Qt::Key_Down); // a category is nothing to be shown
    EXPECT_EQ(Shown(), "Jets\\Lear");
    PressInTree(Qt::Key_Down);
    EXPECT_EQ(Shown(), "Props\\Cub");
    QTest::keyClick(&Tree(), Qt::Key_Down);
    user.ExpectMessage("Are you sure you want to remove this package from the hangar?", "No");
    ChooseEntry("mnuRemoveFromHangar"); // at once: it is about what is selected now
    EXPECT_EQ(Shown(), "Props\\Dakota");
    ClickOn("Lear", Qt::ControlModifier);
    EXPECT_EQ(Shown(), "Props\\Dakota");
    EXPECT_EQ(Selected().size(), 2);

    program.GoToStaging();
    ClickOn("Beech", Qt::ControlModifier);
    PressInTree(Qt::Key_Down);
    EXPECT_EQ(Text("lblHeader"), StagingHeader);
    PressInTree(Qt::Key_Return);
    EXPECT_EQ(Shown(), "Jets\\Lear");
    ClickOn("Jets");
    PressInTree(Qt::Key_Return);
    EXPECT_EQ(Rows(), "Jets  (2)|Props  (2)|Cub|Dakota|");

    // Hidden again, and no key is lost.
    Tree().setFocus();
    Press(Qt::Key_F9);
    EXPECT_FALSE(Tree().isVisible());
    EXPECT_TRUE(Control<QWidget>(window, "cboPackageCategory").hasFocus());
    Press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(Control<QWidget>(window, "txtPackageFilter").hasFocus());
}

TEST_F(CollectionWindow, IsFilteredAndSortedByKeys) {
    EXPECT_TRUE(QTest::qWaitFor([&] { return !program.ReadCollection(std::chrono::milliseconds(50)); }));
    Press(Qt::Key_F, Qt::ControlModifier);
    auto& filter = Control<QLineEdit>(window, "txtCollectionFilter");
    ASSERT_TRUE(filter.hasFocus());
    QTest::keyClicks(&filter, "star");
    EXPECT_EQ(Rows(), "Jets  (1 of 2)|Beech|");
    EXPECT_EQ(Text("lblCollectionCount"), "1 of 4");
    Press(Qt::Key_Return);
    EXPECT_EQ(Shown(), "Jets\\Beech");
    EXPECT_TRUE(Tree().hasFocus());
    Press(Qt::Key_F, Qt::ControlModifier);
    Press(Qt::Key_Escape);
    EXPECT_EQ(Rows(), "Jets  (2)|Beech|Lear|Props  (2)|Cub|Dakota|");
    EXPECT_EQ(Selected(), QModelIndexList{Row("Beech")});
    Pick(window, "cboCollectionOrder", "Largest first");
    EXPECT_EQ(Rows(), "Jets  (2)|Lear|Beech|Props  (2)|Cub|Dakota|");
    const auto name = [&](const char* row) { return Row(row).data(Qt::AccessibleTextRole).toString().toStdString(); };
    EXPECT_EQ(name("Cub"), "Cub, installed in MSFS");
    const auto tick = qvariant_cast<QIcon>(Row("Cub").data(Qt::DecorationRole));
    EXPECT_EQ(tick.pixmap(16, QIcon::Selected).toImage().pixelColor(8, 2), Qt::white) << "else it is lost on its row";
    drive.MakeDirectory("Hangar\\Props\\Aztec");
    drive.Put("Hangar\\Props\\Aztec\\kx_compression.txt", "3 Meg");
    Press(Qt::Key_F5);
    EXPECT_TRUE(QTest::qWaitFor([&] { return name("Aztec") == "Aztec, compressed"; }));
}

TEST_F(CollectionWindow, OffersWhatCanBeDone) {
    ClickOn("Dakota");
    EXPECT_EQ(OpenMenu(),
              (std::vector<std::string>{"mnuShowPackage", "mnuHangarToMsfs", "mnuCheckRefs", "mnuCompress",
                                        "mnuDecompress", "mnuCopyToStaging", "mnuMoveToCategory", "mnuRename",
                                        "mnuRemoveFromHangar", "cmdExplore", "mnuNewCategory"}));
    auto& targets = Control<QMenu>(Menu(), "mnuMoveToCategory");
    EXPECT_FALSE(targets.actions()[1]->isEnabled()); // it is there
    Choose(*targets.actions()[0]);
    EXPECT_EQ(Shown(), "Jets\\Dakota");
    EXPECT_EQ(Rows(), "Jets  (3)|Beech|Dakota|Lear|Props  (1)|Cub|");
    EXPECT_EQ(Selected(), QModelIndexList{Row("Dakota")});
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(drive.Has("Hangar\\Props\\Dakota"));
    const auto enter = [](const char* text) {
        return [=](QWidget& box) {
            Type(box, "txtInput", text);
            PressKey(box, Qt::Key_Return);
        };
    };
    OpenMenu();
    user.Expect("InputBox", enter("Gliders"));
    Choose(Control<QAction>(Menu(), "mnuNewCategory"));
    ClickOn("Gliders");
    user.Expect("InputBox", [](QWidget& box) {
        EXPECT_EQ(Control<QLineEdit>(box, "txtInput").selectedText(), "Gliders");
        Type(box, "txtInput", "Sailplanes");
        PressKey(box, Qt::Key_Return);
    });
    PressInTree(Qt::Key_F2);
    EXPECT_EQ(Rows(), "Jets  (2)|Beech|Lear|Props  (2)|Cub|Dakota|Sailplanes  (0)|");
    ClickOn("Dakota");
    user.Expect("frmRename", [](QWidget& dialog) { PressKey(dialog, Qt::Key_Escape); });
    PressInTree(Qt::Key_F2);
    user.ExpectMessage("Are you sure you want to remove this package from the hangar?", "Yes");
    user.ExpectMessage("Done.", "OK");
    PressInTree(Qt::Key_Delete);
    EXPECT_EQ(Shown(), "Props\\Cub");
    EXPECT_EQ(Selected(), QModelIndexList{Row("Cub")});
}

TEST_F(CollectionWindow, GivesCommandsToAllThatAreSelected) {
    ClickOn("Props");
    EXPECT_EQ(OpenMenu(), (std::vector<std::string>{"mnuSelectPackages", "mnuRenameCategory", "mnuNewCategory"}));
    Choose(Control<QAction>(Menu(), "mnuSelectPackages"));
    EXPECT_EQ(Selected(), (QModelIndexList{Row("Cub"), Row("Dakota")}));
    ClickOn("Cub", Qt::ControlModifier);
    ClickOn("Lear", Qt::ControlModifier);
    EXPECT_EQ(OpenMenu(),
              (std::vector<std::string>{"mnuInstallEach", "mnuCheckRefsOfEach", "mnuCompressEach", "mnuDecompressEach",
                                        "mnuDeleteEach", "mnuMoveToCategory", "mnuNewCategory"})); // none is installed
    user.ExpectMessage("Done.", "OK");
    Choose(Control<QAction>(Menu(), "mnuInstallEach"));
    EXPECT_TRUE(drive.Has("FS\\aircraft\\Lear") && drive.Has("FS\\aircraft\\Dakota"));
    const auto press = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        Activate();
        Tree().setFocus();
        Press(key, modifiers);
    };
    // In the order shown, whichever was selected first.
    user.ExpectMessage("Are you sure you want to remove these packages from the Flight Simulator directory?\n\n"
                       "Jets\\Lear\nProps\\Dakota*",
                       "Yes");
    user.ExpectMessage("Done.", "OK");
    press(Qt::Key_U, Qt::ControlModifier);
    EXPECT_FALSE(drive.Has("FS\\aircraft\\Lear") || drive.Has("FS\\aircraft\\Dakota"));
    Tree().collapse(Row("Props")); // what is not seen is not meant
    user.ExpectMessage("Done.", "OK");
    press(Qt::Key_I, Qt::ControlModifier);
    EXPECT_TRUE(drive.Has("FS\\aircraft\\Lear") && !drive.Has("FS\\aircraft\\Dakota"));
    Tree().expand(Row("Props"));
    OpenMenu();
    user.ExpectMessage("1 of 2*", "OK");
    Choose(*Control<QMenu>(Menu(), "mnuMoveToCategory").actions()[1]);
    EXPECT_EQ(Rows(), "Jets  (1)|Beech|Props  (3)|Cub|Dakota|Lear|");
}

TEST_F(CollectionWindow, RemembersWhetherItIsShownAndHowWide) {
    EXPECT_LE(window.minimumSizeHint().width(), 660); // 1366 x 768 at 200 %
    EXPECT_LE(window.minimumSizeHint().height(), 330);
    program.Shutdown();
    EXPECT_EQ(drive.Get("App\\kx.ini").substr(drive.Get("App\\kx.ini").find("COLLECTION")), "COLLECTION=YES\r\n");
}

} // namespace korvadex::test
