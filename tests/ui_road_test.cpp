// The road of an add-on through the real window, with mouse and keys: first run, unpacking, Hangar, simulator, and out
// again. After each step the whole drive is compared with what it was.
#include "demo/example.h"
#include "tests/support/window_fixture.h"

#include <set>

namespace korvadex::test {

namespace {

using Names = std::set<std::string>;
using Disk = std::map<std::string, std::string>;

class RoadTest : public WindowTest {
  protected:
    RoadTest() {
        demo::MakeExample(drive.Files(), drive.Root());
        drive.Fill("", "App\\, NewHangar\\");
        disk = drive.Tree();
    }

    std::string Line(const char* control) { return Control<QLineEdit>(window, control).text().toStdString(); }
    std::string ShownPackage() { return Control<QComboBox>(window, "cboPackageName").currentText().toStdString(); }
    int Count(int group) {
        return Control<QListWidget>(window, QString("lstComponents_%1").arg(group).toLatin1()).count();
    }

    // What came (+), went (-) and has other bytes (*) since the drive was last seen.
    Names Changes() {
        Names changes;
        const Disk now = drive.Tree();
        for (const auto& [name, bytes] : now)
            if (!disk.contains(name))
                changes.insert("+" + name);
            else if (disk[name] != bytes)
                changes.insert("*" + name);
        for (const auto& [name, bytes] : disk)
            if (!now.contains(name))
                changes.insert("-" + name);
        disk = now;
        return changes;
    }
    // Nothing changed but that new names stand behind the directory: so many, itself included.
    void ExpectNewBelow(const std::string& directory, std::size_t count) {
        const Names changes = Changes();
        EXPECT_EQ(changes.size(), count);
        for (const auto& name : changes)
            EXPECT_TRUE(name.starts_with("+" + directory)) << name;
    }
    // The bytes of every file below the directory, by file name.
    Disk Files(const std::string& directory) {
        Disk files;
        for (const auto& [name, bytes] : drive.Tree(directory))
            if (!name.ends_with('\\'))
                files[name.substr(name.rfind('\\') + 1)] = bytes;
        return files;
    }

