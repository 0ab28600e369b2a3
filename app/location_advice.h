// The word under each field while the locations are being typed: what Korvadex would find there.
#pragma once

#include "app/location_rules.h"
#include "app/settings.h"
#include "platform/file_system.h"
#include "platform/user_places.h"

#include <string>

namespace korvadex {

struct LocationWord {
    bool isTrouble = false;
    std::string text; // one short line

    bool operator==(const LocationWord&) const = default;
};
struct LocationWords {
    LocationWord staging, hangar, msfs;

    bool operator==(const LocationWords&) const = default;
};

// A Staging directory that these settings do not know must be empty in any case.
// Looks only, and at little: the directories themselves and those above them. What is entered need not be a path at
// all; each text that is not empty ends in a backslash.
LocationWords AdviseOn(const FileSystem& files, const UserPlaces& places, const Settings& settings,
                       const Locations& entered, bool stagingMustBeEmpty);

// Whether the user's own files would be well kept in that directory: it is there, may be written to, is not
// synchronised and has space.
bool IsGoodGround(const FileSystem& files, const UserPlaces& places, const std::string& directory);

} // namespace korvadex
