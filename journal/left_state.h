// Whether all is as a command has left it.
#pragma once

#include "journal/record.h"

#include <string>
#include <vector>

namespace korvadex {

// Every place that the records name, as it is now; of directories that the command has made, all that is in them.
std::vector<LeftPlace> LookAtPlaces(const FileSystem& files, const std::vector<Record>& records);

// The places as they are now, but for what somebody else has put there since they were seen as `before`. later: what
// the command has done since then.
std::vector<LeftPlace> WithoutOthers(std::vector<LeftPlace> now, const std::vector<LeftPlace>& before,
                                     const std::vector<Record>& later);

// What keeps a command from being taken back, as a sentence that names the file; "" when nothing does: each place is as
// it was left, those that have to be free are, and what was kept is there.
std::string FindObstacle(const FileSystem& files, const Journal& journal);

} // namespace korvadex
