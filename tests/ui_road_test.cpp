// The road of an add-on through the real window, with mouse and keys: first run, unpacking, Hangar, simulator, and out
// again. After each step the whole drive is compared with what it was.
#include "demo/example.h"
#include "tests/support/command_fixture.h"
#include "tests/support/modal_user.h"
#include "ui/component_lists.h"
#include "ui/dialogs.h"
#include "ui/frmHangar.h"
#include "ui/menus.h"

#include <QtTest>
#include <QtWidgets>

#include <set>

namespace korvadex::test {

namespace {

using Names = std::set<std::string>;
using Disk = std::map<std::string, std::string>;

bool IsDirectory(const std::string& name) {
    return name.ends_with('\\');
}

std::string FileName(const std::string& path) {
    return path.substr(path.rfind('\\', path.size() - 2) + 1);
}

// Each name behind the directory.
Names Below(const std::string& directory, const Names& names) {
    Names result;
    for (const auto& name : names)
        result.insert(directory + name);
    return result;
}

Names Without(Names names, const Names& others) {
    std::erase_if(names, [&](const auto& name) { return others.contains(name); });
    return names;
}

// The example's files, drawn once: its pictures take longer than the road.
const Disk& Example() {
    static const Disk example = [] {
        TemporaryDrive drive;
        demo::MakeExample(drive.Files(), drive.Root());
        return drive.Tree();
    }();
    return example;
}

class RoadTest : public testing::Test {
  protected:
    RoadTest() {
        for (const auto& [name, bytes] : Example())
            if (IsDirectory(name))
                drive.MakeDirectory(name);
            else
                drive.Put(name, bytes);
        drive.MakeDirectory("Home");
        drive.MakeDirectory("NewHangar");
        disk = drive.Tree();
        dialogs.SetMainWindow(&window);
        window.SetProgram(&program);
    }

    QString At(const std::string& relative) const { return QString::fromStdString(drive.At(relative)); }
    const std::string staging = demo::StagingDirectory;
    const std::string sim = demo::SimDirectory;

    // --- the person

    void FirstRun() {
        user.ExpectMessage("It appears as though this is the first time you are running Korvadex.*", "OK");
        EnterLocations(At("NewHangar\\Collection"));
        user.ExpectMessage(
            "The directory you specified for the Hangar location does not exist.  Create it now?", "Yes");
        ASSERT_TRUE(program.Start());
        window.show();
        user.Finish();
    }
    void EnterLocations(const QString& hangar) {
        user.Expect("frmLocations", [this, hangar](QWidget& dialog) {
            Type(dialog, "txtStagingDir", At("Staging"));
            Type(dialog, "txtHangarDir", hangar);
            Type(dialog, "txtMSFSDir", At("FS2002"));
            Click(dialog, "cmdAccept");
        });
    }
    void PressToolbar(const char* key) {
        auto& toolbar = Control<QToolBar>(window, "Toolbar1");
        QTest::mouseClick(toolbar.widgetForAction(&Control<QAction>(window, key)), Qt::LeftButton);
        user.Finish();
    }
    void ChooseEntry(const char* menu, const char* entry) {
        EXPECT_TRUE(Control<QMenu>(window, menu).menuAction()->isVisible()) << menu;
        auto& action = Control<QAction>(window, entry);
        EXPECT_TRUE(action.isEnabled()) << entry;
        action.trigger();
        user.Finish();
    }
    void ExpectArchiveChoice(const char* archive) {
        user.Expect("zipFileDialog", [this, archive](QWidget& dialog) {
            const auto path =
                drive.Files().HostPath(drive.At(demo::DownloadsDirectory + std::string(archive)));
            // Pasted, not typed: the completion of names would join in.
            Control<QLineEdit>(dialog, "fileNameEdit").setText(QString::fromStdString(path));
            QTest::mouseClick(Control<QDialogButtonBox>(dialog, "buttonBox").button(QDialogButtonBox::Open),
                              Qt::LeftButton);
        });
    }
    // Takes Staging into the Hangar under that name and clears it.
    void CopyToHangarAndClear(const QString& name) {
        Type(window, "txtPackageName", name);
        user.ExpectMessage("Done.\n\nWould you like to clear the Staging area at this point?", "Yes");
        user.ExpectMessage("Are you sure you want to erase everything in the staging directory?", "Yes");
        user.ExpectMessage("Done.", "OK");
        PressToolbar("Install");
    }
    void Install(const QString& crossCheck) {
        user.Expect("frmInstallStatus", [crossCheck](QWidget& dialog) {
            EXPECT_EQ(Control<QPlainTextEdit>(dialog, "txtInstallStatus").toPlainText().toStdString(),
                      crossCheck.toStdString());
            Click(dialog, "cmdOK");
        });
        ChooseEntry("mnuHangarOptions", "mnuHangarToMsfs");
    }
    void RemoveFromSim() {
        user.ExpectMessage(
            "Are you sure you want to remove this package from the Flight Simulator directory?", "Yes");
        user.ExpectMessage("Done.", "OK");
        PressToolbar("Uninstall");
    }

