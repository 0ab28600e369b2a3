#include "platform/user_places.h"

#include "platform/drive_map_posix.h"

#include <cctype>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace korvadex {

namespace {

Status CheckWritable(const std::string& hostPath, const std::string& directory) {
    if (faccessat(AT_FDCWD, hostPath.c_str(), W_OK | X_OK, AT_EACCESS) == 0)
        return {};
    const int code = errno;
    const bool isGone = code == ENOENT || code == ENOTDIR;
    return {code == EROFS ? FileFault::ReadOnlyDisk
            : isGone      ? FileFault::NotFound
                          : FileFault::Denied,
            directory, code};
}

} // namespace

UserPlaces FindUserPlaces(const FileSystem& files) {
    UserPlaces places;
    places.drives = files.Drives();
    places.checkWritable = [&files](const std::string& directory) {
        return CheckWritable(files.HostPath(directory), directory);
    };
    return places;
}

std::unique_ptr<FileSystem> MakeFileSystemLike(const FileSystem& files) {
    DriveMap map;
    for (const std::string& drive : files.Drives()) {
        std::string directory = files.HostPath(drive);
        while (directory.ends_with('/'))
            directory.pop_back();
        map.directories[static_cast<char>(std::tolower(static_cast<unsigned char>(drive[0])))] = directory;
    }
    return MakeDriveFileSystem(std::move(map));
}

} // namespace korvadex
