// make_demo DIRECTORY: the example as a drive that the program can be started on.
//
//   DIRECTORY/drive_c      what the program sees as C:\ .
//   DIRECTORY/drives/c:    leads there; for KORVADEX_DRIVES
//   DIRECTORY/drives/z:    leads to the whole disk, as Wine's own does
//
// An example that stands already is left as its user has changed it.
#include "demo/example.h"
#include "platform/drive_map_posix.h"

#include <QCoreApplication>

#include <cstdio>
#include <exception>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

void Make(const fs::path& directory) {
    const fs::path drive = directory / "drive_c", links = directory / "drives";
    if (fs::exists(drive)) {
        std::printf("The example stands in %s; delete that directory to begin afresh.\n", directory.c_str());
    } else {
        // Under another name until it is complete: a run that was stopped leaves nothing that looks whole.
        const fs::path unfinished = directory / "drive_c.unfinished";
        fs::remove_all(unfinished);
        fs::create_directories(unfinished);
        korvadex::DriveMap map;
        map.directories['c'] = fs::absolute(unfinished).string();
        const auto files = korvadex::MakeDriveFileSystem(map);
        korvadex::demo::MakeExample(*files, "C:\\");
        fs::rename(unfinished, drive);
        std::printf("Made the example in %s\n", directory.c_str());
    }
    fs::create_directories(links);
    if (!fs::is_symlink(links / "c:"))
        fs::create_directory_symlink("../drive_c", links / "c:");
    if (!fs::is_symlink(links / "z:"))
        fs::create_directory_symlink("/", links / "z:");
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::fputs("usage: make_demo DIRECTORY\n", stderr);
        return 2;
    }
    const QCoreApplication application(count, arguments);
    try {
        Make(arguments[1]);
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "make_demo: %s\n", failure.what());
        return 1;
    }
}
