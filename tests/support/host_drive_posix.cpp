#include "platform/drive_map_posix.h"
#include "tests/support/host_drive.h"

#include <stdexcept>
#include <unistd.h>

namespace korvadex::test {

namespace fs = std::filesystem;

HostDrive MakeHostDrive() {
    std::string name = (fs::temp_directory_path() / "korvadex-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no temporary directory could be made: " + name);
    return {name, "C:\\", MakeDriveFileSystem({{{'c', name}}})};
}

void RemoveHostDrive(const fs::path& hostRoot) {
    std::error_code error;
    fs::remove_all(hostRoot, error);
}

bool MakeHostLink(const FileSystem& files, const std::string& link, const std::string& target) {
    fs::create_symlink(files.HostPath(target), files.HostPath(link));
    return true;
}

} // namespace korvadex::test
