#include "app/locations_entry.h"
#include "app/profiles.h"
#include "platform/windows_path.h"
#include "tests/support/command_fixture.h"
#include "tests/support/recording_form.h"

namespace korvadex::test {
namespace {

constexpr const char* Continue =
    "Continue location entry?  If 'No', Korvadex will end since it needs valid directory "
    "locations to operate properly.";
constexpr const char* InvalidStaging =
    "The directory you specified for the Staging location is invalid.  Please use "
    "browser or enter the directory in the proper format (i.e. c:\\staging).";
constexpr const char* InvalidHangar =
    "The directory you specified for the Hangar location is invalid.  Please use "
    "browser or enter the directory in the proper format (i.e. c:\\hangar).";
constexpr const char* InvalidMsfs = "The directory you specified for your MSFS installation is invalid.";
constexpr const char* NotEmpty = "You must specify an empty directory for the Staging location.";
constexpr const char* CreateStaging =
    "The directory you specified for the Staging location does not exist.  Create it now?";
constexpr const char* CreateHangar =
    "The directory you specified for the Hangar location does not exist.  Create it now?";

class LocationsEntryTest : public CommandTest {
  protected:
    // A path of the test's drive; after "!" the text as it stands.
    std::string Path(std::string_view text) const {
        return text.starts_with('!') ? std::string(text.substr(1)) : drive.At(text);
    }
    LocationsOutcome Validate(const LocationsRequest& request) {
        return ValidateLocations(drive.Files(), user, dialogs, request, settings);
    }

