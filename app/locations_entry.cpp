#include "app/locations_entry.h"

#include "app/hangar_listing.h"
#include "package/file_primitives.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <array>

namespace korvadex {

namespace {

// A drive letter, a colon, a backslash and one character more: a drive root is no location.
constexpr std::size_t ShortestLocation = 4;

// Staging and Hangar are checked alike; only their texts differ.
struct OwnLocation {
    const char* enter;
    const char* invalid;
    const char* create;
};
constexpr OwnLocation StagingTexts = {
    "Please enter a valid directory for the Staging location (i.e. c:\\staging).",
    "The directory you specified for the Staging location is invalid.  Please use browser or enter the "
    "directory in "
    "the proper format (i.e. c:\\staging).",
    "The directory you specified for the Staging location does not exist.  Create it now?"};
constexpr OwnLocation HangarTexts = {
    "Please enter a valid directory for the Hangar location (i.e. c:\\hangar).",
    "The directory you specified for the Hangar location is invalid.  Please use browser or enter the "
    "directory in "
    "the proper format (i.e. c:\\hangar).",
    "The directory you specified for the Hangar location does not exist.  Create it now?"};

// Places of the simulator that every aircraft shares.
constexpr std::array MsfsPlaces = {"aircraft", "gauges", "effects", "modules", "sound"};

// Each name of the path can stand on every host; nothing is found that Windows could not hold.
bool IsLocationPath(std::string_view path) {
    if (!IsDrivePath(path))
        return false;
    path.remove_prefix(3);
    for (std::size_t end; !path.empty(); path.remove_prefix(end + 1)) {
        end = path.find('\\'); // there is one behind each name
        const auto name = path.substr(0, end);
        if (!IsStorableName(name) || IsScratchName(name))
            return false;
    }
    return true;
}

bool IsKnown(const Settings& settings, const std::string& path, std::string Locations::*location,
             std::string LocationProfile::*column) {
    return EqualNoCase(path, settings.locations.*location) ||
           std::ranges::any_of(settings.LocationProfiles, [&](const LocationProfile& profile) {
               return EqualNoCase(path, profile.*column);
           });
}

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
        if (path.size() < ShortestLocation || !IsLocationPath(path))
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
        if (path.size() < ShortestLocation || !IsLocationPath(path) || !files.IsDirectory(path))
            return Refuse("The directory you specified for your MSFS installation is invalid.");
        if (!files.IsDirectory(path + "aircraft\\"))
            return Refuse("Cannot find an 'aircraft' subdirectory in the directory you specified for MSFS.  "
                          "The directory "
                          "you select must be the directory where you installed Flight Simulator.");
        return true;
    }

    bool CanBeKept(const Locations& locations) {
        if (!SettingsCanHold(locations.StagingDir))
            return Refuse(
                "The directory you specified for the Staging location has a character in its name that "
                "cannot "
                "be kept in kx.ini.  Please use a directory with a simpler name (i.e. c:\\staging).");
        if (!SettingsCanHold(locations.HangarDir))
            return Refuse(
                "The directory you specified for the Hangar location has a character in its name that cannot "
                "be kept in kx.ini.  Please use a directory with a simpler name (i.e. c:\\hangar).");
        if (!SettingsCanHold(locations.MsfsDir))
            return Refuse(
                "The directory you specified for your MSFS installation has a character in its name that "
                "cannot be kept in kx.ini.  Please use a directory with a simpler name (i.e. c:\\fs2002).");
        return true;
    }

    // Another name of the same directory (a second drive letter, a link) becomes its one name.
    std::string OneName(const std::string& path) const {
        return AddBackslash(korvadex::OneName(files, path));
    }

