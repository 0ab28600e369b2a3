#include "app/locations_entry.h"

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

class LocationsCheck {
  public:
    LocationsCheck(FileSystem& fileSystem, UserDialogs& userDialogs) : files(fileSystem), user(userDialogs) {}

    // What can only be judged of three good directories together comes last.
    bool AreGood(const Locations& locations, bool stagingMustBeEmpty) {
        const bool staging = IsGoodStaging(locations, stagingMustBeEmpty);
        const bool hangar = Exists(locations.HangarDir, HangarTexts);
        const bool msfs = IsGoodMsfs(locations.MsfsDir);
        return staging && hangar && msfs && AreWellFormed(locations) && CanBeKept(locations) &&
               AreApart(locations);
    }

  private:
    FileSystem& files;
    UserDialogs& user;

    bool Refuse(const std::string& text) {
        user.Tell(text, MessageIcon::Exclamation);
        return false;
    }

    bool Exists(const std::string& path, const OwnLocation& texts) {
        if (path.empty())
            return Refuse(texts.enter);
        if (path.size() < ShortestLocation)
            return Refuse(texts.invalid);
        if (files.IsDirectory(path))
            return true;
        if (path.compare(1, 2, ":\\") != 0)
            return Refuse(texts.invalid);
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
        if (path.size() < ShortestLocation || !files.IsDirectory(path))
            return Refuse("The directory you specified for your MSFS installation is invalid.");
        if (!files.IsDirectory(path + "aircraft\\"))
            return Refuse("Cannot find an 'aircraft' subdirectory in the directory you specified for MSFS.  "
                          "The directory "
                          "you select must be the directory where you installed Flight Simulator.");
        return true;
    }

    // With a doubled backslash the directory is found, but not known again as the root of what lies in it.
    bool AreWellFormed(const Locations& locations) {
        if (locations.StagingDir.find("\\\\") != std::string::npos)
            return Refuse(StagingTexts.invalid);
        if (locations.HangarDir.find("\\\\") != std::string::npos)
            return Refuse(HangarTexts.invalid);
        if (locations.MsfsDir.find("\\\\") != std::string::npos)
            return Refuse("The directory you specified for your MSFS installation is invalid.");
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

    // Another name of the same directory (a second drive letter, a link) becomes its one name where the host
    // tells.
    std::string OneName(const std::string& path) const {
        return AddBackslash(files.PathFromHost(files.HostPath(path)).value_or(path));
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
        const Place aircraft{OneName(locations.MsfsDir + "aircraft\\"),
                             "'aircraft' subdirectory of your MSFS installation"};
        const Place gauges{OneName(locations.MsfsDir + "gauges\\"),
                           "'gauges' subdirectory of your MSFS installation"};

        const std::array<std::pair<const Place*, const Place*>, 3> pairs = {
            {{&staging, &hangar}, {&staging, &msfs}, {&hangar, &msfs}}};
        for (const auto& [one, other] : pairs)
            if (EqualNoCase(one->path, other->path))
                return Refuse("The directory you specified for the " + std::string(one->name) +
                              " is the same as the one for the " + other->name +
                              ".  Please specify a directory of its own for each location.");

        const std::array<std::pair<const Place*, const Place*>, 8> innerAndOuter = {{{&hangar, &staging},
                                                                                     {&msfs, &staging},
                                                                                     {&staging, &hangar},
                                                                                     {&msfs, &hangar},
                                                                                     {&staging, &aircraft},
                                                                                     {&hangar, &aircraft},
                                                                                     {&staging, &gauges},
                                                                                     {&hangar, &gauges}}};
        for (const auto& [inner, outer] : innerAndOuter)
            if (IsAtOrBelow(inner->path, outer->path))
                return Refuse("The directory you specified for the " + std::string(inner->name) +
                              " is inside of the " + outer->name +
                              ".  Please specify a directory that is outside of it.");
        return true;
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

bool AreGoodLocations(FileSystem& files, UserDialogs& user, const Locations& locations,
                      bool stagingMustBeEmpty) {
    return LocationsCheck(files, user).AreGood(locations, stagingMustBeEmpty);
}

LocationsOutcome ValidateLocations(FileSystem& files, UserDialogs& user, ProgramDialogs& dialogs,
                                   const LocationsRequest& request, Settings& settings) {
    const Locations oldLocations = settings.locations;
    const int oldProfile = settings.CurrentProfile;
    const auto leave = [&](LocationsOutcome outcome) {
        settings.locations = oldLocations;
        settings.CurrentProfile = oldProfile;
        return outcome;
    };

    const auto isKnownStaging = [&](const std::string& path) {
        return EqualNoCase(path, oldLocations.StagingDir) ||
               std::any_of(
                   settings.LocationProfiles.begin(), settings.LocationProfiles.end(),
                   [&](const LocationProfile& profile) { return EqualNoCase(path, profile.StagingDir); });
    };

    bool showNow =
        request.showDialog || (settings.AskLocationAtStart && !request.RestartedAfterLocationChange);
    for (;;) {
        bool isEntered = true;
        if (showNow) {
            const auto entry = dialogs.ShowLocations(settings);
            if (entry)
                TakeEntry(*entry, settings);
            else if (request.caller == LocationsCaller::Menu)
                return leave(LocationsOutcome::Cancelled);
            else
                isEntered = false;
        }
        // What lies in a Staging directory that was in use before belongs there. In any other it would be renamed
        // and thinned out like the files of an add-on.
        const bool mustBeEmpty = request.showDialog || !isKnownStaging(settings.locations.StagingDir);
        if (isEntered && LocationsCheck(files, user).AreGood(settings.locations, mustBeEmpty)) {
            auto& profile = settings.LocationProfiles[static_cast<std::size_t>(settings.CurrentProfile)];
            profile.StagingDir = settings.locations.StagingDir;
            profile.HangarDir = settings.locations.HangarDir;
            profile.MsfsDir = settings.locations.MsfsDir;
            return LocationsOutcome::Valid;
        }
        if (!user.AskYesNo("Continue location entry?  If 'No', Korvadex will end since it needs valid "
                           "directory locations "
                           "to operate properly."))
            return leave(LocationsOutcome::GivenUp);
        showNow = true;
    }
}

} // namespace korvadex
