#include "app/locations_entry.h"

#include "app/hangar_listing.h"
#include "app/location_rules.h"
#include "package/file_primitives.h"
#include "platform/windows_path.h"

namespace korvadex {

namespace {

// Staging and Hangar are checked alike; only their texts differ.
struct OwnLocation {
    const char* enter;
    const char* invalid;
    const char* create;
};
constexpr OwnLocation StagingTexts = {
    "Please enter a valid directory for the Staging location (i.e. c:\\staging).",
    "The directory you specified for the Staging location is invalid.  "
    "Please use browser or enter the directory in the proper format (i.e. c:\\staging).",
    "The directory you specified for the Staging location does not exist.  Create it now?"};
constexpr OwnLocation HangarTexts = {
    "Please enter a valid directory for the Hangar location (i.e. c:\\hangar).",
    "The directory you specified for the Hangar location is invalid.  "
    "Please use browser or enter the directory in the proper format (i.e. c:\\hangar).",
    "The directory you specified for the Hangar location does not exist.  Create it now?"};

class LocationsCheck {
  public:
    LocationsCheck(FileSystem& fileSystem, UserDialogs& userDialogs, const Settings& known)
        : files(fileSystem), user(userDialogs), settings(known) {}

    // What can only be judged of three good directories together comes last.
    bool AreGood(const Locations& locations, bool stagingMustBeEmpty) {
        const bool staging = IsGoodStaging(locations, stagingMustBeEmpty);
        const bool hangar = Exists(locations.HangarDir, HangarTexts);
        const bool msfs = IsGoodMsfs(locations.MsfsDir);
        return staging && hangar && msfs && CanBeKept(locations) && AreApart(locations) &&
               IsToBeTheHangar(locations.HangarDir);
    }

  private:
    FileSystem& files;
    UserDialogs& user;
    const Settings& settings;

    bool Refuse(const std::string& text) {
        user.Tell(text, MessageIcon::Exclamation);
        return false;
    }

    bool Exists(const std::string& path, const OwnLocation& texts) {
        if (path.empty())
            return Refuse(texts.enter);
        if (!IsLocationPath(path))
            return Refuse(texts.invalid);
        if (files.IsDirectory(path))
            return true;
        // A directory that cannot be made is found missing by the next pass.
        if (user.AskYesNo(texts.create))
            static_cast<void>(files.CreateDirectory(path));
        return files.IsDirectory(path);
    }

    bool IsGoodStaging(const Locations& locations, bool mustBeEmpty) {
        if (!Exists(locations.StagingDir, StagingTexts))
            return false;
        if (mustBeEmpty && !StagingIsEmpty(files, locations))
            return Refuse("You must specify an empty directory for the Staging location.");
        return true;
    }

    bool IsGoodMsfs(const std::string& path) {
        if (path.empty())
            return Refuse("Please enter a valid directory for your MSFS installation.");
        if (!IsLocationPath(path) || !files.IsDirectory(path))
            return Refuse("The directory you specified for your MSFS installation is invalid.");
        if (!files.IsDirectory(path + "aircraft\\"))
            return Refuse("Cannot find an 'aircraft' subdirectory in the directory you specified for MSFS.  "
                          "The directory you select must be the directory where you installed Flight Simulator.");
        return true;
    }

    bool CanBeKept(const Locations& locations) {
        if (!SettingsCanHold(locations.StagingDir))
            return Refuse(
                "The directory you specified for the Staging location has a character in its name that cannot be "
                "kept in kx.ini.  Please use a directory with a simpler name (i.e. c:\\staging).");
        if (!SettingsCanHold(locations.HangarDir))
            return Refuse(
                "The directory you specified for the Hangar location has a character in its name that cannot be "
                "kept in kx.ini.  Please use a directory with a simpler name (i.e. c:\\hangar).");
        if (!SettingsCanHold(locations.MsfsDir))
            return Refuse(
                "The directory you specified for your MSFS installation has a character in its name that cannot be "
                "kept in kx.ini.  Please use a directory with a simpler name (i.e. c:\\fs2002).");
        return true;
    }

