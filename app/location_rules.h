// Which directories can be a location: by their names, and by where they stand to each other and to the program.
#pragma once

#include "app/settings.h"
#include "platform/file_system.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

enum class LocationKind { Staging, Hangar, Msfs };

// "Staging location", "MSFS installation"
const char* NameOf(LocationKind kind);

// A path (ending in a backslash) from a drive, but not the drive's root, whose names can stand on every host: nothing
// is found that Windows could not hold.
bool IsLocationPath(std::string_view path);

// A directory that these settings have in use, or one of their profiles.
bool IsKnownStaging(const Settings& settings, const std::string& path);
bool IsKnownHangar(const Settings& settings, const std::string& path);

enum class ConflictKind {
    Same,        // one directory for two
    Inside,      // of the other
    HoldsProgram // kx.ini would go with what is cleared or removed
};
struct LocationConflict {
    ConflictKind kind;
    LocationKind location;
    std::string other; // "Hangar location", "'gauges' subdirectory of your MSFS installation", "Korvadex program"
    std::optional<LocationKind> otherLocation;
};

// Why these three and the program's directory cannot serve together; the first is the one to be told. Another name of
// a directory (a second drive letter, a link) is that directory. A location that is empty is in nobody's way.
std::vector<LocationConflict> FindConflicts(const FileSystem& files, const Locations& locations,
                                            const std::string& appDir);

} // namespace korvadex
