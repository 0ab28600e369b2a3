// The road of an add-on through the real window, with mouse and keys: first run, unpacking, Hangar, simulator, and out
// again. What each command does to the disk in detail is told by the case files; here the bytes go all the way.
#include "demo/example.h"
#include "tests/support/window_fixture.h"

namespace korvadex::test {

namespace {

using Disk = std::map<std::string, std::string>;

class RoadTest : public WindowTest {
  protected:
    RoadTest() {
        demo::MakeExample(drive.Files(), drive.Root());
        drive.Fill("", "App\\, NewHangar\\");
    }
    std::string Line(const char* control) { return Control<QLineEdit>(window, control).text().toStdString(); }
    std::string ShownPackage() { return Control<QComboBox>(window, "cboPackageName").currentText().toStdString(); }
    // The bytes of every file below the directory, by file name.
    Disk Files(const std::string& directory) {
        Disk files;
        for (const auto& [name, bytes] : drive.Tree(directory))
            if (!name.ends_with('\\'))
                files[name.substr(name.rfind('\\') + 1)] = bytes;
        return files;
    }
};

} // namespace

TEST_F(RoadTest, OfAnArchiveWithAnotherArchiveInIt) {
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
    EXPECT_NE(drive.Get("App\\kx.ini"), ""); // the locations are kept at once
    EXPECT_EQ(Text("lblHeader"), "H A N G A R");

    // Into Staging.
    user.Expect("zipFileDialog", [&](QWidget& dialog) {
        // Pasted, not typed: the completion of names would join in.
        Control<QLineEdit>(dialog, "fileNameEdit")
            .setText(Url(std::string(demo::DownloadsDirectory).append(demo::NestedArchive)).toLocalFile());
        QTest::mouseClick(Control<QDialogButtonBox>(dialog, "buttonBox").button(QDialogButtonBox::Open),
                          Qt::LeftButton);
    });
    user.ExpectMessage(
        "Found another ZIP file called skerrow panel.zip.  Should I unzip it as well?  (Usually pick 'Yes')", "Yes");
    PressToolbar("ProcessZip");
    const Disk staged = Files(staging);
    EXPECT_EQ(staged.size(), 16u);
    EXPECT_EQ(Text("lblHeader"), "S T A G I N G");
    EXPECT_EQ(window.windowTitle(), "Korvadex     (Staging Contains Files)");
    EXPECT_EQ(Line("txtAircraftName"), "Skerrow Amphibian");
    EXPECT_EQ(Line("txtPanelAlias"), "None  (Original panel)");
    EXPECT_EQ(Line("txtSoundAlias"), "None  (Original sound)");

    // Into the Hangar; the name loses what a directory cannot bear.
    Pick(window, "cboPackageCategory", "Aircraft - Light Props");
    Type(window, "txtPackageName", "Skerrow: Amphibian v2.0");
    user.ExpectMessage("Done.\n\nWould you like to clear the Staging area at this point?", "Yes");
    user.ExpectMessage("Are you sure you want to erase everything in the staging directory?", "Yes");
    user.ExpectMessage("Done.", "OK");
    PressToolbar("Install");
    EXPECT_EQ(Files("NewHangar\\Collection\\Aircraft - Light Props\\Skerrow_ Amphibian v2_0\\"), staged);
    EXPECT_EQ(drive.Outline(staging), "");
    EXPECT_EQ(window.windowTitle(), "Korvadex");
    EXPECT_EQ(Line("txtAircraftName"), "");

    // Into the simulator.
    Click(window, "cmdGoToHangar");
    Pick(window, "cboPackageName", "Skerrow_ Amphibian v2_0");
    const Disk before = drive.Tree();
    user.Expect("frmInstallStatus", [](QWidget& dialog) {
        EXPECT_EQ(Control<QPlainTextEdit>(dialog, "txtInstallStatus").toPlainText(),
                  "Skerrow_ Amphibian v2_0 ...\n\nCrosscheck complete.  PASSED.\n\nInstallation complete.");
        Click(dialog, "cmdOK");
    });
    ChooseEntry("mnuHangarToMsfs");
    Disk installed = Files(sim + "aircraft\\Skerrow__Amphibian_v2_0\\");
    EXPECT_EQ(installed.erase("kx_installed.txt"), 1u);
    for (const char* gauge : {"Skerrow.cab", "skerrow_water.gau"})
        installed[gauge] = drive.Get(sim + "gauges\\" + gauge);
    EXPECT_EQ(installed, staged);
    EXPECT_EQ(ShownPackage(), "< Skerrow_ Amphibian v2_0 >");
    EXPECT_FALSE(Control<QProgressBar>(window, "prbProgress").isVisible());

    // And out again: the drive is what it was.
    user.ExpectMessage("Are you sure you want to remove this package from the Flight Simulator directory?", "Yes");
    user.ExpectMessage("Done.", "OK");
    PressToolbar("Uninstall");
    EXPECT_EQ(drive.Tree(), before);
    EXPECT_EQ(ShownPackage(), "Skerrow_ Amphibian v2_0");

    // The next run finds what this one has left.
    user.ExpectMessage("Done.*", "OK");
    Click(window, "cmdFirstPackage");
    QSignalSpy ended(&window, &frmHangar::Ended);
    window.resize(800, 600);
    window.close();
    EXPECT_EQ(ended.size(), 1);
    frmHangar nextWindow(drive.Files());
    Program next(drive.Files(), launcher, dialogs, dialogs, converter, nextWindow, drive.At("App\\"), "the executable");
    nextWindow.SetProgram(&next);
    ASSERT_TRUE(next.Start());
    EXPECT_EQ(Control<QComboBox>(nextWindow, "cboPackageName").currentText(), "Skerrow_ Amphibian v2_0");
    EXPECT_EQ(nextWindow.size(), QSize(800, 600));
    nextWindow.close();
}

} // namespace korvadex::test
