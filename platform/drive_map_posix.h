// Drive letters on a host that has none: each leads to a directory, as Wine's drives do.
#pragma once

#include "platform/file_system.h"

#include <map>
#include <memory>
#include <string>

namespace korvadex {

struct DriveMap {
    std::map<char, std::string> directories; // lower-case letter -> host directory, without a trailing slash
};

// $KORVADEX_DRIVES (a directory with entries c:, d:, z:, directories or links); else the dosdevices of
// $WINEPREFIX or ~/.wine; else C: = $XDG_DATA_HOME/korvadex/drive_c (made on demand) and Z: = /.
DriveMap DriveMapFromEnvironment();

std::unique_ptr<FileSystem> MakeDriveFileSystem(DriveMap map);

} // namespace korvadex
