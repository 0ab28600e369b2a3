// Getting files of this host onto the disk, many at once.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace korvadex {

// For each file or directory 0 when all that was written to it is on the disk, else the host's error number; "" is
// passed over.
std::vector<int> FlushTogether(std::span<const std::string> hostPaths);

} // namespace korvadex