    // Emptying Staging, or removing a package or an aircraft, must not reach into another location.
    bool AreApart(const Locations& locations) {
        const auto conflicts = FindConflicts(files, locations, settings.AppDir);
        if (conflicts.empty())
            return true;
        const auto& [kind, location, other, otherLocation] = conflicts.front();
        const auto specified = "The directory you specified for the " + std::string(NameOf(location));
        switch (kind) {
        case ConflictKind::Same:
            return Refuse(specified + " is the same as the one for the " + other +
                          ".  Please specify a directory of its own for each location.");
        case ConflictKind::Inside:
            return Refuse(specified + " is inside of the " + other +
                          ".  Please specify a directory that is outside of it.");
        case ConflictKind::HoldsProgram:
            break;
        }
        return Refuse(specified + " holds the directory of the Korvadex program, " + settings.AppDir +
                      ".  Please specify a directory that is outside of it.");
    }

    // The categories and packages of a Hangar are sorted and renamed as soon as they are shown.
    bool IsToBeTheHangar(const std::string& path) {
        if (IsKnownHangar(settings, path))
            return true;
        const auto found = FindNoHangarContent(files, path);
        return found.empty() ||
               user.AskYesNo(
                   "The directory you specified for the Hangar location does not look like a Hangar.  It holds " +
                   found +
                   ".\r\n\r\n"
                   "Korvadex takes each directory there for a category and each directory in it for an aircraft, "
                   "and renames, moves and deletes files in them.  Use it as the Hangar nevertheless?");
    }
};

void TakeEntry(const LocationsEntry& entry, Settings& settings) {
    settings.locations = {AddBackslash(entry.locations.StagingDir), AddBackslash(entry.locations.HangarDir),
                          AddBackslash(entry.locations.MsfsDir)};
    // The last profile of that name. An empty text names none: a free slot would not be saved.
    for (std::size_t i = 0; i < settings.LocationProfiles.size(); ++i)
        if (!entry.profileText.empty() && settings.LocationProfiles[i].name == entry.profileText)
            settings.CurrentProfile = static_cast<int>(i);
}

} // namespace

bool AreGoodLocations(FileSystem& files, UserDialogs& user, const Settings& settings, const Locations& locations,
                      bool stagingMustBeEmpty) {
    return LocationsCheck(files, user, settings).AreGood(locations, stagingMustBeEmpty);
}

LocationsOutcome ValidateLocations(FileSystem& files, UserDialogs& user, ProgramDialogs& dialogs,
                                   const LocationsRequest& request, Settings& settings) {
    Settings entered = settings; // the settings themselves change only when all is good
    bool showNow = request.showDialog || (settings.AskLocationAtStart && !request.RestartedAfterLocationChange);
    const auto purpose = request.caller == LocationsCaller::Menu ? LocationsFor::Change
                         : request.showDialog                    ? LocationsFor::FirstStart
                                                                 : LocationsFor::Start;
    const LocationsForm form{purpose, request.openReadMe, request.checkOpenings};
    for (;;) {
        bool isEntered = true;
        if (showNow) {
            const auto entry = dialogs.ShowLocations(entered, form);
            settings.AskLocationAtStart = entered.AskLocationAtStart;
            if (entry)
                TakeEntry(*entry, entered);
            else if (request.caller == LocationsCaller::Menu)
                return LocationsOutcome::Cancelled;
            else
                isEntered = false;
        }
        // What lies in a Staging directory that was in use before belongs there. In any other it would be renamed
        // and thinned out like the files of an add-on.
        const bool mustBeEmpty = request.showDialog || !IsKnownStaging(settings, entered.locations.StagingDir);
        if (isEntered && AreGoodLocations(files, user, settings, entered.locations, mustBeEmpty)) {
            auto& profile = entered.ActiveProfile();
            profile.StagingDir = entered.locations.StagingDir;
            profile.HangarDir = entered.locations.HangarDir;
            profile.MsfsDir = entered.locations.MsfsDir;
            settings = entered;
            return LocationsOutcome::Valid;
        }
        if (!dialogs.CanEnterLocations() ||
            !user.AskYesNo("Continue location entry?  "
                           "If 'No', Korvadex will end since it needs valid directory locations to operate properly."))
            return LocationsOutcome::GivenUp;
        showNow = true;
    }
}

} // namespace korvadex
