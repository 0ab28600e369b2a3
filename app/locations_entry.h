// Getting three good directories from the user: what is wrong with an entered location is told, what is
// missing can be made, and the dialog comes back until all three are right or the user gives up.
#pragma once

#include "app/program_dialogs.h"
#include "app/settings.h"
#include "package/dialogs.h"
#include "platform/file_system.h"

#include <functional>

namespace korvadex {

// True when these three can serve together. Says everything that is wrong, in the order Staging, Hangar, MSFS,
// offers to make a Staging or Hangar directory that is missing, and asks before it takes a Hangar that these settings
// do not know and that holds what no Hangar would.
bool AreGoodLocations(FileSystem& files, UserDialogs& user, const Settings& settings, const Locations& locations,
                      bool stagingMustBeEmpty);

enum class LocationsOutcome {
    Valid,    // settings.locations are good and stand in the active profile
    GivenUp,  // the program cannot go on
    Cancelled // the dialog was closed without accepting
};

// Who asks: closing the dialog without accepting leaves the program as it was only when there is a program
// running.
enum class LocationsCaller { StartUp, Menu };

struct LocationsRequest {
    LocationsCaller caller = LocationsCaller::StartUp;
    bool showDialog = false;                   // also: the Staging directory must be empty
    bool RestartedAfterLocationChange = false; // the user has chosen the locations a moment ago
    std::function<void()> openReadMe = {};     // see LocationsForm
    std::function<bool()> checkOpenings = {};
};

// A Staging directory that no profile has held before must be empty in any case: loading it changes what it holds.
// Everything but Valid leaves the locations, the active profile and the profile rows as they were.
LocationsOutcome ValidateLocations(FileSystem& files, UserDialogs& user, ProgramDialogs& dialogs,
                                   const LocationsRequest& request, Settings& settings);

} // namespace korvadex
