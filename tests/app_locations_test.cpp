#include "app/locations_entry.h"
#include "app/profiles.h"
#include "platform/windows_path.h"
#include "tests/support/command_fixture.h"
#include "tests/support/recording_form.h"

namespace korvadex::test {
namespace {

constexpr const char* Continue = "Continue location entry?  If 'No', Korvadex will end...";
constexpr const char* InvalidStaging = "The directory you specified for the Staging location is invalid...";
constexpr const char* InvalidHangar = "The directory you specified for the Hangar location is invalid...";
constexpr const char* InvalidMsfs = "The directory you specified for your MSFS installation is invalid.";
constexpr const char* NotEmpty = "You must specify an empty directory for the Staging location.";
constexpr const char* CreateStaging = "...for the Staging location does not exist.  Create it now?";
constexpr const char* CreateHangar = "...for the Hangar location does not exist.  Create it now?";
constexpr const char* NoHangar =
    "The directory you specified for the Hangar location does not look like a Hangar...";
constexpr const char* NoAircraft = "Cannot find an 'aircraft' subdirectory in the directory you specified...";
constexpr const char* NoStaging =
    "Please enter a valid directory for the Staging location (i.e. c:\\staging).";

// What is typed into the three boxes: a path of the test's drive; after "!" the text as it stands.
struct Entry {
    const char *staging, *hangar, *msfs;
};

class LocationsEntryTest : public CommandTest {
  protected:
    std::string Path(std::string_view text) const {
        return text.starts_with('!') ? std::string(text.substr(1)) : drive.At(text);
    }
    Locations Typed(const Entry& entry) const {
        return {Path(entry.staging), Path(entry.hangar), Path(entry.msfs)};
    }
    LocationsOutcome Validate(const LocationsRequest& request) {
        return ValidateLocations(drive.Files(), user, dialogs, request, settings);
    }