    Disk disk;
};

Names Each(const std::string& before, const Names& names) {
    Names result;
    for (const auto& name : names)
        result.insert(before + name);
    return result;
}

} // namespace

TEST_F(RoadTest, OfAnArchiveWithAnotherArchiveInIt) {
    const std::string hangar = "NewHangar\\Collection\\";
    const std::string staging = demo::StagingDirectory, sim = demo::SimDirectory;
    user.ExpectMessage("It appears as though this is the first time you are running Korvadex.*", "OK");
    user.Expect("frmLocations", [&](QWidget& dialog) {
        Type(dialog, "txtStagingDir", QString::fromStdString(drive.At("Staging")));
        Type(dialog, "txtHangarDir", QString::fromStdString(drive.At("NewHangar\\Collection")));
        Type(dialog, "txtMSFSDir", QString::fromStdString(drive.At("FS2002")));
        Click(dialog, "cmdAccept");
    });
    user.ExpectMessage("The directory you specified for the Hangar location does not exist.  Create it now?", "Yes");
    ASSERT_TRUE(program.Start());
    window.show();
    user.Finish();
    disk["App\\kx.ini"] = drive.Get("App\\kx.ini"); // the locations are kept at once
    EXPECT_NE(disk["App\\kx.ini"], "");
    ExpectNewBelow(hangar, 15); // with the categories
    EXPECT_EQ(Text("lblHeader"), "H A N G A R");

    // Into Staging.
    user.Expect("zipFileDialog", [&](QWidget& dialog) {
        // Pasted, not typed: the completion of names would join in.
        Control<QLineEdit>(dialog, "fileNameEdit")
            .setText(Url(demo::DownloadsDirectory + std::string(demo::NestedArchive)).toLocalFile());
        QTest::mouseClick(Control<QDialogButtonBox>(dialog, "buttonBox").button(QDialogButtonBox::Open),
                          Qt::LeftButton);
    });
    user.ExpectMessage(
        "Found another ZIP file called skerrow panel.zip.  Should I unzip it as well?  (Usually pick 'Yes')", "Yes");
    PressToolbar("ProcessZip");
    ExpectNewBelow(staging + "ZIP_Skerrow_Amphibian_v2.zip\\", 26);
    EXPECT_EQ(Text("lblHeader"), "S T A G I N G");
    EXPECT_EQ(window.windowTitle(), "Korvadex     (Staging Contains Files)");
    EXPECT_EQ(Line("txtAircraftName"), "Skerrow Amphibian");
    EXPECT_EQ(Line("txtPanelAlias"), "None  (Original panel)");
    EXPECT_EQ(Line("txtSoundAlias"), "None  (Original sound)");
    EXPECT_EQ(Count(Images), 2);
    EXPECT_EQ(Count(Unrecognized), 0);

    // Into the Hangar; the name loses what a directory cannot bear.
    const Disk staged = Files(staging);
    Names went;
    for (const auto& name : drive.Names(staging))
        went.insert("-" + staging + name);
    Pick(window, "cboPackageCategory", "Aircraft - Light Props");
    Type(window, "txtPackageName", "Skerrow: Amphibian v2.0");
    user.ExpectMessage("Done.\n\nWould you like to clear the Staging area at this point?", "Yes");
    user.ExpectMessage("Are you sure you want to erase everything in the staging directory?", "Yes");
    user.ExpectMessage("Done.", "OK");
    PressToolbar("Install");
    const std::string package = hangar + "Aircraft - Light Props\\Skerrow_ Amphibian v2_0\\";
    const std::map<std::string, Names> packed = {
        {"", {"aircraft.cfg", "skerrow.air"}},
        {"Documentation\\", {"Read Me(1).txt", "Read Me.txt"}},
        {"Gauges\\", {"Skerrow.cab", "skerrow_water.gau"}},
        {"Images\\", {"skerrow on the lake.jpg", "skerrow.jpg"}},
        {"Model\\", {"model.cfg", "skerrow.mdl"}},
        {"Panel\\", {"panel.cfg", "skerrow_main.bmp"}},
        {"Sound\\", {"skerrow_engine.wav", "sound.cfg"}},
        {"Texture\\", {"skerrow_hull.bmp", "skerrow_wing.bmp"}},
    };
    Names came, installed;
    for (const auto& [directory, files] : packed) {
        came.merge(Each("+" + package + directory, files));
        came.insert("+" + package + directory);
        const bool isGauges = directory == "Gauges\\";
        const std::string target = sim + (isGauges ? "gauges\\" : "aircraft\\Skerrow__Amphibian_v2_0\\");
        installed.merge(Each(target + (isGauges ? "" : directory), files));
        if (!isGauges)
            installed.insert(target + directory);
    }
    installed.insert(sim + "aircraft\\Skerrow__Amphibian_v2_0\\kx_installed.txt");
    came.merge(went);
    EXPECT_THAT(Changes(), testing::ContainerEq(came));
    EXPECT_EQ(Files(package), staged);
    EXPECT_EQ(window.windowTitle(), "Korvadex");
    EXPECT_EQ(Count(Aircraft), 0);
    EXPECT_EQ(Line("txtAircraftName"), "");

    // Into the simulator.
    Click(window, "cmdGoToHangar");
    Pick(window, "cboPackageName", "Skerrow_ Amphibian v2_0");
    EXPECT_EQ(Line("txtAircraftName"), "Skerrow Amphibian");
    const Disk before = disk;
    user.Expect("frmInstallStatus", [](QWidget& dialog) {
        EXPECT_EQ(Control<QPlainTextEdit>(dialog, "txtInstallStatus").toPlainText(),
                  "Skerrow_ Amphibian v2_0 ...\n\nCrosscheck complete.  PASSED.\n\nInstallation complete.");
        Click(dialog, "cmdOK");
    });
    ChooseEntry("mnuHangarToMsfs");
    EXPECT_THAT(Changes(), testing::ContainerEq(Each("+", installed)));
    for (const auto& [name, bytes] : Files(sim + "aircraft\\Skerrow__Amphibian_v2_0\\"))
        EXPECT_TRUE(name == "kx_installed.txt" || bytes == staged.at(name)) << name;
    EXPECT_EQ(ShownPackage(), "< Skerrow_ Amphibian v2_0 >");
    EXPECT_FALSE(Control<QProgressBar>(window, "prbProgress").isVisible());

    // What the simulator uses is not deleted from under it.
    auto& lists = Control<QTabWidget>(window, "tabComponents");
    lists.setCurrentIndex(Texture);
    auto& textures = Control<QListWidget>(window, "lstComponents_5");
    ClickRow(textures, 0);
    user.ExpectMessage("This package is currently installed in Flight Simulator.  "
                       "File deletion while the package is installed in MSFS is not allowed.",
                       "OK");
    QTest::keyClick(&textures, Qt::Key_Delete);
    user.ExpectMessage("This package is already installed in Flight Simulator.", "OK");
    PressToolbar("Install");
    EXPECT_EQ(Changes(), Names());

    // And out again: the drive is what it was.
    user.ExpectMessage("Are you sure you want to remove this package from the Flight Simulator directory?", "Yes");
    user.ExpectMessage("Done.", "OK");
    PressToolbar("Uninstall");
    EXPECT_THAT(Changes(), testing::ContainerEq(Each("-", installed)));
    EXPECT_EQ(disk, before);
    EXPECT_EQ(ShownPackage(), "Skerrow_ Amphibian v2_0");

    // Double click opens a file; the deletion of two asks first.
    lists.setCurrentIndex(Documentation);
    auto& documents = Control<QListWidget>(window, "lstComponents_7");
    DoubleClickRow(documents, 0);
    EXPECT_EQ(launcher.started,
              std::vector<std::string>{"open " + drive.At(package) + "Documentation\\Read Me(1).txt"});
    QTest::keyClick(&documents, Qt::Key_A, Qt::ControlModifier);
    user.ExpectMessage("Are you sure you want to delete the 2 files selected?", "Yes");
    QTest::keyClick(&documents, Qt::Key_Delete);
    user.Finish();
    EXPECT_EQ(Changes(), Each("-" + package + "Documentation\\", {"Read Me(1).txt", "Read Me.txt"}));

    // First package, and the end: the settings are saved for the next run.
    user.ExpectMessage(
        "Done.\n\n"
        "The Aircraft - Light Props\\Skerrow_ Amphibian v2_0 will be the first package you see when you start Korvadex",
        "OK");
    Click(window, "cmdFirstPackage");
    QSignalSpy ended(&window, &frmHangar::Ended);
    window.resize(800, 600);
    window.close();
    EXPECT_EQ(ended.size(), 1);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(Changes(), Names{"*App\\kx.ini"});

    frmHangar nextWindow(drive.Files());
    Program next(drive.Files(), launcher, dialogs, dialogs, converter, nextWindow, drive.At("App\\"), "the executable");
    nextWindow.SetProgram(&next);
    ASSERT_TRUE(next.Start());
    EXPECT_EQ(Control<QComboBox>(nextWindow, "cboPackageName").currentText(), "Skerrow_ Amphibian v2_0");
    EXPECT_EQ(nextWindow.size(), QSize(800, 600));
    nextWindow.close();
}

} // namespace korvadex::test
