#include "demo/example.h"
#include "tests/support/hands.h"
#include "tests/support/zip_builder.h"
#include "tour/tour.h"

#include <QContextMenuEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QTabWidget>
#include <QTreeView>

namespace korvadex::tour {

namespace {

using test::Control, test::Pick, test::Type;

// A menu over the part of the main window that it covers.
auto Menu(const char* key, QSize part) {
    return [=](Tour& tour) {
        tour.OpenMenu(key);
        tour.Photograph(part);
    };
}

// What an entry of a menu opens.
auto Window(const char* menu, const char* entry, const char* window, const char* lastKey = nullptr) {
    return [=](Tour& tour) {
        tour.Choose(menu, entry);
        tour.Await(window);
        if (lastKey)
            tour.Press(lastKey);
        tour.Photograph();
    };
}

// The same of a message, about a package.
auto Message(const char* package, const char* menu, const char* entry, const char* text) {
    return [=](Tour& tour) {
        tour.GoTo(package);
        tour.Choose(menu, entry);
        tour.AwaitMessage(text);
        tour.PhotographAll();
    };
}

void GoToStaging(Tour& tour) {
    tour.Press("Alt+A");
    tour.AwaitHangar();
}

void Filter(Tour& tour) {
    tour.Press("Ctrl+F");
    tour.Write("flo");
    tour.Photograph();
}

// Several packages are selected, and the menu is open.
void Collection(Tour& tour) {
    tour.GoTo(demo::CompletePackage);
    tour.Press("F9");
    tour.AwaitHangar();
    tour.Use([](QWidget& hangar) { Control<QTreeView>(hangar, "treCollection").setFocus(); });
    tour.Press("Shift+Down");
    tour.Use([](QWidget& hangar) {
        auto& tree = Control<QTreeView>(hangar, "treCollection");
        QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, {-1, -1}, tree.mapToGlobal(QPoint(1, 1)));
        QCoreApplication::sendEvent(&tree, &menuKey);
    });
    tour.Photograph();
}

// The report of a command for many.
void Many(Tour& tour) {
    tour.Press("F9");
    tour.AwaitHangar();
    tour.Use([](QWidget& hangar) {
        auto& tree = Control<QTreeView>(hangar, "treCollection");
        tree.setFocus();
        tree.selectAll();
    });
    tour.Press("Ctrl+I");
    tour.AwaitMessage("");
    tour.PhotographAll();
}

void Directory(Tour& tour) {
    tour.Choose("Alt+F", "L");
    tour.Await("frmLocations");
    tour.Click("cmdHangarDir");
    tour.Await("frmDirSelect");
    tour.PhotographAll();
}

void Profile(Tour& tour) {
    tour.Choose("Alt+F", "P");
    tour.Await("frmLocationProfiles");
    tour.Click("cmdModifyProfile_1");
    tour.Await("frmLocationProfileModify");
    tour.PhotographAll();
}

void Archive(Tour& tour) {
    tour.Press("Ctrl+O");
    tour.Await("zipFileDialog");
    tour.Photograph();
}

// An archive with two aircraft.
void Several(Tour& tour) {
    test::ZipBuilder zip;
    for (const char* name : {"Aldous 2", "Corvale 12"})
        zip.Add(std::string(name) + "/aircraft.cfg", std::string("[fltsim.0]\r\ntitle=") + name + "\r\n")
            .Add(std::string(name) + "/model/model.cfg", "[models]\r\n");
    tour.Put("Downloads\\both.zip", zip.Bytes());
    tour.ProcessZip("both.zip");
    tour.Await("frmSeveralAircraft");
    tour.Photograph();
}

// Not in the home of whoever takes the tour.
void ShowDirectory(Tour& tour, const std::string& relative) {
    const auto directory = QString::fromStdString(tour.HostPath(relative));
    tour.Use([=](QWidget& dialog) { dynamic_cast<QFileDialog&>(dialog).setDirectory(directory); });
}

void PictureFiles(Tour& tour) {
    tour.Choose("Alt+D", "F");
    tour.Await("pictureFileDialog");
    ShowDirectory(tour, "Hangar\\Aircraft - Helicopters\\Quillon Rotor 3\\Images");
    tour.Photograph();
}

void Import(Tour& tour) {
    GoToStaging(tour);
    tour.Choose("Alt+O", "M");
    tour.Await("frmMSFSImport");
    tour.Press("Home");
    tour.Photograph();
}

void Imported(Tour& tour) {
    GoToStaging(tour);
    tour.Choose("Alt+O", "M");
    tour.Await("frmMSFSImport");
    tour.Press("Home");
    tour.Press("Return");
    tour.Await("frmMultipleCfg");
    tour.Press("Home");
    tour.Press("Return");
    tour.Await("frmImportStatus");
    tour.PhotographAll();
}

void Nested(Tour& tour) {
    tour.ProcessZip(demo::NestedArchive);
    tour.AwaitMessage("Found another ZIP file");
    tour.Photograph();
}

void Configurations(Tour& tour) {
    tour.ProcessZip(demo::TwoLiveriesArchive);
    tour.Await("frmMultipleCfg");
    tour.Press("Home");
    tour.Photograph();
}

void Staging(Tour& tour) {
    tour.ProcessZip(demo::PlainArchive);
    tour.AwaitHangar();
    tour.Press("Alt+K");
    tour.Write("Taymere 60");
    tour.Photograph();
}

void Password(Tour& tour) {
    test::ZipBuilder::Options options;
    options.password = "secret";
    tour.Put("Downloads\\locked.zip", test::ZipBuilder().Add("aircraft.cfg", "[fltsim.0]", options).Bytes());
    tour.ProcessZip("locked.zip");
    tour.Await("InputBox");
    tour.Write("secret");
    tour.PhotographAll();
}

void Duplicate(Tour& tour) {
    tour.Put("Staging\\taymere_wing.bmp", "BM of the day");
    tour.MakeDirectory("Staging\\Night");
    tour.Put("Staging\\Night\\taymere_wing.bmp", "BM of the night");
    tour.Press("Alt+A");
    tour.AwaitMessage("A duplicate filename condition has occurred.");
    tour.PhotographAll();
}

void Executable(Tour& tour) {
    tour.Put("Staging\\setup.exe", "MZ");
    tour.Press("Alt+A");
    tour.AwaitMessage("An executable file was found");
    tour.PhotographAll();
}

void Crosscheck(Tour& tour) {
    tour.GoTo(demo::MissingGaugePackage);
    tour.Press("Ctrl+I");
    tour.Await("frmInstallStatus");
    tour.Photograph();
}

// A gauge that no panel names is put beside those of the simulator.
void Unused(Tour& tour) {
    tour.Put("FS2002\\gauges\\Old_Radio.gau", "MZ of an old radio");
    tour.Choose("Alt+T", "U");
    tour.AwaitMessage("");
    tour.Press("Return");
    tour.Await("frmUnusedGauges");
    tour.Photograph();
}

void Rename(Tour& tour) {
    tour.GoTo(demo::MissingGaugePackage); // nobody uses its panel
    tour.Choose("Alt+O", "N");
    tour.Await("frmRename");
    tour.Photograph();
}

void PasteAlias(Tour& tour) {
    tour.GoTo(demo::CompletePackage);
    tour.Choose("Alt+O", "P");
    tour.AwaitMessage("Done.");
    tour.PhotographAll("alias_created");
    tour.Answer("OK");
    tour.AwaitHangar();
    tour.GoTo(demo::MissingGaugePackage);
    tour.Choose("Alt+O", "A");
    tour.AwaitMessage("");
    tour.Answer("OK");
    tour.AwaitHangar();
    tour.Photograph();
}

void Notes(Tour& tour) {
    tour.Choose("Alt+D", "C");
    tour.Use([](QWidget& hangar) { Control<QTabWidget>(hangar, "tabComponents").setCurrentIndex(7); });
    tour.AwaitHangar();
    tour.Photograph();
}

void Compressed(Tour& tour) {
    tour.Choose("Alt+T", "C");
    tour.AwaitMessage("");
    tour.PhotographAll("compress_all");
    tour.Answer("Yes");
    tour.AwaitMessage("");
    tour.PhotographAll();
}

// A directory of archives, of which those that need no question are taken in one go.
void Queue(Tour& tour) {
    tour.MakeDirectory("Archives");
    const auto put = [&](const char* name, const char* more, const char* panel, const char* password) {
        test::ZipBuilder::Options options;
        options.password = password;
        test::ZipBuilder zip;
        zip.Add("aircraft.cfg", std::string("[fltsim.0]\r\ntitle=") + name + "\r\n" + more, options);
        for (const char* file : {"model/model.cfg", panel, "sound/sound.cfg"})
            zip.Add(file, "[general]\r\n", options);
        tour.Put(std::string("Archives\\") + name + ".zip", zip.Bytes());
    };
    for (const char* name : {"Aldous 2", "Corvale 12", "Dunmere Jet", "Hollin Glider", "Marlock 4", "Ostrand Twin"})
        put(name, "", "panel/panel.cfg", "");
    put("Brindle 8 liveries", "[fltsim.1]\r\ntitle=Brindle 8 by night\r\n", "panel/panel.cfg", "");
    put("Jessamy", "", "readme.txt", "");
    put("Kettering locked", "", "panel/panel.cfg", "secret");
    tour.Put("Archives\\Nettle.zip", "half of it");
    GoToStaging(tour);
    tour.Choose("Alt+O", "D");
    tour.Await("archiveDirectoryDialog");
    const auto directory = QString::fromStdString(tour.HostPath("Archives"));
    tour.Use([=](QWidget& dialog) { Control<QLineEdit>(dialog, "fileNameEdit").setText(directory); });
    tour.Press("Return");
    tour.AwaitHangar();
    tour.Choose("Alt+O", "R");
    tour.AwaitMessage("Are you sure you want to erase everything");
    tour.Answer("Yes");
    tour.AwaitMessage("Done.");
    tour.Answer("OK");
    tour.AwaitHangar();
    tour.Choose("Alt+T", "T");
    tour.Await("InputBox");
    tour.PhotographAll("queue_category");
    tour.Press("Return");
    tour.AwaitMessage("");
    tour.Answer("OK");
    tour.AwaitHangar();
    tour.Photograph();
}

void Splash(Tour& tour) {
    tour.StartWithSplash();
    tour.Await("frmSplash");
    tour.Photograph();
    tour.AwaitHangar();
}

// An archive with another one in it, into Staging.
void Unpack(Tour& tour) {
    tour.ProcessZip(demo::NestedArchive);
    tour.AwaitMessage("Found another ZIP file");
    tour.Answer("Yes");
    tour.AwaitHangar();
}

void CopyToHangar(Tour& tour) {
    tour.Use([](QWidget& hangar) { Pick(hangar, "cboPackageCategory", demo::LightPropsCategory); });
    tour.Choose("Alt+O", "H");
    tour.AwaitMessage("Done.\n\nWould you like to clear the Staging area");
    tour.Answer("Yes");
    tour.AwaitMessage("Are you sure you want to erase everything");
    tour.Answer("Yes");
    tour.AwaitMessage("Done.");
    tour.Answer("OK");
    tour.AwaitHangar();
    tour.Press("Alt+H");
    tour.AwaitHangar();
}

void Install(Tour& tour) {
    tour.Press("Ctrl+I");
    tour.Await("frmInstallStatus");
    tour.Click("cmdOK");
    tour.AwaitHangar();
}

// An install, and a removal from the Hangar that was taken back.
void History(Tour& tour) {
    tour.GoTo(demo::CompletePackage);
    Install(tour);
    tour.GoTo(demo::MissingGaugePackage);
    tour.Choose("Alt+O", "H");
    tour.AwaitMessage("Are you sure you want to remove this package from the hangar?");
    tour.Answer("Yes");
    tour.AwaitMessage("Done.");
    tour.Answer("OK");
    tour.AwaitHangar();
    tour.Press("Ctrl+Z");
    tour.AwaitHangar();
    tour.Choose("Alt+F", "H");
    tour.Await("frmHistory");
    tour.Photograph();
}

// One of each command that changes files: what is left is the same on every system.
void Everything(Tour& tour) {
    Unpack(tour);
    CopyToHangar(tour);
    tour.GoTo("Skerrow Amphibian");
    Install(tour);
    tour.Press("Ctrl+U");
    tour.AwaitMessage("Are you sure you want to remove this package");
    tour.Answer("Yes");
    tour.AwaitMessage("Done.");
    tour.Answer("OK");
    tour.AwaitHangar();
    Install(tour);

    PasteAlias(tour);
    tour.GoTo("Skerrow Amphibian");
    tour.Choose("Alt+D", "I");
    tour.AwaitMessage("This package is currently installed");
    tour.Answer("OK");
    tour.Await("frmInfo");
    tour.Use([](QWidget& information) { Type(information, "txtUIVariation", "On floats"); });
    tour.Click("cmdApply");
    tour.AwaitHangar();
    tour.Choose("Alt+D", "F");
    tour.Await("pictureFileDialog");
    const auto picture = QString::fromStdString(
        tour.HostPath("Hangar\\Aircraft - Helicopters\\Quillon Rotor 3\\Images\\quillon by day.jpg"));
    tour.Use([=](QWidget& dialog) { Control<QLineEdit>(dialog, "fileNameEdit").setText(picture); });
    tour.Press("Return");
    tour.AwaitHangar();

    tour.GoTo(demo::AliasPackage);
    tour.Choose("Alt+O", "M");
    tour.AwaitMessage("");
    tour.Answer("OK");
    tour.AwaitHangar();
    Imported(tour);
    tour.Click("cmdOK");
    tour.AwaitMessage("Done.");
    tour.Answer("OK");
    tour.AwaitHangar();
    tour.Photograph();
}

// From the first start to the flight and back.
void Road(Tour& tour) {
    tour.Remove(std::string(demo::AppDirectory) + "kx.ini");
    tour.Start();
    tour.AwaitMessage("It appears as though this is the first time you are running Korvadex.");
    tour.PhotographAll("road_1_first_start");
    tour.Answer("OK");
    tour.Await("frmLocations");
    tour.Use([&](QWidget& locations) {
        Type(locations, "txtStagingDir", QString::fromStdString(tour.At("Staging")));
        Type(locations, "txtHangarDir", QString::fromStdString(tour.At("Hangar")));
        Type(locations, "txtMSFSDir", QString::fromStdString(tour.At("FS2002")));
    });
    tour.PhotographAll("road_2_locations");
    tour.Click("cmdAccept");
    tour.AwaitHangar();
    tour.PhotographAll("road_3_hangar");

    tour.Press("Ctrl+O");
    tour.Await("zipFileDialog");
    ShowDirectory(tour, "Downloads");
    tour.Use([](QWidget& dialog) { Control<QLineEdit>(dialog, "fileNameEdit").setText(demo::NestedArchive); });
    tour.PhotographAll("road_4_archive");
    tour.Press("Return");
    tour.AwaitMessage("Found another ZIP file");
    tour.PhotographAll("road_5_nested");
    tour.Answer("Yes");
    tour.AwaitHangar();
    tour.Use([](QWidget& hangar) { Pick(hangar, "cboPackageCategory", demo::LightPropsCategory); });
    tour.PhotographAll("road_6_staging");

    tour.Choose("Alt+O", "H");
    tour.AwaitMessage("Done.\n\nWould you like to clear the Staging area");
    tour.PhotographAll("road_7_copied");
    tour.Answer("Yes");
    tour.AwaitMessage("Are you sure you want to erase everything");
    tour.PhotographAll("road_8_clear");
    tour.Answer("Yes");
    tour.AwaitMessage("Done.");
    tour.Answer("OK");
    tour.AwaitHangar();
    tour.PhotographAll("road_9_empty");

    tour.Press("Alt+H");
    tour.AwaitHangar();
    tour.GoTo("Skerrow Amphibian");
    tour.Press("Ctrl+I");
    tour.Await("frmInstallStatus");
    tour.PhotographAll("road_10_installed");
    tour.Click("cmdOK");
    tour.AwaitHangar();
    tour.Press("Ctrl+U");
    tour.AwaitMessage("Are you sure you want to remove this package");
    tour.PhotographAll("road_11_remove");
    tour.Answer("Yes");
    tour.AwaitMessage("Done.");
    tour.Answer("OK");
    tour.AwaitHangar();
    tour.PhotographAll("road_12_removed");
}

} // namespace

