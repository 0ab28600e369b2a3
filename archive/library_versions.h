// Which libraries read and write archives here, and under which terms their makers give them away.
#pragma once

#include <string>
#include <vector>

namespace korvadex {

struct LibraryVersion {
    std::string name;
    std::string version;
    std::string licence;
};

// As they run now, where the library can tell (libdeflate: as compiled with).
std::vector<LibraryVersion> ArchiveLibraries();

} // namespace korvadex