    // Emptying Staging, or removing a package or an aircraft, must not reach into another location.
    bool AreApart(const Locations& locations) {
        struct Place {
            std::string path;
            const char* name;
        };
        const Place staging{OneName(locations.StagingDir), "Staging location"};
        const Place hangar{OneName(locations.HangarDir), "Hangar location"};
        const Place msfs{OneName(locations.MsfsDir), "MSFS installation"};
        const Place program{OneName(settings.AppDir), "Korvadex program"};
        const auto isApart = [&](const Place& one, const Place& other) {
            return !EqualNoCase(one.path, other.path) ||
                   Refuse("The directory you specified for the " + std::string(one.name) +
                          " is the same as the one for the " + other.name +
                          ".  Please specify a directory of its own for each location.");
        };
        const auto isOutside = [&](const Place& inner, const std::string& outer,
                                   const std::string& outerName) {
            return !IsAtOrBelow(inner.path, outer) ||
                   Refuse("The directory you specified for the " + std::string(inner.name) +
                          " is inside of the " + outerName +
                          ".  Please specify a directory that is outside of it.");
        };
        // kx.ini would go with what is cleared or removed.
        const auto leavesOutProgram = [&](const Place& place) {
            return !IsAtOrBelow(program.path, place.path) ||
                   Refuse("The directory you specified for the " + std::string(place.name) +
                          " holds the directory of the Korvadex program, " + settings.AppDir +
                          ".  Please specify a directory that is outside of it.");
        };
        const auto isOutsideOfMsfs = [&](const Place& place) {
            return std::ranges::all_of(MsfsPlaces, [&](const std::string name) {
                return isOutside(place, OneName(locations.MsfsDir + name + "\\"),
                                 "'" + name + "' subdirectory of your MSFS installation");
            });
        };
        return isApart(staging, hangar) && isApart(staging, msfs) && isApart(hangar, msfs) &&
               isApart(staging, program) && isApart(hangar, program) &&
               isOutside(hangar, staging.path, staging.name) && isOutside(msfs, staging.path, staging.name) &&
               isOutside(staging, hangar.path, hangar.name) && isOutside(msfs, hangar.path, hangar.name) &&
               leavesOutProgram(staging) && leavesOutProgram(hangar) && isOutsideOfMsfs(staging) &&
               isOutsideOfMsfs(hangar);
    }

    // The categories and packages of a Hangar are sorted and renamed as soon as they are shown.
    bool IsToBeTheHangar(const std::string& path) {
        if (IsKnown(settings, path, &Locations::HangarDir, &LocationProfile::HangarDir))
            return true;
        const auto found = FindNoHangarContent(files, path);
        return found.empty() ||
               user.AskYesNo(
                   "The directory you specified for the Hangar location does not look like a Hangar.  "
                   "It holds " +
                   found +
                   ".\r\n\r\nKorvadex takes each directory there for a category and each directory in "
                   "it for an aircraft, and renames, moves and deletes files in them.  Use it as the "
                   "Hangar nevertheless?");
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

bool AreGoodLocations(FileSystem& files, UserDialogs& user, const Settings& settings,
                      const Locations& locations, bool stagingMustBeEmpty) {
    return LocationsCheck(files, user, settings).AreGood(locations, stagingMustBeEmpty);
}

LocationsOutcome ValidateLocations(FileSystem& files, UserDialogs& user, ProgramDialogs& dialogs,
                                   const LocationsRequest& request, Settings& settings) {
    Settings entered = settings; // the settings themselves change only when all is good
    bool showNow =
        request.showDialog || (settings.AskLocationAtStart && !request.RestartedAfterLocationChange);
    for (;;) {
        bool isEntered = true;
        if (showNow) {
            const auto entry = dialogs.ShowLocations(entered);
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
        const bool mustBeEmpty =
            request.showDialog || !IsKnown(settings, entered.locations.StagingDir, &Locations::StagingDir,
                                           &LocationProfile::StagingDir);
        if (isEntered && AreGoodLocations(files, user, settings, entered.locations, mustBeEmpty)) {
            auto& profile = entered.ActiveProfile();
            profile.StagingDir = entered.locations.StagingDir;
            profile.HangarDir = entered.locations.HangarDir;
            profile.MsfsDir = entered.locations.MsfsDir;
            settings = entered;
            return LocationsOutcome::Valid;
        }
        if (!user.AskYesNo("Continue location entry?  If 'No', Korvadex will end since it needs valid "
                           "directory locations "
                           "to operate properly."))
            return LocationsOutcome::GivenUp;
        showNow = true;
    }
}

} // namespace korvadex
