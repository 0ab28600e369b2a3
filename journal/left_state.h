// Whether all is as a command has left it.
#pragma once

#include "journal/record.h"

#include <string>
#include <vector>

namespace korvadex {

// Every place that the records name, as it is now; of directories that the command has made, all that is in them.
std::vector<LeftPlace> LookAtPlaces(const FileSystem& files, const std::vector<Record>& records);

// What keeps a command from being taken back, as a sentence that names the file; "" when nothing does: each place is as
// it was left, those that have to be free are, and what was kept is there.
std::string FindObstacle(const FileSystem& files, const Journal& journal);

} // namespace korvadex
