#include "app/own_files.h"
#include "app/profiles.h"
#include "tests/support/faulty_files.h"
#include "tests/support/program_fixture.h"

namespace korvadex::test {
namespace {

constexpr const char* FirstRun =
    "It appears as though this is the first time...- Staging directory:...\n- Hangar directory:...";
constexpr const char* Continue = "Continue location entry?...";

class StartUp : public ProgramTest {};

TEST_F(StartUp, FindsItsOwnFilesPortableAndInstalled) {
    const struct {
        const char *before, *user, *settings, *data;
    } rows[] = {
        {"bin\\korvadex=x, share\\korvadex\\kx.ini=x", "share\\korvadex", "bin\\", "bin\\"},
        {"bin\\korvadex=x, share\\korvadex\\kxdoc.htm=x", "home\\data\\korvadex", "home\\data\\korvadex\\",
         "share\\korvadex\\"},
        {"bin\\korvadex=x, bin\\kx.ini=x, share\\korvadex\\kxdoc.htm=x", "home", "bin\\", "share\\korvadex\\"},
    };
    for (const auto& row : rows) {
        TemporaryDrive own;
        own.Fill("", row.before);
        const auto executable = own.Files().HostPath(own.At("bin\\korvadex"));
        const auto usersOwn = own.Files().HostPath(own.At(row.user));
        EXPECT_EQ(*SettingsDirectory(own.Files(), executable, usersOwn), own.At(row.settings)) << row.before;
        EXPECT_EQ(DataDirectory(own.Files(), executable), own.At(row.data)) << row.before;
        EXPECT_TRUE(own.Has(row.settings)) << row.before;
    }
    if (drive.Root() != "C:\\")
        return; // drives that leave out a part of the machine are made up
    drive.Fill("", "bin\\korvadex=x, share\\korvadex\\kxdoc.htm=x");
    const auto executable = drive.Files().HostPath(drive.At("bin\\korvadex"));
    EXPECT_EQ(*SettingsDirectory(drive.Files(), executable, "/elsewhere"), "C:\\Korvadex\\");
}

TEST_F(StartUp, AFirstRunFromTheMessageToTheSettingsFile) {
    user.Expect(FirstRun, MessageIcon::Information);
    dialogs.Enter(locations);
    drive.Put("Hangar\\a file is no category.txt", "x");
    user.Expect("...does not look like a Hangar.  It holds " + drive.At("Hangar\\a file is no category.txt") + "...",
                Answer::Yes, MessageIcon::None);
    ASSERT_TRUE(Make(drive.Files()).Start());

    EXPECT_EQ(form.view.categories.size(), 14u);
    EXPECT_EQ(form.view.categories.front(), "Aircraft - Heavy Jets");
    EXPECT_EQ(form.view.header, "H A N G A R");
    EXPECT_EQ(form.view.caption, "Korvadex");
    EXPECT_EQ(form.view.packageIndex, -1);
    EXPECT_THAT(SavedSettings(),
                testing::StartsWith("ALTLOCATION0=A Location Profile\r\nALTSTAGINGDIR0=" + locations.StagingDir));

    program->RunCommand("mnuExit");
    EXPECT_EQ(form.ends, 1);
    EXPECT_THAT(SavedSettings(), testing::HasSubstr("\r\nMTOP=1200\r\nMLEFT=900\r\n"));

    drive.Put("App\\kx.ini", "saved once");
    program->Shutdown();
    program->Refresh();
    EXPECT_EQ(SavedSettings(), "saved once");
    EXPECT_EQ(form.ends, 1);
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
    drive.Fill("Hangar", "Jets\\Lear\\Lear.air=x, Props\\Lear\\Lear.air=x");
    const struct {
        const char *name, *stored, *shown, *saved;
    } rows[] = {
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

TEST_F(StartUp, AFirstPackageIsLookedForWhereItBelongs) {
    drive.Fill("", "Hangar\\Jets\\Lear\\Lear.air=x, Hangar2\\Jets\\Cub\\Cub.air=x");
    const std::string asking = "LOCATIONASK=YES\r\n";
    const Locations other = {locations.StagingDir, drive.At("Hangar2\\"), locations.MsfsDir};
    const auto spare = "ALTLOCATION1=Spare\r\nALTSTAGINGDIR1=" + other.StagingDir +
                       "\r\nALTHANGARDIR1=" + other.HangarDir + "\r\nALTMSFSDIR1=" + other.MsfsDir +
                       "\r\nALTFIRSTPACKAGE1=Jets\\Cub\r\n";
    PutSettings("Jets\\Lear", spare + asking);
    const auto before = SavedSettings();
    dialogs.Enter(other, "Spare");
    Start();
    EXPECT_EQ(Shown(), drive.At("Hangar2\\Jets\\Cub\\"));
    program->Shutdown();
    auto expected = before;
    EXPECT_EQ(SavedSettings(), expected.replace(expected.find("LAST=0"), 6, "LAST=1"));

    // What cannot be read is not known to be without it.
    for (const auto* directory : {"Hangar\\", "Hangar\\Jets\\"}) {
        SCOPED_TRACE(directory);
        PutSettings("Jets\\Lear");
        FaultyFiles faulty(drive.Files());
        faulty.unreadable = drive.At(directory);
        ASSERT_TRUE(Make(faulty).Start());
        program->Shutdown();
        EXPECT_EQ(SavedSettings(), SettingsText("Jets\\Lear"));
        EXPECT_FALSE(drive.Has("Hangar\\Aircraft - Military"));
    }
}

TEST_F(StartUp, AFirstPackageThatEndsTheProgramDoesSoOnce) {
    drive.Fill("Hangar\\Jets\\Lear", "Lear.air=x, Model\\Lear.air=y");
    PutSettings("Jets\\Lear");
    // Any text: what matters here is the way out.
    user.Expect("...", MessageIcon::Critical);
    EXPECT_FALSE(Make(drive.Files()).Start());
    EXPECT_EQ(form.ends, 1);
    EXPECT_EQ(SavedSettings(), SettingsText());
    Start();
}

TEST_F(StartUp, GivingUpTheEntryEndsWithoutATrace) {
    user.Expect(FirstRun).Expect(Continue, Answer::No);
    dialogs.Close();
    EXPECT_FALSE(Make(drive.Files()).Start());
    EXPECT_EQ(form.ends, 1);
    EXPECT_TRUE(drive.Names("App").empty());
    EXPECT_TRUE(drive.Names("Hangar").empty());
}

TEST_F(StartUp, ASettingsFileThatCannotBeReadIsNotWrittenOver) {
    drive.Put("App\\kx.ini\\inside", "x");
    user.Expect("The settings file " + drive.At("App\\kx.ini") + " could not be read (...", MessageIcon::Critical);
    EXPECT_FALSE(Make(drive.Files()).Start());
    EXPECT_EQ(drive.Get("App\\kx.ini\\inside"), "x");
}

TEST_F(StartUp, ASaveThatFailsLeavesTheFileAndIsSaid) {
    PutSettings("Jets\\Gone");
    FaultyFiles faulty(drive.Files());
    faulty.FailOn("Write", "kx.ini", FileFault::DiskFull);
    ASSERT_TRUE(Make(faulty).Start());
    user.Expect("The settings could not be saved in " + drive.At("App\\kx.ini") + " (...", MessageIcon::Exclamation);
    program->Shutdown();
    EXPECT_EQ(form.ends, 1);
    EXPECT_EQ(SavedSettings(), SettingsText("Jets\\Gone"));
    EXPECT_EQ(drive.Names("App"), std::vector<std::string>{"kx.ini"});
}

TEST_F(StartUp, TheEndOfTheSessionSaves) {
    drive.Fill("Hangar\\Jets", "Lear\\Lear.air=x, Cub\\Cub.air=x");
    PutSettings();
    Start();
    program->EndSession();
    EXPECT_EQ(form.ends, 1);

    // A running command comes to its end first.
    Start();
    Select("Jets", 1);
    drive.Put("App\\kx.ini", "");
    user.Expect("Are you sure...", Answer::No).Then([&] {
        program->EndSession();
        EXPECT_EQ(SavedSettings(), SettingsText());
        EXPECT_EQ(form.ends, 1);
    });
    program->RunCommand("RemovePackage");
    EXPECT_EQ(form.ends, 2);
}

class ChangeOfLocations : public ProgramTest {
  protected:
    ChangeOfLocations() { drive.Fill("", "Hangar\\Jets\\, Hangar2\\Props\\, Staging2\\"); }
    // What is entered in the dialog: these locations with one changed.
    void Enter(std::string Locations::*which, const std::string& relative) {
        Locations changed = locations;
        changed.*which = drive.At(relative);
        dialogs.Enter(changed);
    }
};

TEST_F(ChangeOfLocations, AnotherHangarStartsTheProgramAgain) {
    Start();
    drive.Put("App\\LocationChange", "an old one");
    Enter(&Locations::HangarDir, "Hangar2");
    program->RunCommand("mnuLocations");

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
    PutSettings("", "ALTLOCATION4=Other\r\nALTHANGARDIR4=C:\\h\\\r\nALTFIRSTPACKAGE4=Jets\\Lear\r\n");
    Start();
    dialogs.editProfiles = [](ProfileEditor& profiles) {
        EXPECT_EQ(profiles.Names()[4], "Other");
        profiles.Clear(4);
    };
    program->RunCommand("mnuLocationProfiles");
    EXPECT_EQ(SavedSettings(), SettingsText());
}

TEST_F(ChangeOfLocations, WithoutASaveThereIsNoRestart) {
    PutSettings();
    FaultyFiles faulty(drive.Files());
    faulty.FailOn("Replace", "kx.ini", FileFault::Denied);
    ASSERT_TRUE(Make(faulty).Start());
    Enter(&Locations::HangarDir, "Hangar2");
    user.Expect("The settings could not be saved in...", MessageIcon::Exclamation);
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
    Enter(&Locations::StagingDir, "Staging2\\");
    program->ChangeLocations();
    EXPECT_EQ(Shown(), drive.At("Staging2\\"));
    locations.StagingDir = drive.At("Staging2\\");
    EXPECT_EQ(SavedSettings(), SettingsText());
    EXPECT_EQ(form.ends, 0);

    dialogs.Enter({});
    for (int i = 0; i < 3; ++i)
        user.Expect("Please enter...");
    user.Expect(Continue, Answer::No);
    program->ChangeLocations();
    EXPECT_EQ(form.ends, 1);
    EXPECT_TRUE(launcher.started.empty());
    EXPECT_EQ(SavedSettings(), SettingsText());
}

} // namespace
} // namespace korvadex::test