const std::vector<Step>& Steps() {
    static const std::vector<Step> steps = {
        {"splash", Splash, Kind::Starts},
        {"hangar", [](Tour& tour) { tour.Photograph(); }},
        {"menu_file", Menu("Alt+F", {640, 260})},
        {"menu_tools", Menu("Alt+T", {640, 390})},
        {"menu_options", Menu("Alt+O", {640, 470})},
        {"menu_data", Menu("Alt+D", {640, 280})},
        {"menu_help", Menu("Alt+L", {640, 130})},
        {"menu_staging",
         [](Tour& tour) {
             GoToStaging(tour);
             Menu("Alt+O", {640, 365})(tour);
         }},
        {"filter", Filter},
        {"collection", Collection, Kind::Changes},
        {"locations", Window("Alt+F", "L", "frmLocations")},
        {"directory", Directory},
        {"profiles", Window("Alt+F", "P", "frmLocationProfiles")},
        {"profile", Profile},
        {"packages", Window("Alt+T", "L", "frmFileList")},
        {"installed", Window("Alt+T", "I", "frmFileList")},
        {"gallery", Window("Alt+T", "G", "frmPhotos", "Home")},
        {"information", Window("Alt+D", "I", "frmInfo")},
        {"picture_files", PictureFiles},
        {"about", Window("Alt+L", "A", "frmAbout")},
        {"rename", Rename},
        {"archive", Archive},
        {"import", Import},
        {"remove_package", Message(demo::CompletePackage, "Alt+O", "H", "")},
        {"alias_users", Message(demo::CompletePackage, "Alt+O", "T", "The panel in this package is used")},
        {"uninstall_all", Message(demo::CompletePackage, "Alt+T", "A", "")},
        {"imported", Imported, Kind::Changes},
        {"nested", Nested, Kind::Changes},
        {"configurations", Configurations, Kind::Changes},
        {"staging", Staging, Kind::Changes},
        {"several", Several, Kind::Changes},
        {"password", Password, Kind::Changes},
        {"duplicate", Duplicate, Kind::Changes},
        {"executable", Executable, Kind::Changes},
        {"crosscheck", Crosscheck, Kind::Changes},
        {"many", Many, Kind::Changes},
        {"unused", Unused, Kind::Changes},
        {"alias", PasteAlias, Kind::Changes},
        {"history", History, Kind::Changes},
        {"queue", Queue, Kind::Changes},
        {"notes", Notes, Kind::Changes},
        {"compressed", Compressed, Kind::Changes},
        {"everything", Everything, Kind::Changes},
        {"road", Road, Kind::Starts},
    };
    return steps;
}

} // namespace korvadex::tour