    ScriptedLocations dialogs;
    Settings settings;
};

TEST_F(LocationsEntryTest, EveryRefusalIsSaidInOrder) {
    struct Row {
        const char* name;
        const char *staging, *hangar, *msfs;
        std::vector<const char*> messages;
    };
    const Row rows[] = {
        {"nothing entered",
         "!",
         "!",
         "!",
         {"Please enter a valid directory for the Staging location (i.e. c:\\staging).",
          "Please enter a valid directory for the Hangar location (i.e. c:\\hangar).",
          "Please enter a valid directory for your MSFS installation."}},
        {"drive roots", "!c:", "!c:\\", "!c:\\", {InvalidStaging, InvalidHangar, InvalidMsfs}},
        {"no drive", "!staging", "!hangar", "!fs2002", {InvalidStaging, InvalidHangar, InvalidMsfs}},
        {"no simulator there", "Staging", "Hangar", "Nowhere", {InvalidMsfs}},
        {"a simulator without aircraft",
         "Staging",
         "Hangar",
         "Other",
         {"Cannot find an 'aircraft' subdirectory in the directory you specified for MSFS.  The directory "
          "you select "
          "must be the directory where you installed Flight Simulator."}},
        {"a file in Staging", "Full", "Hangar", "FS", {NotEmpty}},
        {"a directory in Staging", "Nested", "Hangar", "FS", {NotEmpty}},
        {"a file is no directory", "Full\\file.txt", "Hangar", "FS", {CreateStaging}},
        {"a roundabout Staging", "Other\\..\\Staging", "Hangar", "FS", {CreateStaging}},
        {"a doubled backslash", "Staging", "Hangar\\", "FS\\\\", {InvalidMsfs}},
        {"Staging is the Hangar",
         "Staging",
         "STAGING",
         "FS",
         {"The directory you specified for the Staging location is the same as the one for the Hangar "
          "location.  Please "
          "specify a directory of its own for each location."}},
        {"the Hangar is the simulator",
         "Staging",
         "FS",
         "fs\\",
         {"The directory you specified for the Hangar location is the same as the one for the MSFS "
          "installation.  Please "
          "specify a directory of its own for each location."}},
        {"Staging in the Hangar",
         "Nested\\inner",
         "Nested",
         "FS",
         {"The directory you specified for the Staging location is inside of the Hangar location.  Please "
          "specify a "
          "directory that is outside of it."}},
        {"the simulator in the Hangar", "Staging", "Other", "Other\\FS", {"Cannot find an..."}},
        {"the simulator in the Hangar",
         "Staging",
         "Sims",
         "Sims\\FS98",
         {"The directory you specified for the MSFS installation is inside of the Hangar location..."}},
        {"Staging in aircraft",
         "Sims\\FS98\\aircraft\\s",
         "Hangar",
         "Sims\\FS98",
         {"The directory you specified for the Staging location is inside of the 'aircraft' subdirectory of "
          "your MSFS "
          "installation.  Please specify a directory that is outside of it."}},
        {"the Hangar is gauges",
         "Staging",
         "Sims\\FS98\\GAUGES",
         "Sims\\FS98",
         {"The directory you specified for the Hangar location is inside of the 'gauges' subdirectory of "
          "your MSFS "
          "installation..."}},
        {"a character that kx.ini has no byte for",
         "Staging",
         "\xD0\x96",
         "FS",
         {"The directory you specified for the Hangar location has a character in its name that cannot be "
          "kept in "
          "kx.ini.  Please use a directory with a simpler name (i.e. c:\\hangar)."}},
    };
    drive.Put("Full\\file.txt", "x");
    drive.MakeDirectory("Nested\\inner");
    drive.MakeDirectory("Other\\FS");
    drive.MakeDirectory("Sims\\FS98\\aircraft\\s");
    drive.MakeDirectory("Sims\\FS98\\gauges");
    drive.MakeDirectory("\xD0\x96");
    const auto before = drive.Tree();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        dialogs.Enter({Path(row.staging), Path(row.hangar), Path(row.msfs)});
        for (const auto* message : row.messages) {
            if (message == CreateStaging)
                user.Expect(message, Answer::No, MessageIcon::None);
            else
                user.Expect(message, Answer::Ok, MessageIcon::Exclamation);
        }
        user.Expect(Continue, Answer::No, MessageIcon::None);
        EXPECT_EQ(Validate({.showDialog = true}), LocationsOutcome::GivenUp);
        EXPECT_EQ(settings.locations.StagingDir, "");
        EXPECT_EQ(settings.LocationProfiles[0].StagingDir, "");
    }
    EXPECT_EQ(drive.Tree(), before);
}

TEST_F(LocationsEntryTest, MissingDirectoriesAreMadeOnRequest) {
    // The parent of the new Staging directory is missing: the next pass says so again.
    dialogs.Enter({drive.At("New\\Staging"), drive.At("Hangar2"), drive.At("FS")});
    user.Expect(CreateStaging, Answer::Yes, MessageIcon::None);
    user.Expect(CreateHangar, Answer::Yes, MessageIcon::None);
    user.Expect(Continue, Answer::Yes);
    dialogs.Enter({drive.At("New"), drive.At("Hangar2"), drive.At("FS")});
    user.Expect(CreateStaging, Answer::Yes);
    EXPECT_EQ(Validate({.showDialog = true}), LocationsOutcome::Valid);

    EXPECT_TRUE(drive.Files().IsDirectory(drive.At("New")));
    EXPECT_TRUE(drive.Files().IsDirectory(drive.At("Hangar2")));
    EXPECT_EQ(settings.locations.StagingDir, drive.At("New\\"));
    EXPECT_EQ(settings.LocationProfiles[0].HangarDir, drive.At("Hangar2\\"));
    EXPECT_EQ(settings.LocationProfiles[0].MsfsDir, drive.At("FS\\"));
}

TEST_F(LocationsEntryTest, WhenTheDialogIsShownAtStart) {
    settings.locations = locations;
    drive.Put("Staging\\panel.cfg", "x");
    // Files in Staging are no obstacle to a start without the dialog.
    EXPECT_EQ(Validate({}), LocationsOutcome::Valid);
    EXPECT_EQ(settings.LocationProfiles[0].StagingDir, locations.StagingDir);

    settings.AskLocationAtStart = true;
    EXPECT_EQ(Validate({.RestartedAfterLocationChange = true}), LocationsOutcome::Valid);
    dialogs.Enter(locations);
    EXPECT_EQ(Validate({}), LocationsOutcome::Valid);
    // Another Staging directory is to be empty: its files are not those of an add-on.
    drive.Put("Letters\\a.txt", "x");
    dialogs.Enter({drive.At("Letters"), locations.HangarDir, locations.MsfsDir}).Enter(locations);
    user.Expect(NotEmpty, Answer::Ok).Expect(Continue, Answer::Yes);
    EXPECT_EQ(Validate({}), LocationsOutcome::Valid);

    settings.AskLocationAtStart = false;
    settings.locations.MsfsDir = drive.At("Gone\\");
    user.Expect(InvalidMsfs, Answer::Ok).Expect(Continue, Answer::Yes);
    dialogs.Enter(locations);
    EXPECT_EQ(Validate({}), LocationsOutcome::Valid);
}

TEST_F(LocationsEntryTest, ScratchOfTheProgramIsNoContent) {
    drive.Put("Staging\\~kx~scratch\\1", "x");
    dialogs.Enter(locations);
    EXPECT_EQ(Validate({.showDialog = true}), LocationsOutcome::Valid);
}

TEST_F(LocationsEntryTest, ClosingTheDialog) {
    settings.locations = locations;
    settings.LocationProfiles[0] = {"Main", locations.StagingDir, locations.HangarDir, locations.MsfsDir, ""};
    settings.LocationProfiles[3].name = "Other";
    drive.Put("Full\\file.txt", "x");

    // At a start nothing is checked behind a closed dialog; it is asked whether to go on.
    dialogs.Close().Close();
    user.Expect(Continue, Answer::Yes).Expect(Continue, Answer::No);
    EXPECT_EQ(Validate({.showDialog = true}), LocationsOutcome::GivenUp);

    // From the menu everything is as before, also after an entry that was refused.
    dialogs.Enter({drive.At("Full"), drive.At("Other"), drive.At("FS")}, "Other").Close();
    user.Expect(NotEmpty, Answer::Ok).Expect(CreateHangar, Answer::No).Expect(Continue, Answer::Yes);
    EXPECT_EQ(Validate({.caller = LocationsCaller::Menu, .showDialog = true}), LocationsOutcome::Cancelled);
    EXPECT_EQ(settings.locations.StagingDir, locations.StagingDir);
    EXPECT_EQ(settings.locations.HangarDir, locations.HangarDir);
    EXPECT_EQ(settings.CurrentProfile, 0);
    EXPECT_EQ(settings.LocationProfiles[3].StagingDir, "");
}

TEST_F(LocationsEntryTest, TheProfileOfThatNameBecomesActive) {
    struct Row {
        const char *name, *text;
        int expected;
    };
    const Row rows[] = {
        {"the last of two", "Twice", 7}, {"none of that name", "twice", 2}, {"no name at all", "", 2}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        settings = {};
        settings.LocationProfiles[2].name = "Main";
        settings.LocationProfiles[4].name = settings.LocationProfiles[7].name = "Twice";
        settings.CurrentProfile = 2;
        dialogs.Enter(locations, row.text);
        EXPECT_EQ(Validate({.showDialog = true}), LocationsOutcome::Valid);
        EXPECT_EQ(settings.CurrentProfile, row.expected);
        EXPECT_EQ(settings.LocationProfiles[static_cast<std::size_t>(row.expected)].HangarDir,
                  locations.HangarDir);
    }
}

TEST_F(LocationsEntryTest, AProfileThatIsNotInUse) {
    const std::string exists = "The Profile Name you've entered already exists.";
    const LocationProfile stored{"Two", "C:\\old", "", "", "Jets\\Lear"};
    struct Row {
        const char *name, *entered, *staging, *hangar, *msfs;
        std::vector<std::string> messages;
    };
    const Row rows[] = {
        {"its own name", " Two ", "Staging", "Hangar", "FS", {}},
        {"a new name", "3", "Staging\\", "Hangar\\", "FS\\", {}},
        {"that of another", "MAIN", "Staging", "Hangar", "FS", {exists}},
        {"that of two others", "twice", "Staging", "Hangar", "FS", {exists, exists}},
        {"blanks, and nothing else is right",
         "  ",
         "!",
         "!c:",
         "Hangar",
         {"Please enter a Profile Name.",
          "Please enter a valid directory for the Staging location (i.e. c:\\staging).", InvalidHangar,
          "Cannot find an 'aircraft' subdirectory..."}},
        {"no byte in kx.ini",
         "\xD0\x96",
         "Staging",
         "Hangar",
         "FS",
         {"The Profile Name you've entered has..."}},
        {"files in Staging", "Two", "Full", "Hangar", "FS", {NotEmpty}},
        {"one place twice",
         "Two",
         "Staging",
         "Staging",
         "FS",
         {"The directory you specified for the Staging..."}},
    };
    drive.Put("Full\\file.txt", "x");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        settings.LocationProfiles[0].name = "Main";
        settings.LocationProfiles[2] = stored;
        settings.LocationProfiles[7].name = settings.LocationProfiles[8].name = "Twice";
        ProfileEditor profiles(drive.Files(), user, settings);
        for (const auto& message : row.messages)
            user.Expect(message, Answer::Ok, MessageIcon::Exclamation);
        LocationProfile entry{row.entered, Path(row.staging), Path(row.hangar), Path(row.msfs), ""};
        EXPECT_EQ(profiles.Accept(2, entry), row.messages.empty());
        const auto& now = settings.LocationProfiles[2];
        EXPECT_EQ(entry.name + entry.MsfsDir, std::string(Trim(row.entered)) + AddBackslash(Path(row.msfs)));
        const auto& expected = row.messages.empty() ? entry : stored;
        EXPECT_EQ(now.name + now.StagingDir + now.HangarDir + now.MsfsDir + now.firstPackage,
                  expected.name + expected.StagingDir + expected.HangarDir + expected.MsfsDir + "Jets\\Lear");
    }
    ProfileEditor profiles(drive.Files(), user, settings);
    profiles.Clear(2);
    EXPECT_EQ(settings.LocationProfiles[2].name + settings.LocationProfiles[2].firstPackage, "");
    user.Expect("You cannot modify a profile that is currently in use here.  Please use the 'Locations' "
                "option to modify the current profile.",
                Answer::Ok, MessageIcon::Exclamation);
    EXPECT_FALSE(profiles.CanModify(0));
    EXPECT_TRUE(profiles.CanModify(1));
}

} // namespace
} // namespace korvadex::test
