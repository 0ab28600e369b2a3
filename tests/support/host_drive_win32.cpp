#include "platform/win32.h"
#include "platform/windows_path.h"
#include "tests/support/host_drive.h"

#include <array>
#include <stdexcept>

namespace korvadex::test {

namespace {

void RemoveTree(FileSystem& files, const std::string& directory) {
    if (const auto entries = files.List(directory)) {
        for (const DirectoryEntry& entry : *entries) {
            const std::string path = AddBackslash(directory) + entry.name;
            (void)files.ClearAttributes(path);
            if (entry.info.kind == EntryKind::Directory)
                RemoveTree(files, path);
            else
                (void)files.Delete(path);
        }
    }
    (void)files.RemoveDirectory(directory);
}

} // namespace

HostDrive MakeHostDrive() {
    std::array<wchar_t, MAX_PATH + 1> temporary{};
    std::array<wchar_t, MAX_PATH + 1> name{};
    const auto require = [&](bool isDone) {
        if (!isDone)
            throw std::runtime_error("no temporary directory could be made: " + FromWide(temporary.data()));
    };
    require(GetTempPathW(static_cast<DWORD>(temporary.size()), temporary.data()) != 0);
    // The system finds a free name by making a file of it, whose place a directory takes unless another process is
    // quicker.
    bool isMade = false;
    do {
        require(GetTempFileNameW(temporary.data(), L"kvx", 0, name.data()) != 0 && DeleteFileW(name.data()));
        isMade = CreateDirectoryW(name.data(), nullptr);
    } while (!isMade && GetLastError() == ERROR_ALREADY_EXISTS);
    require(isMade);
    return {name.data(), AddBackslash(FromWide(name.data())), MakeHostFileSystem()};
}

// std::filesystem::remove_all stops at paths of more than 260 characters here.
void RemoveHostDrive(const std::filesystem::path& hostRoot) {
    const auto files = MakeHostFileSystem();
    RemoveTree(*files, FromWide(hostRoot.native()));
}

bool MakeHostLink(const FileSystem& files, const std::string& link, const std::string& target) {
    const auto nativeLink = ExtendedPath(link), nativeTarget = ExtendedPath(target);
    const DWORD kind = files.IsDirectory(target) ? SYMBOLIC_LINK_FLAG_DIRECTORY : 0;
    if (!nativeLink || !nativeTarget ||
        !CreateSymbolicLinkW(nativeLink->c_str(), nativeTarget->c_str(),
                             kind | SYMBOLIC_LINK_FLAG_ALLOW_UNPRIVILEGED_CREATE))
        return false;
    // Wine says that it made the link, and did not.
    const auto made = files.Info(link);
    return made && made->kind == EntryKind::Link;
}

} // namespace korvadex::test