    std::string Text(const char* control) { return Control<QLineEdit>(window, control).text().toStdString(); }
    std::string Header() { return Control<QLabel>(window, "lblHeader").text().toStdString(); }
    std::string ShownPackage() {
        return Control<QComboBox>(window, "cboPackageName").currentText().toStdString();
    }
    std::string Title() { return window.windowTitle().toStdString(); }
    int Count(int group) {
        return Control<QListWidget>(window, QString("lstComponents_%1").arg(group).toLatin1()).count();
    }

    // --- the drive

    // Compares with the drive as it was last seen: these came, these went, nothing else changed.
    void ExpectChanges(const Names& added, const Names& removed) {
        const Disk now = drive.Tree();
        Names came, went, changed;
        for (const auto& [name, bytes] : now)
            if (!disk.contains(name))
                came.insert(name);
            else if (disk[name] != bytes)
                changed.insert(name);
        for (const auto& [name, bytes] : disk)
            if (!now.contains(name))
                went.insert(name);
        EXPECT_EQ(Without(came, added), Names()) << "came besides what was expected";
        EXPECT_EQ(Without(added, came), Names()) << "did not come";
        EXPECT_EQ(Without(went, removed), Names()) << "went besides what was expected";
        EXPECT_EQ(Without(removed, went), Names()) << "did not go";
        EXPECT_EQ(changed, Names()) << "changed";
        disk = now;
    }
    // Everything below the directory went, the directory itself stayed.
    void ExpectEmptied(const std::string& directory, Names added = {}) {
        Names below;
        for (const auto& [name, bytes] : disk)
            if (name.starts_with(directory) && name != directory)
                below.insert(name);
        EXPECT_FALSE(below.empty());
        ExpectChanges(added, below);
    }
    // Every file below `copy` has the bytes of the file of its name below `original`.
    void ExpectCopies(const std::string& copy, const Disk& from, const std::string& original) {
        std::map<std::string, std::string> originals; // by file name
        for (const auto& [name, bytes] : from)
            if (name.starts_with(original) && !IsDirectory(name))
                originals[FileName(name)] = bytes;
        for (const auto& [name, bytes] : drive.Tree(copy)) {
            if (IsDirectory(name))
                continue;
            ASSERT_TRUE(originals.contains(FileName(name))) << name;
            EXPECT_EQ(originals[FileName(name)], bytes) << name;
        }
    }

