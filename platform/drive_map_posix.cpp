#include "platform/drive_map_posix.h"

#include <cctype>
#include <cstdlib>
#include <filesystem>

namespace korvadex {

namespace {

namespace fs = std::filesystem;

std::string Variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// The entries "c:", "d:" ... of a directory, as Wine keeps its drives ("com1", "c::" and others are no
// drives).
DriveMap ReadDrives(const fs::path& directory) {
    DriveMap map;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(directory, error)) {
        const std::string name = entry.path().filename().string();
        if (name.size() != 2 || name[1] != ':' || !std::isalpha(static_cast<unsigned char>(name[0])))
            continue;
        const fs::path target = fs::canonical(entry.path(), error);
        if (!error && fs::is_directory(target, error))
            map.directories[static_cast<char>(std::tolower(static_cast<unsigned char>(name[0])))] =
                target == "/" ? "" : target.string();
    }
    return map;
}

} // namespace

DriveMap DriveMapFromEnvironment() {
    if (const std::string drives = Variable("KORVADEX_DRIVES"); !drives.empty())
        return ReadDrives(drives);

    const std::string home = Variable("HOME");
    const std::string prefix = Variable("WINEPREFIX").empty() ? home + "/.wine" : Variable("WINEPREFIX");
    if (DriveMap map = ReadDrives(prefix + "/dosdevices"); !map.directories.empty())
        return map;

    const std::string data = Variable("XDG_DATA_HOME").empty() ? home + "/.local/share" : Variable("XDG_DATA_HOME");
    const fs::path drive = fs::path(data) / "korvadex" / "drive_c";
    std::error_code error;
    fs::create_directories(drive, error);
    return {{{'c', drive.string()}, {'z', ""}}};
}

std::unique_ptr<FileSystem> MakeHostFileSystem() {
    return MakeDriveFileSystem(DriveMapFromEnvironment());
}

} // namespace korvadex
