#include "app/first_locations.h"
#include "app/location_advice.h"
#include "app/locations_entry.h"
#include "app/profiles.h"
#include "platform/windows_path.h"
#include "tests/support/command_fixture.h"
#include "tests/support/faulty_files.h"
#include "tests/support/recording_window.h"

namespace korvadex::test {
namespace {

constexpr const char* Continue = "Continue location entry?  If 'No', Korvadex will end...";
constexpr const char* InvalidStaging = "The directory you specified for the Staging location is invalid...";
constexpr const char* InvalidHangar = "The directory you specified for the Hangar location is invalid...";
constexpr const char* InvalidMsfs = "The directory you specified for your MSFS installation is invalid.";
constexpr const char* NotEmpty = "You must specify an empty directory for the Staging location.";
constexpr const char* CreateStaging = "...for the Staging location does not exist.  Create it now?";
constexpr const char* CreateHangar = "...for the Hangar location does not exist.  Create it now?";
constexpr const char* NoHangar = "The directory you specified for the Hangar location does not look like a Hangar...";
constexpr const char* NoAircraft = "Cannot find an 'aircraft' subdirectory in the directory you specified...";
constexpr const char* NoStaging = "Please enter a valid directory for the Staging location (i.e. c:\\staging).";

// What is typed into the three boxes: a path of the test's drive; after "!" the text as it stands.
struct Entry {
    const char *staging, *hangar, *msfs;
};

class LocationsEntryTest : public CommandTest {
  protected:
    std::string Path(std::string_view text) const {
        return text.starts_with('!') ? std::string(text.substr(1)) : drive.At(text);
    }
    Locations Typed(const Entry& entry) const { return {Path(entry.staging), Path(entry.hangar), Path(entry.msfs)}; }
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
        {{"Staging", "FS", "fs\\"}, {"...for the Hangar location is the same as the one for the MSFS installation..."}},
        {{"Nested\\inner", "Nested", "FS"}, {"...for the Staging location is inside of the Hangar location..."}},
        {{"Staging", "Other", "Other\\FS"}, {NoAircraft}},
        {{"Staging", "Sims", "Sims\\FS98"}, {"...for the MSFS installation is inside of the Hangar location..."}},
        {{"Sims\\FS98\\aircraft\\s", "Hangar", "Sims\\FS98"},
         {"...for the Staging location is inside of the 'aircraft' subdirectory of your MSFS installation..."}},
        {{"Staging", "Sims\\FS98\\GAUGES", "Sims\\FS98"},
         {"...for the Hangar location is inside of the 'gauges' subdirectory of your MSFS installation..."}},
        {{"Sims\\FS98\\effects\\s", "Hangar", "Sims\\FS98"},
         {"...for the Staging location is inside of the 'effects'..."}},
        {{"Sims\\FS98\\sound", "Hangar", "Sims\\FS98"}, {"...for the Staging location is inside of the 'sound'..."}},
        {{"Staging", "Sims\\FS98\\modules", "Sims\\FS98"},
         {"...for the Hangar location is inside of the 'modules'..."}},
        {{"App\\Korvadex", "Hangar", "FS"},
         {"...for the Staging location is the same as the one for the Korvadex program..."}},
        {{"Staging", "App\\korvadex", "FS"},
         {"...for the Hangar location is the same as the one for the Korvadex program..."}},
        {{"Staging", "App", "FS"}, {"...for the Hangar location holds the directory of the Korvadex program,..."}},
        {{"Staging", "Full", "FS"}, {NoHangar}},
        {{"Staging", "Papers", "FS"}, {NoHangar}},
        {{"Staging", "Books", "FS"}, {NoHangar}},
        {{"Staging", "Ж", "FS"},
         {"...for the Hangar location has a character in its name that cannot be kept in kx.ini..."}},
    };
    drive.Fill("", "Full\\file.txt=x, Nested\\inner\\, Other\\FS\\, Sims\\FS98\\aircraft\\s\\, "
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
    settings.LocationProfiles[0] = {"Main", locations.StagingDir, locations.HangarDir, locations.MsfsDir, "", ""};
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
    drive.Fill("Hangar\\Jets", "New\\, Lear\\readme.txt=x, Lear\\PANEL\\panel.cfg=x, Cub\\cub.AIR=x, Thumbs.db=x");
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

TEST_F(LocationsEntryTest, TheWordUnderEachField) {
    // What the word begins with, after "!" where it warns; "" for any.
    const struct {
        Entry entry;
        Entry words;
    } rows[] = {
        {{"!", "!", "!"}, {"Enter a directory", "Enter a directory", "Enter the directory where"}},
        {{"Staging", "Hangar", "FS2002"}, {"Good.", "Good.  It is empty.", "Good.  It holds fs2002.exe."}},
        {{"New", "Cats", "FS"}, {"Not there yet.", "Good.  It holds 2 categories.", "!No program of Flight"}},
        {{"!q", "!c:\\", "!q:\\a"},
         {"!Enter a whole path that begins with a drive", "!A drive alone is no location", "!There is no drive q:"}},
        {{"a*b", "NUL", "Ж"}, {"!No directory can have such", "!No directory can have", "!The name has a character"}},
        {{"Hangar", "hangar", "Nowhere"},
         {"!The same as the Hangar location.", "!The same as the Staging location.", "!There is no such"}},
        {{"Cats\\A", "Cats", "Cats\\B"},
         {"!Inside of the Hangar location.", "Good.", "!Inside of the Hangar location."}},
        {{"FS\\aircraft\\s", "FS\\Hangar", "FS"},
         {"!Inside of the 'aircraft' subdirectory of your MSFS", "!Inside of the MSFS installation.", "!No program"}},
        {{"App", "Full", "Hangar"},
         {"!The Korvadex program lies in it.", "!There are files in it.  It does not", "!No 'aircraft' directory"}},
        {{"Full", "Known", "FS"}, {"!There are files in it.  Choose an", "Good.  It holds 0 categories.", ""}},
        {{"Gone\\s", "Full\\file.txt", "FS"},
         {"!Not there, and neither is the directory above", "!A file of this name", ""}},
        {{"Programs\\s", "Locked", "Locked\\FS"},
         {"!Only administrators may write into Programs.  Choose", "!You may not write there.", "!Inside of"}},
        {{"Disc\\s", "Cloud\\h", "Programs\\FS"},
         {"!This disk is in READ ONLY mode.", "!It is synchronised",
          "!Only administrators may write into Programs.  Ins"}},
        {{"OneDrive - Firm\\s", "Shared\\a\\h", "FS"}, {"!It is synchronised", "!It is synchronised", ""}},
    };
    drive.Fill("",
               "FS2002\\aircraft\\, FS2002\\fs2002.exe=x, Cats\\A\\, Cats\\B\\, Full\\file.txt=x, App\\in\\, "
               "Known\\a.txt=x, Programs\\FS\\aircraft\\, Locked\\FS\\aircraft\\, Disc\\, Cloud\\, OneDrive - Firm\\, "
               "Shared\\.stfolder\\, Shared\\a\\");
    settings.AppDir = drive.At("App\\in\\");
    settings.LocationProfiles[3].HangarDir = drive.At("Known\\");
    UserPlaces places;
    places.programs = {drive.At("Programs\\")};
    places.synchronised = {drive.At("Cloud\\")};
    FaultyFiles files(drive.Files());
    std::map<std::string, FileFault> unwritable = {{drive.At("Disc\\"), FileFault::ReadOnlyDisk}};
    for (const auto* denied : {"Programs\\", "Programs\\FS\\aircraft\\", "Locked\\"})
        unwritable[drive.At(denied)] = FileFault::Denied;
    places.checkWritable = [&](const std::string& directory) {
        const auto found = unwritable.find(directory);
        return Status{found == unwritable.end() ? FileFault::None : found->second, directory};
    };
    files.freeSpace = 10'000'000'000;
    const auto words = [&](const Entry& entry, bool mustBeEmpty) {
        Locations typed = Typed(entry);
        for (auto* path : {&typed.StagingDir, &typed.HangarDir, &typed.MsfsDir})
            *path = AddBackslash(*path);
        return AdviseOn(files, places, settings, typed, mustBeEmpty);
    };
    for (const auto& [entry, expected] : rows) {
        SCOPED_TRACE(std::string(entry.staging) + " " + entry.hangar + " " + entry.msfs);
        const auto given = words(entry, true);
        const std::pair<const LocationWord&, std::string_view> pairs[] = {
            {given.staging, expected.staging}, {given.hangar, expected.hangar}, {given.msfs, expected.msfs}};
        for (const auto& [word, text] : pairs)
            if (!text.empty()) {
                EXPECT_THAT((word.isTrouble ? "!" : "") + word.text, testing::StartsWith(std::string(text)));
                EXPECT_LE(word.text.size(), 85u) << "it stands in one line";
            }
    }
    // In a Staging that was in use before, files are at home.
    settings.LocationProfiles[3].StagingDir = drive.At("Full\\");
    EXPECT_EQ(words({"Full", "Hangar", "FS2002"}, false).staging.text, "Good.");
    files.freeSpace = 20'480'000;
    EXPECT_EQ(words({"Staging", "Hangar", "FS2002"}, true).hangar.text,
              "Only 20 Meg are free on this disk.  Choose another.");
}

TEST_F(LocationsEntryTest, WhatAFirstStartProposes) {
    const struct {
        const char *name, *tree, *elsewhere; // the second: what lies on a disk of its own
        std::vector<const char*> homes;
        Entry proposed;
    } rows[] = {
        {"nothing but a home", "Home\\", "", {"Home"}, {"Home\\Korvadex Staging", "Home\\Korvadex Hangar", "!"}},
        {"the newest simulator; what serves is taken",
         "FS98\\aircraft\\, FS98\\fltsim98.exe=x, Games\\FS2000\\aircraft\\, Games\\FS2000\\fs2000.exe=x, "
         "FS2002\\aircraft\\, Home\\Korvadex Hangar\\Jets\\Lear\\Panel\\, Home\\Korvadex Staging\\a.txt=x",
         "",
         {"Home"},
         {"Home\\Korvadex Staging 2", "Home\\Korvadex Hangar", "Games\\FS2000"}},
        {"of the registry; a Hangar that is none",
         "Odd\\Sim\\aircraft\\, Odd\\Sim\\FS2002.EXE=x, FS2002\\aircraft\\, FS2002\\fs2002.exe=x, "
         "Home\\Korvadex Hangar\\letter.txt=x",
         "",
         {"Home"},
         {"Home\\Korvadex Staging", "Home\\Korvadex Hangar 2", "Odd\\Sim"}},
        {"the user's directories lie on another disk",
         "FS2002\\aircraft\\, FS2002\\fs2002.exe=x, Home\\",
         "Home",
         {"Home"},
         {"|Korvadex Staging", "|Korvadex Hangar", "FS2002"}},
        {"the documents are synchronised, or may not be written to",
         "OneDrive\\, Locked\\, Home\\",
         "",
         {"OneDrive", "Locked", "Gone", "Home"},
         {"Home\\Korvadex Staging", "Home\\Korvadex Hangar", "!"}},
        {"no place at all", "Locked\\", "", {"Locked"}, {"!", "!", "!"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        TemporaryDrive disk;
        disk.Fill("", row.tree);
        FaultyFiles files(disk.Files());
        files.freeSpace = 10'000'000'000;
        UserPlaces places;
        for (const std::string home : row.homes)
            places.homes.push_back(disk.At(home + "\\"));
        places.drives = {disk.Root()};
        places.simulators = {disk.At("Odd\\Gone\\"), disk.At("Odd\\Sim\\")};
        if (*row.elsewhere)
            files.volume = disk.At(row.elsewhere + std::string("\\"));
        places.checkWritable = [&](const std::string& directory) {
            const bool isRoot = directory == disk.Root() || directory.size() == 3;
            const bool isDenied = directory == disk.At("Locked\\") || (isRoot && !*row.elsewhere);
            return Status{isDenied ? FileFault::Denied : FileFault::None, directory};
        };
        const auto path = [&](std::string_view text) {
            return text == "!"             ? ""
                   : text.starts_with('|') ? disk.Root().substr(0, 3) + std::string(text.substr(1)) + "\\"
                                           : disk.At(std::string(text) + "\\");
        };
        const auto proposed = ProposeLocations(files, places);
        EXPECT_EQ(proposed.StagingDir, path(row.proposed.staging));
        EXPECT_EQ(proposed.HangarDir, path(row.proposed.hangar));
        EXPECT_EQ(proposed.MsfsDir, path(row.proposed.msfs));
    }
}

TEST_F(LocationsEntryTest, AProfileThatIsNotInUse) {
    const std::string exists = "The Profile Name you've entered already exists.";
    const LocationProfile stored{"Two", "C:\\old", "", "", "Jets\\Lear", ""};
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
        LocationProfile entry{row.entered, typed.StagingDir, typed.HangarDir, typed.MsfsDir, "", ""};
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