    ScriptedLocations dialogs;
    Settings settings;
};

TEST_F(LocationsEntryTest, EveryRefusalIsSaidInOrder) {
    const struct {
        Entry entry;
        std::vector<const char*> messages;
    } rows[] = {
        {{"!", "!", "!"},
         {NoStaging, "Please enter a valid directory for the Hangar location (i.e. c:\\hangar).",
          "Please enter a valid directory for your MSFS installation."}},
        {{"!c:", "!c:\\", "!c:\\"}, {InvalidStaging, InvalidHangar, InvalidMsfs}},
        {{"!staging", "!hangar", "!fs2002"}, {InvalidStaging, InvalidHangar, InvalidMsfs}},
        {{"Staging", "Hangar", "Nowhere"}, {InvalidMsfs}},
        {{"Staging", "Hangar", "Other"}, {NoAircraft}},
        {{"Full", "Hangar", "FS"}, {NotEmpty}},
        {{"Nested", "Hangar", "FS"}, {NotEmpty}},
        {{"Full\\file.txt", "Hangar", "FS"}, {CreateStaging}},
        {{"Other\\..\\Staging", "Hangar", "FS"}, {InvalidStaging}},
        {{"Staging ", "New.", "a*b"}, {InvalidStaging, InvalidHangar, InvalidMsfs}},
        {{"NUL\\s", "~kx~scratch", "CON"}, {InvalidStaging, InvalidHangar, InvalidMsfs}},
        {{"Staging", "Hangar\\", "FS\\\\"}, {InvalidMsfs}},
        {{"Staging", "STAGING", "FS"},
         {"...for the Staging location is the same as the one for the Hangar location..."}},
        {{"Staging", "FS", "fs\\"},
         {"...for the Hangar location is the same as the one for the MSFS installation..."}},
        {{"Nested\\inner", "Nested", "FS"},
         {"...for the Staging location is inside of the Hangar location..."}},
        {{"Staging", "Other", "Other\\FS"}, {NoAircraft}},
        {{"Staging", "Sims", "Sims\\FS98"},
         {"...for the MSFS installation is inside of the Hangar location..."}},
        {{"Sims\\FS98\\aircraft\\s", "Hangar", "Sims\\FS98"},
         {"...for the Staging location is inside of the 'aircraft' subdirectory of your MSFS "
          "installation..."}},
        {{"Staging", "Sims\\FS98\\GAUGES", "Sims\\FS98"},
         {"...for the Hangar location is inside of the 'gauges' subdirectory of your MSFS installation..."}},
        {{"Sims\\FS98\\effects\\s", "Hangar", "Sims\\FS98"},
         {"...for the Staging location is inside of the 'effects'..."}},
        {{"Sims\\FS98\\sound", "Hangar", "Sims\\FS98"},
         {"...for the Staging location is inside of the 'sound'..."}},
        {{"Staging", "Sims\\FS98\\modules", "Sims\\FS98"},
         {"...for the Hangar location is inside of the 'modules'..."}},
        {{"App\\Korvadex", "Hangar", "FS"},
         {"...for the Staging location is the same as the one for the Korvadex program..."}},
        {{"Staging", "App\\korvadex", "FS"},
         {"...for the Hangar location is the same as the one for the Korvadex program..."}},
        {{"Staging", "App", "FS"},
         {"...for the Hangar location holds the directory of the Korvadex program, ..."}},
        {{"Staging", "Full", "FS"}, {NoHangar}},
        {{"Staging", "Papers", "FS"}, {NoHangar}},
        {{"Staging", "Books", "FS"}, {NoHangar}},
        {{"Staging", "Ж", "FS"},
         {"...for the Hangar location has a character in its name that cannot be kept in kx.ini..."}},
    };
    drive.Fill(
        "",
        "Full\\file.txt=x, Nested\\inner\\, Other\\FS\\, Sims\\FS98\\aircraft\\s\\, "
        "Sims\\FS98\\gauges\\, Sims\\FS98\\effects\\s\\, Sims\\FS98\\sound\\, Sims\\FS98\\modules\\, Ж\\, "
        "App\\Korvadex\\, Papers\\2001\\a.txt=x, Books\\2001\\Spring\\a.txt=x");
    settings.AppDir = drive.At("App\\Korvadex\\");
    const auto before = drive.Tree();
    for (const auto& [entry, messages] : rows) {
        SCOPED_TRACE(std::string(entry.staging) + " " + entry.hangar + " " + entry.msfs);
        dialogs.Enter(Typed(entry));
        for (const auto* message : messages) {
            const bool isQuestion = message == CreateStaging || message == NoHangar;
            user.Expect(message, isQuestion ? Answer::No : Answer::Ok,
                        isQuestion ? MessageIcon::None : MessageIcon::Exclamation);
        }
        user.Expect(Continue, Answer::No, MessageIcon::None);
        EXPECT_EQ(Validate({.showDialog = true}), LocationsOutcome::GivenUp);
        EXPECT_EQ(settings.locations.StagingDir + settings.LocationProfiles[0].StagingDir, "");
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

    EXPECT_EQ(drive.Outline("New") + drive.Outline("Hangar2"), "");
    EXPECT_EQ(settings.locations.StagingDir, drive.At("New\\"));
    EXPECT_EQ(settings.LocationProfiles[0].HangarDir, drive.At("Hangar2\\"));
    EXPECT_EQ(settings.LocationProfiles[0].MsfsDir, drive.At("FS\\"));
}

TEST_F(LocationsEntryTest, WhenTheDialogIsShownAtStart) {
    settings.locations = locations;
    drive.Put("Staging\\panel.cfg", "x");
    drive.Put("Hangar\\letter.txt", "x"); // known as the Hangar
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
    user.Expect(NotEmpty).Expect(Continue, Answer::Yes);
    EXPECT_EQ(Validate({}), LocationsOutcome::Valid);

    settings.AskLocationAtStart = false;
    settings.locations.MsfsDir = drive.At("Gone\\");
    user.Expect(InvalidMsfs).Expect(Continue, Answer::Yes);
    dialogs.Enter(locations);
    EXPECT_EQ(Validate({}), LocationsOutcome::Valid);
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
    user.Expect(NotEmpty).Expect(CreateHangar, Answer::No).Expect(Continue, Answer::Yes);
    EXPECT_EQ(Validate({.caller = LocationsCaller::Menu, .showDialog = true}), LocationsOutcome::Cancelled);
    EXPECT_EQ(settings.locations.StagingDir, locations.StagingDir);
    EXPECT_EQ(settings.locations.HangarDir, locations.HangarDir);
    EXPECT_EQ(settings.CurrentProfile, 0);
    EXPECT_EQ(settings.LocationProfiles[3].StagingDir, "");
}

TEST_F(LocationsEntryTest, TheProfileOfThatNameBecomesActive) {
    drive.Put("Staging\\~kx~scratch\\1", "x"); // of the program itself: that directory is empty
    drive.Fill("Hangar\\Jets",
               "New\\, Lear\\readme.txt=x, Lear\\PANEL\\panel.cfg=x, Cub\\cub.AIR=x, Thumbs.db=x");
    // The last of two, none of that name, no name at all.
    for (const auto& [text, expected] : {std::pair("Twice", 7u), std::pair("twice", 2u), std::pair("", 2u)}) {
        SCOPED_TRACE(text);
        settings = {};
        settings.LocationProfiles[2].name = "Main";
        settings.LocationProfiles[4].name = settings.LocationProfiles[7].name = "Twice";
        settings.CurrentProfile = 2;
        dialogs.Enter(locations, text);
        EXPECT_EQ(Validate({.showDialog = true}), LocationsOutcome::Valid);
        EXPECT_EQ(settings.CurrentProfile, static_cast<int>(expected));
        EXPECT_EQ(settings.LocationProfiles[expected].HangarDir, locations.HangarDir);
    }
}

TEST_F(LocationsEntryTest, AProfileThatIsNotInUse) {
    const std::string exists = "The Profile Name you've entered already exists.";
    const LocationProfile stored{"Two", "C:\\old", "", "", "Jets\\Lear"};
    constexpr Entry Good = {"Staging", "Hangar", "FS"};
    const struct {
        const char *name, *entered;
        Entry entry;
        std::vector<std::string> messages;
    } rows[] = {
        {"its own name", " Two ", Good, {}},
        {"a new name", "3", {"Staging\\", "Hangar\\", "FS\\"}, {}},
        {"that of another", "MAIN", Good, {exists}},
        {"that of two others", "twice", Good, {exists, exists}},
        {"blanks, and nothing else is right",
         "  ",
         {"!", "!c:", "Hangar"},
         {"Please enter a Profile Name.", NoStaging, InvalidHangar, NoAircraft}},
        {"no byte in kx.ini", "Ж", Good, {"The Profile Name you've entered has..."}},
        {"files in Staging", "Two", {"Full", "Hangar", "FS"}, {NotEmpty}},
    };
    const auto all = [](const LocationProfile& profile) {
        return profile.name + "|" + profile.StagingDir + "|" + profile.HangarDir + "|" + profile.MsfsDir;
    };
    drive.Put("Full\\file.txt", "x");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        settings.LocationProfiles[0].name = "Main";
        settings.LocationProfiles[2] = stored;
        settings.LocationProfiles[7].name = settings.LocationProfiles[8].name = "Twice";
        ProfileEditor profiles(drive.Files(), user, settings);
        for (const auto& message : row.messages)
            user.Expect(message, MessageIcon::Exclamation);
        const Locations typed = Typed(row.entry);
        LocationProfile entry{row.entered, typed.StagingDir, typed.HangarDir, typed.MsfsDir, ""};
        EXPECT_EQ(profiles.Accept(2, entry), row.messages.empty());
        EXPECT_EQ(entry.name + entry.MsfsDir, std::string(Trim(row.entered)) + AddBackslash(typed.MsfsDir));
        EXPECT_EQ(all(settings.LocationProfiles[2]), all(row.messages.empty() ? entry : stored));
        EXPECT_EQ(settings.LocationProfiles[2].firstPackage, "Jets\\Lear");
    }
    ProfileEditor profiles(drive.Files(), user, settings);
    profiles.Clear(2);
    EXPECT_EQ(settings.LocationProfiles[2].name + settings.LocationProfiles[2].firstPackage, "");
    user.Expect("You cannot modify a profile that is currently in use here...", MessageIcon::Exclamation);
    EXPECT_FALSE(profiles.CanModify(0));
    EXPECT_TRUE(profiles.CanModify(1));
}

} // namespace
} // namespace korvadex::test
