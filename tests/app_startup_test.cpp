#include "app/profiles.h"
#include "tests/support/faulty_files.h"
#include "tests/support/program_fixture.h"

namespace korvadex::test {
namespace {

constexpr const char* FirstRun =
    "It appears as though this is the first time you are running Korvadex.  For Korvadex to function "
    "properly you need to "
    "specify three directories:\n\n"
    "- Staging directory: A directory where you initially extract/import/copy/move files for a single "
    "aircraft into.\n"
    "- Hangar directory: A 'collection' directory where the files from the Staging directory are stored when "
    "you choose to "
    "accept them into the Hangar.\n"
    "- Microsoft Flight Simulator directory: The directory where Flight Simulator is installed.\n\n"
    "Note:  The Staging and Hangar directories should initially be empty.  See kxdoc.htm for more info.";
constexpr const char* Continue = "Continue location entry?...";

class StartUp : public ProgramTest {};

TEST_F(StartUp, AFirstRunFromTheMessageToTheSettingsFile) {
    user.Expect(FirstRun, Answer::Ok, MessageIcon::Information);
    dialogs.Enter(locations);
    drive.Put("Hangar\\a file is no category.txt", "x");
    ASSERT_TRUE(Make(drive.Files()).Start());

    const std::vector<std::string> categories = {
        "Aircraft - Heavy Jets",  "Aircraft - Heavy Props", "Aircraft - Helicopters", "Aircraft - Light Jets",
        "Aircraft - Light Props", "Aircraft - Military",    "Panels - Heavy Jets",    "Panels - Heavy Props",
        "Panels - Light Jets",    "Panels - Light Props",   "Sounds - Heavy Jets",    "Sounds - Heavy Props",
        "Sounds - Light Jets",    "Sounds - Light Props"};
    EXPECT_EQ(form.view.categories, categories);
    EXPECT_EQ(form.view.header, "H A N G A R");
    EXPECT_EQ(form.view.caption, "Korvadex");
    EXPECT_EQ(form.view.packageIndex, -1);
    EXPECT_FALSE(drive.Has("App\\kx.ini"));

    program->Shutdown();
    EXPECT_EQ(form.ends, 1);
    EXPECT_EQ(SavedSettings(), "ALTLOCATION0=A Location Profile\r\nALTSTAGINGDIR0=" + locations.StagingDir +
                                   "\r\nALTHANGARDIR0=" + locations.HangarDir +
                                   "\r\nALTMSFSDIR0=" + locations.MsfsDir +
                                   "\r\nALTFIRSTPACKAGE0=\r\nLOCATIONLAST=0\r\nLOCATIONLASTZIP=\r\n"
                                   "MTOP=1200\r\nMLEFT=900\r\nMHEIGHT=7200\r\nMWIDTH=9600\r\n"
                                   "LTOP=0\r\nLLEFT=0\r\nLHEIGHT=4000\r\nLWIDTH=5000\r\n");

    drive.Put("App\\kx.ini", "saved once");
    program->Shutdown();
    program->Refresh();
    EXPECT_EQ(SavedSettings(), "saved once");
    EXPECT_EQ(form.ends, 1);
}

TEST_F(StartUp, AnyCategoryInTheHangarKeepsTheDefaultsAway) {
    drive.MakeDirectory("Hangar\\Mine");
    Start();
    EXPECT_EQ(drive.Names("Hangar"), std::vector<std::string>{"Mine\\"});
}

TEST_F(StartUp, WhatAKilledRunLeftIsNoCategoryAndGoes) {
    const char* leftovers[] = {"Hangar\\~kx~scratch", "FS\\gauges\\~kx~scratch", "App\\~kx~scratch"};
    for (const std::string directory : leftovers)
        drive.Put(directory + "\\1~Lear\\aircraft.cfg", "half");
    Start();
    EXPECT_EQ(form.view.categories.size(), 14u);
    for (const char* directory : leftovers)
        EXPECT_FALSE(drive.Has(directory)) << directory;
}

TEST_F(StartUp, TheMarkerOfARestartKeepsTheDialogAway) {
    PutSettings("", "LOCATIONASK=YES\r\n");
    drive.Put("App\\LocationChange", "LocationChange\r\n");
    ASSERT_TRUE(drive.Files().SetReadOnly(drive.At("App\\LocationChange"), true));
    Start();
    EXPECT_FALSE(drive.Has("App\\LocationChange"));

    dialogs.Enter(locations);
    dialogs.askAtStart = false;
    Start();
    program->Shutdown();
    EXPECT_EQ(SavedSettings(), SettingsText());
}

TEST_F(StartUp, TheFirstPackageIsShownOrForgotten) {
    drive.Put("Hangar\\Jets\\Lear\\Lear.air", "x");
    drive.Put("Hangar\\Props\\Lear\\Lear.air", "x");
    struct Row {
        const char *name, *stored, *shown, *saved;
    };
    const Row rows[] = {
        {"none", "", "", ""},
        {"category and package", "Props\\Lear", "Hangar\\Props\\Lear\\", "Props\\Lear"},
        {"in another case", "props\\LEAR", "Hangar\\Props\\Lear\\", "props\\LEAR"},
        {"a package alone", "Lear", "Hangar\\Jets\\Lear\\", "Lear"},
        {"deleted since", "Jets\\Cessna", "", ""},
        {"its category deleted since", "Gliders\\Lear", "", ""},
        {"something below a package", "Jets\\Lear\\Panel", "", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        PutSettings(row.stored);
        Start();
        EXPECT_EQ(Shown(), *row.shown ? drive.At(row.shown) : "");
        EXPECT_EQ(form.view.packageIndex, *row.shown ? 0 : -1);
        program->Shutdown();
        EXPECT_EQ(SavedSettings(), SettingsText(row.saved));
    }
}

TEST_F(StartUp, AFirstPackageThatEndsTheProgramDoesSoOnce) {
    drive.Put("Hangar\\Jets\\Lear\\Lear.air", "x");
    drive.Put("Hangar\\Jets\\Lear\\Model\\Lear.air", "y");
    PutSettings("Jets\\Lear");
    // Any text: what matters here is the way out.
    user.Expect("...", Answer::Ok, MessageIcon::Critical);
    EXPECT_FALSE(Make(drive.Files()).Start());
    EXPECT_EQ(form.ends, 1);
    EXPECT_EQ(SavedSettings(), SettingsText());
    Start();
}

TEST_F(StartUp, GivingUpTheEntryEndsWithoutATrace) {
    user.Expect(FirstRun, Answer::Ok).Expect(Continue, Answer::No);
    dialogs.Close();
    EXPECT_FALSE(Make(drive.Files()).Start());
    EXPECT_EQ(form.ends, 1);
    EXPECT_TRUE(drive.Names("App").empty());
    EXPECT_TRUE(drive.Names("Hangar").empty());

    // A refused entry never reaches the file.
    PutSettings("", "LOCATIONASK=YES\r\n");
    dialogs.Enter({"", drive.At("Hangar"), drive.At("FS")});
    user.Expect("Please enter a valid directory for the Staging location (i.e. c:\\staging).", Answer::Ok)
        .Expect(Continue, Answer::No);
    EXPECT_FALSE(Make(drive.Files()).Start());
    EXPECT_EQ(SavedSettings(), SettingsText("", "LOCATIONASK=YES\r\n"));
}

TEST_F(StartUp, ASettingsFileThatCannotBeReadIsNotWrittenOver) {
    drive.Put("App\\kx.ini\\inside", "x");
    user.Expect("The settings file " + drive.At("App\\kx.ini") + " could not be read (...", Answer::Ok,
                MessageIcon::Critical);
    EXPECT_FALSE(Make(drive.Files()).Start());
    EXPECT_EQ(drive.Get("App\\kx.ini\\inside"), "x");
}

TEST_F(StartUp, ASaveThatFailsLeavesTheFileAndIsSaid) {
    PutSettings("Jets\\Gone");
    FaultyFiles faulty(drive.Files());
    faulty.FailWhere([](const std::string& change, const std::string& path) {
        return change == "Write" && path.find("kx.ini") != std::string::npos ? FileFault::DiskFull
                                                                             : FileFault::None;
    });
    ASSERT_TRUE(Make(faulty).Start());
    user.Expect("The settings could not be saved in " + drive.At("App\\kx.ini") + " (...", Answer::Ok,
                MessageIcon::Exclamation);
    program->Shutdown();
    EXPECT_EQ(form.ends, 1);
    EXPECT_EQ(SavedSettings(), SettingsText("Jets\\Gone"));
    EXPECT_EQ(drive.Names("App"), std::vector<std::string>{"kx.ini"});
}

class ChangeOfLocations : public ProgramTest {
  protected:
    ChangeOfLocations() {
        drive.MakeDirectory("Hangar\\Jets");
        drive.MakeDirectory("Hangar2\\Props");
        drive.MakeDirectory("Staging2");
    }
};

TEST_F(ChangeOfLocations, AnotherHangarStartsTheProgramAgain) {
    Start();
    drive.Put("App\\LocationChange", "an old one");
    auto changed = locations;
    changed.HangarDir = drive.At("Hangar2");
    dialogs.Enter(changed);
    program->ChangeLocations();

    EXPECT_EQ(form.ends, 1);
    EXPECT_EQ(launcher.started, std::vector<std::string>{"start the executable"});
    EXPECT_EQ(drive.Get("App\\LocationChange"), "LocationChange\r\n");
    locations.HangarDir = drive.At("Hangar2\\");
    EXPECT_EQ(SavedSettings(), SettingsText());
    program->Shutdown();
    EXPECT_EQ(form.ends, 1);

    Start();
    EXPECT_EQ(form.view.categories, std::vector<std::string>{"Props"});
}

TEST_F(ChangeOfLocations, AClearedProfileLeavesTheSettingsFile) {
    PutSettings("", "ALTLOCATION4=Other\r\nALTSTAGINGDIR4=C:\\s\\\r\nALTHANGARDIR4=C:\\h\\\r\nALTMSFSDIR4=C:"
                    "\\f\\\r\nALTFIRSTPACKAGE4=Jets\\Lear\r\n");
    Start();
    dialogs.editProfiles = [](ProfileEditor& profiles) {
        EXPECT_EQ(profiles.Names()[4], "Other");
        profiles.Clear(4);
    };
    program->EditLocationProfiles();
    program->Shutdown();
    EXPECT_EQ(SavedSettings(), SettingsText());
}

TEST_F(ChangeOfLocations, WithoutASaveThereIsNoRestart) {
    PutSettings();
    FaultyFiles faulty(drive.Files());
    faulty.FailWhere([](const std::string& change, const std::string& path) {
        return change == "Replace" && path.find("kx.ini") != std::string::npos ? FileFault::Denied
                                                                               : FileFault::None;
    });
    ASSERT_TRUE(Make(faulty).Start());
    auto changed = locations;
    changed.HangarDir = drive.At("Hangar2");
    dialogs.Enter(changed);
    user.Expect("The settings could not be saved in...", Answer::Ok, MessageIcon::Exclamation);
    program->ChangeLocations();

    EXPECT_EQ(form.ends, 0);
    EXPECT_TRUE(launcher.started.empty());
    EXPECT_EQ(program->GetSettings().locations.HangarDir, locations.HangarDir);
    EXPECT_EQ(program->GetSettings().LocationProfiles[0].HangarDir, locations.HangarDir);
    EXPECT_EQ(drive.Names("App"), std::vector<std::string>{"kx.ini"});
}

TEST_F(ChangeOfLocations, WhatDoesNotRestart) {
    Start();
    dialogs.Close();
    program->ChangeLocations();
    EXPECT_EQ(program->GetSettings().locations.StagingDir, locations.StagingDir);

    program->GoToStaging();
    auto changed = locations;
    changed.StagingDir = drive.At("Staging2\\");
    dialogs.Enter(changed);
    program->ChangeLocations();
    EXPECT_EQ(Shown(), drive.At("Staging2\\"));
    EXPECT_EQ(form.ends, 0);

    dialogs.Enter({});
    user.Expect("Please enter...", Answer::Ok)
        .Expect("Please enter...", Answer::Ok)
        .Expect("Please enter...", Answer::Ok);
    user.Expect(Continue, Answer::No);
    program->ChangeLocations();
    EXPECT_EQ(form.ends, 1);
    EXPECT_TRUE(launcher.started.empty());
    locations.StagingDir = drive.At("Staging2\\");
    EXPECT_EQ(SavedSettings(), SettingsText());
}

} // namespace
} // namespace korvadex::test