    TemporaryDrive drive;
    Disk disk;
    RecordingLauncher launcher;
    Dialogs dialogs{drive.Files()};
    frmHangar window{drive.Files()};
    Program program{drive.Files(),           launcher, dialogs, dialogs, window, drive.At("Home\\"),
                    "/opt/korvadex/korvadex"};
    ModalUser user;
};

} // namespace

TEST_F(RoadTest, OfAnArchiveWithAnotherArchiveInIt) {
    FirstRun();
    const std::string hangar = "NewHangar\\Collection\\";
    Names categories = {hangar};
    for (const char* category :
         {"Aircraft - Heavy Jets", "Aircraft - Heavy Props", "Aircraft - Light Jets",
          "Aircraft - Light Props", "Aircraft - Helicopters", "Aircraft - Military", "Panels - Heavy Jets",
          "Panels - Light Jets", "Panels - Heavy Props", "Panels - Light Props", "Sounds - Heavy Jets",
          "Sounds - Light Jets", "Sounds - Heavy Props", "Sounds - Light Props"})
        categories.insert(hangar + category + "\\");
    ExpectChanges(categories, {});
    EXPECT_EQ(Header(), "H A N G A R");
    EXPECT_EQ(Title(), "Korvadex");

    // Into Staging.
    ExpectArchiveChoice(demo::NestedArchive);
    user.ExpectMessage(
        "Found another ZIP file called skerrow panel.zip.  Should I unzip it as well?  (Usually pick 'Yes')",
        "Yes");
    PressToolbar("ProcessZip");
    const std::string unpacked = staging + "ZIP_Skerrow_Amphibian_v2.zip\\";
    const Names members = {"",
                           "FS2002\\",
                           "FS2002\\aircraft\\",
                           "FS2002\\aircraft\\Skerrow\\",
                           "FS2002\\aircraft\\Skerrow\\aircraft.cfg",
                           "FS2002\\aircraft\\Skerrow\\model\\",
                           "FS2002\\aircraft\\Skerrow\\model\\model.cfg",
                           "FS2002\\aircraft\\Skerrow\\model\\skerrow.mdl",
                           "FS2002\\aircraft\\Skerrow\\skerrow.air",
                           "FS2002\\aircraft\\Skerrow\\sound\\",
                           "FS2002\\aircraft\\Skerrow\\sound\\skerrow_engine.wav",
                           "FS2002\\aircraft\\Skerrow\\sound\\sound.cfg",
                           "FS2002\\aircraft\\Skerrow\\texture\\",
                           "FS2002\\aircraft\\Skerrow\\texture\\skerrow_hull.bmp",
                           "FS2002\\aircraft\\Skerrow\\texture\\skerrow_wing.bmp",
                           "NestedZIP1_skerrow panel.zip\\",
                           "NestedZIP1_skerrow panel.zip\\Read Me(1).txt",
                           "NestedZIP1_skerrow panel.zip\\gauges\\",
                           "NestedZIP1_skerrow panel.zip\\gauges\\Skerrow.cab",
                           "NestedZIP1_skerrow panel.zip\\gauges\\skerrow_water.gau",
                           "NestedZIP1_skerrow panel.zip\\panel\\",
                           "NestedZIP1_skerrow panel.zip\\panel\\panel.cfg",
                           "NestedZIP1_skerrow panel.zip\\panel\\skerrow_main.bmp",
                           "Read Me.txt",
                           "skerrow on the lake.jpg",
                           "skerrow.jpg"};
    ExpectChanges(Below(unpacked, members), {});
    EXPECT_EQ(Header(), "S T A G I N G");
    EXPECT_EQ(Title(), "Korvadex     (Staging Contains Files)");
    EXPECT_EQ(Text("txtAircraftName"), "Skerrow Amphibian");
    EXPECT_EQ(Text("txtPanelAlias"), "None  (Original panel)");
    EXPECT_EQ(Count(Images), 2);
    EXPECT_EQ(Count(Panel), 2);
    EXPECT_EQ(Count(Gauges), 2);
    EXPECT_EQ(Count(Documentation), 2);
    EXPECT_EQ(Count(Unrecognized), 0);

    // Into the Hangar; the name loses what a directory cannot bear.
    const Disk staged = disk;
    Pick(window, "cboPackageCategory", "Aircraft - Light Props");
    CopyToHangarAndClear("Skerrow: Amphibian v2.0");
    const std::string package = hangar + "Aircraft - Light Props\\Skerrow_ Amphibian v2_0\\";
    const Names packed = {"",
                          "Documentation\\",
                          "Documentation\\Read Me(1).txt",
                          "Documentation\\Read Me.txt",
                          "Gauges\\",
                          "Gauges\\Skerrow.cab",
                          "Gauges\\skerrow_water.gau",
                          "Images\\",
                          "Images\\skerrow on the lake.jpg",
                          "Images\\skerrow.jpg",
                          "Model\\",
                          "Model\\model.cfg",
                          "Model\\skerrow.mdl",
                          "Panel\\",
                          "Panel\\panel.cfg",
                          "Panel\\skerrow_main.bmp",
                          "Sound\\",
                          "Sound\\skerrow_engine.wav",
                          "Sound\\sound.cfg",
                          "Texture\\",
                          "Texture\\skerrow_hull.bmp",
                          "Texture\\skerrow_wing.bmp",
                          "aircraft.cfg",
                          "skerrow.air"};
    ExpectEmptied(staging, Below(package, packed));
    ExpectCopies(package, staged, staging);
    EXPECT_EQ(Title(), "Korvadex");
    EXPECT_EQ(Count(Aircraft), 0);

    // Into the simulator.
    Click(window, "cmdGoToHangar");
    EXPECT_EQ(Header(), "H A N G A R");
    Pick(window, "cboPackageName", "Skerrow_ Amphibian v2_0");
    EXPECT_EQ(ShownPackage(), "Skerrow_ Amphibian v2_0");
    EXPECT_EQ(Text("txtAircraftName"), "Skerrow Amphibian");
    const Disk before = disk;
    Install("Skerrow_ Amphibian v2_0 ...\n\nCrosscheck complete.  PASSED.\n\nInstallation complete.");
    Names installed = {sim + "gauges\\Skerrow.cab", sim + "gauges\\skerrow_water.gau"};
    const std::string aircraft = sim + "aircraft\\Skerrow__Amphibian_v2_0\\";
    for (const auto& name : packed)
        if (!name.starts_with("Gauges\\"))
            installed.insert(aircraft + name);
    ExpectChanges(installed, {});
    ExpectCopies(aircraft, before, package);
    EXPECT_EQ(ShownPackage(), "< Skerrow_ Amphibian v2_0 >");

    // What the simulator uses is not deleted from under it.
    auto& lists = Control<QTabWidget>(window, "tabComponents");
    lists.setCurrentIndex(Texture);
    auto& textures = Control<QListWidget>(window, "lstComponents_5");
    ClickRow(textures, 0);
    user.ExpectMessage(
        "This package is currently installed in Flight Simulator.  File deletion while the package is "
        "installed in MSFS is not allowed.",
        "OK");
    QTest::keyClick(&textures, Qt::Key_Delete);
    user.ExpectMessage("This package is already installed in Flight Simulator.", "OK");
    PressToolbar("Install");
    ExpectChanges({}, {});

    // And out again: the drive is what it was.
    RemoveFromSim();
    ExpectChanges({}, installed);
    EXPECT_EQ(disk, before);
    EXPECT_EQ(ShownPackage(), "Skerrow_ Amphibian v2_0");
    user.ExpectMessage("This package is not currently installed in Flight Simulator.", "OK");
    PressToolbar("Uninstall");

    // Double click and Enter open a file; the deletion of two asks first.
    lists.setCurrentIndex(Documentation);
    auto& documents = Control<QListWidget>(window, "lstComponents_7");
    DoubleClickRow(documents, 0);
    EXPECT_EQ(launcher.started,
              std::vector<std::string>{"open " + drive.At(package) + "Documentation\\Read Me(1).txt"});
    QTest::keyClick(&documents, Qt::Key_A, Qt::ControlModifier);
    user.ExpectMessage("Are you sure you want to delete the 2 files selected?", "Yes");
    QTest::keyClick(&documents, Qt::Key_Delete);
    user.Finish();
    ExpectChanges({}, Below(package + "Documentation\\", {"Read Me(1).txt", "Read Me.txt"}));
    EXPECT_EQ(Count(Documentation), 0);

    // First package, and the end: the settings are saved for the next run.
    user.ExpectMessage(
        "Done.\n\nThe Aircraft - Light Props\\Skerrow_ Amphibian v2_0 will be the first package you see "
        "when you start Korvadex",
        "OK");
    Click(window, "cmdFirstPackage");
    QSignalSpy ended(&window, &frmHangar::Ended);
    window.resize(800, 600);
    window.close();
    EXPECT_EQ(ended.size(), 1);
    EXPECT_FALSE(window.isVisible());
    ExpectChanges({"Home\\kx.ini"}, {});
    EXPECT_NE(drive.Get("Home\\kx.ini").find("MHEIGHT=9000\r\n"), std::string::npos);

    frmHangar nextWindow(drive.Files());
    Program next(drive.Files(), launcher, dialogs, dialogs, nextWindow, drive.At("Home\\"),
                 "/opt/korvadex/korvadex");
    nextWindow.SetProgram(&next);
    ASSERT_TRUE(next.Start());
    EXPECT_EQ(Control<QComboBox>(nextWindow, "cboPackageName").currentText(), "Skerrow_ Amphibian v2_0");
    EXPECT_EQ(nextWindow.size(), QSize(800, 600));
    nextWindow.close();
}

TEST_F(RoadTest, OfAnAircraftWithTwoConfigurations) {
    user.ExpectMessage("It appears as though this is the first time you are running Korvadex.*", "OK");
    EnterLocations(At("Hangar"));
    ASSERT_TRUE(program.Start());
    window.show();
    ExpectChanges({}, {});

    ExpectArchiveChoice(demo::TwoLiveriesArchive);
    user.Expect("frmMultipleCfg", [](QWidget& dialog) {
        auto& list = Control<QListWidget>(dialog, "lstConfigs");
        ASSERT_EQ(list.count(), 2);
        EXPECT_EQ(list.item(1)->text(), "Brindle 8 Red  (fltsim.1)");
        DoubleClickRow(list, 1);
    });
    Click(window, "cmdGoToStaging");
    ChooseEntry("mnuStagingOptions", "mnuProcessZipFile");
    const std::string unpacked = staging + "ZIP_Brindle-8 two liveries.zip\\";
    const Names members = {"",
                           "Brindle8\\",
                           "Brindle8\\aircraft.cfg",
                           "Brindle8\\brindle8.air",
                           "Brindle8\\gauges\\",
                           "Brindle8\\gauges\\Brindle.cab",
                           "Brindle8\\model\\",
                           "Brindle8\\model\\brindle8.mdl",
                           "Brindle8\\model\\model.cfg",
                           "Brindle8\\panel\\",
                           "Brindle8\\panel\\brindle8_panel.bmp",
                           "Brindle8\\panel\\panel.cfg",
                           "Brindle8\\sound\\",
                           "Brindle8\\sound\\brindle8_turbine.wav",
                           "Brindle8\\sound\\sound.cfg",
                           "Brindle8\\texture\\", // emptied: only the other configuration used it
                           "Brindle8\\texture.red\\",
                           "Brindle8\\texture.red\\brindle8_fuselage.bmp",
                           "Brindle8\\texture.red\\brindle8_tail.bmp",
                           "brindle8.htm",
                           "brindle8_blue.jpg",
                           "brindle8_red.jpg"};
    ExpectChanges(Below(unpacked, members), {});
    EXPECT_EQ(Text("txtAircraftName"), demo::SecondLivery);
    const std::string config = drive.Get(unpacked + "Brindle8\\aircraft.cfg");
    EXPECT_NE(config.find("[fltsim.0]"), std::string::npos);
    EXPECT_NE(config.find("texture=\r\n"), std::string::npos);
    EXPECT_EQ(config.find("[fltsim.1]"), std::string::npos);
    EXPECT_EQ(config.find(demo::FirstLivery), std::string::npos);

    // A second archive on top of it is asked about.
    user.ExpectMessage(
        "Staging currently contains files.  Proceed?  (select 'Yes' if you are adding to a package)", "No");
    ChooseEntry("mnuStagingOptions", "mnuProcessZipFile");
    user.ExpectMessage("Please enter a package name.", "OK");
    PressToolbar("Install");
    ExpectChanges({}, {});

    const Disk staged = disk;
    Pick(window, "cboPackageCategory", demo::HeavyPropsCategory);
    CopyToHangarAndClear("Brindle 8");
    const std::string package = std::string("Hangar\\") + demo::HeavyPropsCategory + "\\Brindle 8\\";
    const Names packed = {"",
                          "Documentation\\",
                          "Documentation\\brindle8.htm",
                          "Gauges\\",
                          "Gauges\\Brindle.cab",
                          "Images\\",
                          "Images\\brindle8_blue.jpg",
                          "Images\\brindle8_red.jpg",
                          "Model\\",
                          "Model\\brindle8.mdl",
                          "Model\\model.cfg",
                          "Panel\\",
                          "Panel\\brindle8_panel.bmp",
                          "Panel\\panel.cfg",
                          "Sound\\",
                          "Sound\\brindle8_turbine.wav",
                          "Sound\\sound.cfg",
                          "Texture\\",
                          "Texture\\brindle8_fuselage.bmp",
                          "Texture\\brindle8_tail.bmp",
                          "aircraft.cfg",
                          "brindle8.air"};
    ExpectEmptied(staging, Below(package, packed));
    ExpectCopies(package, staged, staging);

    Click(window, "cmdGoToHangar");
    Pick(window, "cboPackageName", "Brindle 8");
    const Disk before = disk;
    Install(
        "Brindle 8 ...\n\nPossible problem ...\n\nThis package uses the following gauge files\nwhich aren't "
        "currently installed in MSFS.\nPlease install the package(s) which contains\nthese gauge files or "
        "they "
        "will not be\nvisible when panel is loaded in MSFS ...\n\nbrindle_radar.gau\n\nInstallation complete "
        "with "
        "warning.");
    Names installed = {sim + "gauges\\Brindle.cab"};
    for (const auto& name : packed)
        if (!name.starts_with("Gauges\\"))
            installed.insert(sim + "aircraft\\Brindle_8\\" + name);
    ExpectChanges(installed, {});
    ExpectCopies(sim + "aircraft\\Brindle_8\\", before, package);

    RemoveFromSim();
    ExpectChanges({}, installed);
    EXPECT_EQ(disk, before);
}

TEST_F(RoadTest, KeepsWhatAnotherAircraftUses) {
    user.ExpectMessage("It appears as though this is the first time you are running Korvadex.*", "OK");
    EnterLocations(At("Hangar"));
    ASSERT_TRUE(program.Start());
    window.show();

    Pick(window, "cboPackageCategory", demo::LightPropsCategory);
    Pick(window, "cboPackageName", demo::AliasPackage);
    user.ExpectMessage(
        "This package uses a panel via alias (pellmoor p12\\panel) which is not installed in MSFS.  "
        "Please install the package that contains this panel first.",
        "OK");
    PressToolbar("Install");
    ExpectChanges({}, {});

    const Disk before = disk;
    Pick(window, "cboPackageName", demo::CompletePackage);
    Install("Pellmoor P12 ...\n\nCrosscheck complete.  PASSED.\n\nInstallation complete.");
    Pick(window, "cboPackageName", demo::AliasPackage);
    Install("Pellmoor P12 Floats ...\n\nPanel alias used.  Crosscheck bypassed.\n\nInstallation complete.");
    disk = drive.Tree();

    // The user of the panel stands in the list window; a click on its line leads there.
    Pick(window, "cboPackageName", "< Pellmoor P12 >");
    user.ExpectMessage("Are you sure you want to remove this package from the Flight Simulator directory?",
                       "Yes");
    user.ExpectMessage(
        "Cannot remove.  The panel in this package is used (via alias) by an aircraft(s) in the Flight "
        "Simulator directory as shown.",
        "OK");
    PressToolbar("Uninstall");
    ExpectChanges({}, {});
    auto& list = Control<QWidget>(window, "frmFileList");
    EXPECT_TRUE(list.isVisible());
    EXPECT_EQ(list.windowTitle(), "panel used in ...");
    auto& lines = Control<QListWidget>(list, "lstFileList");
    ASSERT_EQ(lines.count(), 1);
    EXPECT_EQ(lines.item(0)->text(), "< Pellmoor P12 Floats >");
    ClickRow(lines, 0);
    EXPECT_EQ(ShownPackage(), "< Pellmoor P12 Floats >");

    RemoveFromSim();
    Pick(window, "cboPackageName", "< Pellmoor P12 >");
    RemoveFromSim();
    // Effects stay: others may use them by now.
    disk = before;
    ExpectChanges({sim + "effects\\pellmoor_dust.fx"}, {});
}

} // namespace korvadex::test
