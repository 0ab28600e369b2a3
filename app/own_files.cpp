#include "app/own_files.h"

#include "app/settings.h"
#include "platform/windows_path.h"

namespace korvadex {

namespace {

constexpr const char* StandInDirectory = "C:\\Korvadex";

struct ProgramDirectories {
    std::string own;  // that of the executable
    std::string data; // that of the read-me page
};

ProgramDirectories DirectoriesOf(const FileSystem& files, const std::string& executable) {
    const auto own = ParentDirectory(files.SourceFromHost(executable));
    const auto data = ParentDirectory(own) + "share\\korvadex\\";
    return {own, files.Info(data + std::string(ReadMePage)) ? data : own};
}

Status MakeDirectories(FileSystem& files, const std::string& path) {
    if (path.empty() || files.IsDirectory(path))
        return {};
    if (const auto status = MakeDirectories(files, ParentDirectory(path)); !status)
        return status;
    return files.CreateDirectory(path);
}

} // namespace

std::string DataDirectory(const FileSystem& files, const std::string& executable) {
    return DirectoriesOf(files, executable).data;
}

Result<std::string> SettingsDirectory(FileSystem& files, const std::string& executable,
                                      const std::string& userDirectory) {
    const auto program = DirectoriesOf(files, executable);
    const bool isInstalled = program.data != program.own;
    if (!isInstalled || files.Info(program.own + std::string(SettingsFileName))) {
        if (!IsDrivePath(program.own))
            return Status{FileFault::BadName, program.own, 0};
        return program.own;
    }
    const auto path = files.PathFromHost(userDirectory).value_or(StandInDirectory);
    if (const auto status = MakeDirectories(files, path); !status)
        return status;
    return AddBackslash(path);
}

} // namespace korvadex
