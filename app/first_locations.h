// What a first start proposes for the three directories.
#pragma once

#include "package/locations.h"
#include "platform/file_system.h"
#include "platform/user_places.h"

namespace korvadex {

// The newest simulator that is found, where its set-up left word of it or else in the usual places. Staging and Hangar
// come beside what the user has, on the simulator's disk where that is possible; each is not there yet, or could be
// taken as it is. What is not found stays empty.
Locations ProposeLocations(const FileSystem& files, const UserPlaces& places);

} // namespace korvadex
