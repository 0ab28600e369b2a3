#include "platform/user_places.h"

#include "platform/win32.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <array>
#include <functional>

namespace korvadex {

namespace {

// Simulators are 32-bit programs: their keys stand where those find them.
constexpr REGSAM ReadOld = KEY_READ | KEY_WOW64_32KEY;

struct KeyCloser {
    void operator()(HKEY key) const { RegCloseKey(key); }
};
using UniqueKey = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyCloser>;

UniqueKey OpenKey(HKEY parent, const wchar_t* name, REGSAM access) {
    HKEY key = nullptr;
    return UniqueKey(RegOpenKeyExW(parent, name, 0, access, &key) == ERROR_SUCCESS ? key : nullptr);
}

void ForEachSubkey(HKEY key, REGSAM access, const std::function<void(HKEY)>& routine) {
    std::array<wchar_t, 256> name{};
    for (DWORD i = 0;; ++i) {
        DWORD length = name.size();
        if (RegEnumKeyExW(key, i, name.data(), &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            return;
        if (const UniqueKey subkey = OpenKey(key, name.data(), access))
            routine(subkey.get());
    }
}

// A path, perhaps in quotation marks; "" where there is none.
std::string PathValue(HKEY key, const wchar_t* name) {
    std::wstring text(32768, L'\0');
    DWORD bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    if (RegGetValueW(key, nullptr, name, RRF_RT_REG_SZ | RRF_RT_REG_EXPAND_SZ, nullptr, text.data(), &bytes) !=
        ERROR_SUCCESS)
        return "";
    text.resize(text.find(L'\0'));
    std::erase(text, L'"');
    const std::string path = FromWide(text);
    return IsDrivePath(path) ? path : "";
}

void Add(std::vector<std::string>& directories, const std::string& path) {
    const std::string directory = AddBackslash(EndsWithNoCase(path, ".exe") ? ParentDirectory(path) : path);
    if (!directory.empty() && std::ranges::find(directories, directory) == directories.end())
        directories.push_back(directory);
}

std::vector<std::string> SimulatorsInRegistry() {
    std::vector<std::string> simulators;
    for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
        constexpr const wchar_t* programs[] = {L"fs2002.exe", L"fs2000.exe",   L"cfs2.exe",
                                               L"cfs.exe",    L"fltsim98.exe", L"fltsim95.exe"};
        for (const std::wstring program : programs)
            if (const auto key = OpenKey(
                    root, (L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\" + program).c_str(), ReadOld))
                Add(simulators, PathValue(key.get(), L""));
        // ...\Flight Simulator\8.0 and the like
        const auto games = OpenKey(root, L"SOFTWARE\\Microsoft\\Microsoft Games", ReadOld);
        if (!games)
            continue;
        const auto read = [&](HKEY key) {
            for (const wchar_t* name : {L"EXE Path", L"Path", L"InstallPath", L"AppPath"})
                Add(simulators, PathValue(key, name));
        };
        ForEachSubkey(games.get(), ReadOld, [&](HKEY game) {
            read(game);
            ForEachSubkey(game, ReadOld, read);
        });
    }
    return simulators;
}

void AddVariables(std::vector<std::string>& directories, std::initializer_list<const wchar_t*> names) {
    for (const wchar_t* name : names) {
        std::wstring text(32768, L'\0');
        text.resize(GetEnvironmentVariableW(name, text.data(), static_cast<DWORD>(text.size())));
        Add(directories, FromWide(text));
    }
}

// Each service names the directory of each of its users, as a value of some name.
std::vector<std::string> SynchronisedDirectories() {
    std::vector<std::string> directories;
    AddVariables(directories, {L"OneDrive", L"OneDriveConsumer", L"OneDriveCommercial"});
    constexpr REGSAM access = KEY_READ | KEY_WOW64_64KEY;
    const auto services =
        OpenKey(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\SyncRootManager", access);
    if (!services)
        return directories;
    ForEachSubkey(services.get(), access, [&](HKEY service) {
        const auto users = OpenKey(service, L"UserSyncRoots", access);
        std::array<wchar_t, 256> name{};
        for (DWORD i = 0, length = name.size(); users && RegEnumValueW(users.get(), i, name.data(), &length, nullptr,
                                                                       nullptr, nullptr, nullptr) == ERROR_SUCCESS;
             ++i, length = name.size())
            Add(directories, PathValue(users.get(), name.data()));
    });
    return directories;
}

Status CheckWritable(const std::string& directory) {
    const auto native = ExtendedPath(directory);
    if (!native)
        return {FileFault::BadName, directory, 0};
    // The system grants the rights that are asked for, or refuses; opening alone changes nothing.
    const HANDLE opened = CreateFileW(native->c_str(), FILE_ADD_FILE | FILE_ADD_SUBDIRECTORY,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
        return NativeFault(directory);
    const UniqueHandle handle(opened);
    DWORD flags = 0;
    const bool isKnown = GetVolumeInformationByHandleW(handle.get(), nullptr, 0, nullptr, nullptr, &flags, nullptr, 0);
    const bool isReadOnly = isKnown && (flags & FILE_READ_ONLY_VOLUME) != 0;
    return {isReadOnly ? FileFault::ReadOnlyDisk : FileFault::None, directory, 0};
}

} // namespace

UserPlaces FindUserPlaces(const FileSystem& files) {
    UserPlaces places;
    for (const std::string& drive : files.Drives())
        if (const auto root = ToWide(drive); root && GetDriveTypeW(root->c_str()) == DRIVE_FIXED)
            places.drives.push_back(drive);
    places.simulators = SimulatorsInRegistry();
    AddVariables(places.programs, {L"ProgramFiles", L"ProgramFiles(x86)", L"ProgramW6432", L"SystemRoot"});
    places.synchronised = SynchronisedDirectories();
    places.checkWritable = CheckWritable;
    return places;
}

std::unique_ptr<FileSystem> MakeFileSystemLike(const FileSystem&) {
    return MakeHostFileSystem();
}

} // namespace korvadex
