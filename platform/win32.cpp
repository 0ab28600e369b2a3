#include "platform/win32.h"

#include "platform/windows_path.h"

#include <algorithm>
#include <limits>

namespace korvadex {

namespace {

constexpr std::uint64_t UnixEpoch = 116444736000000000; // 1970-01-01, in 100 ns since 1601
constexpr DWORD DiskQuotaExceeded = 1295;               // its name is missing from older system headers

} // namespace

std::optional<std::wstring> ToWide(std::string_view utf8) {
    if (utf8.empty())
        return std::wstring();
    const int length = static_cast<int>(utf8.size());
    const int needed = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.data(), length, nullptr, 0);
    if (needed <= 0)
        return std::nullopt;
    std::wstring wide(static_cast<std::size_t>(needed), L'\0');
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.data(), length, wide.data(), needed);
    return wide;
}

std::string FromWide(std::wstring_view wide) {
    if (wide.empty())
        return {};
    const int length = static_cast<int>(wide.size());
    const int needed = WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(std::max(needed, 0)), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, utf8.data(), needed, nullptr, nullptr);
    return utf8;
}

std::optional<std::wstring> ExtendedPath(std::string_view path) {
    if (!IsDrivePath(path))
        return std::nullopt;
    std::string clean(path.substr(0, 2));
    for (std::size_t at = 3; at < path.size();) {
        const std::size_t end = std::min(path.find('\\', at), path.size());
        const std::string_view component = path.substr(at, end - at);
        if (component == "." || component == ".." ||
            component.find_first_of(std::string_view("/\0", 2)) != std::string_view::npos)
            return std::nullopt;
        if (!component.empty())
            clean.append("\\").append(component);
        at = end + 1;
    }
    if (clean.size() == 2)
        clean += '\\';
    std::optional<std::wstring> wide = ToWide(clean);
    if (wide)
        wide->insert(0, L"\\\\?\\");
    return wide;
}

std::optional<std::wstring> SourcePath(std::string_view path) {
    // `\\?\` and `\\.\` begin names of another kind.
    if (!path.starts_with("\\\\") || path.size() < 3 || path[2] == '?' || path[2] == '.')
        return ExtendedPath(path);
    std::optional<std::wstring> wide = ToWide(WithoutBackslash(path.substr(2)));
    if (wide)
        wide->insert(0, L"\\\\?\\UNC\\");
    return wide;
}

FileFault FaultOfNative(DWORD code) {
    switch (code) {
    case ERROR_SUCCESS:
        return FileFault::None;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_DIRECTORY: // a file stands where a directory was named
        return FileFault::NotFound;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
        return FileFault::Exists;
    case ERROR_DIR_NOT_EMPTY:
        return FileFault::NotEmpty;
    case ERROR_ACCESS_DENIED:
    case ERROR_NETWORK_ACCESS_DENIED:
    case ERROR_PRIVILEGE_NOT_HELD:
    case ERROR_CANT_ACCESS_FILE:
        return FileFault::Denied;
    case ERROR_WRITE_PROTECT:
        return FileFault::ReadOnlyDisk;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_USER_MAPPED_FILE:
    case ERROR_DELETE_PENDING:
    case ERROR_BUSY:
        return FileFault::InUse;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case DiskQuotaExceeded:
        return FileFault::DiskFull;
    case ERROR_NOT_SAME_DEVICE:
        return FileFault::OtherVolume;
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_FILENAME_EXCED_RANGE:
        return FileFault::BadName;
    default:
        return FileFault::Failed;
    }
}

Status NativeFault(const std::string& path, DWORD code) {
    return {FaultOfNative(code), path, static_cast<int>(code)};
}

FileTime FromNativeTime(const FILETIME& time) {
    const std::uint64_t ticks =
        (static_cast<std::uint64_t>(time.dwHighDateTime) << 32) | static_cast<std::uint64_t>(time.dwLowDateTime);
    constexpr std::int64_t bound = std::numeric_limits<std::int64_t>::max() / 100;
    const std::int64_t sinceEpoch = ticks >= UnixEpoch
                                        ? static_cast<std::int64_t>(std::min<std::uint64_t>(ticks - UnixEpoch, bound))
                                        : -static_cast<std::int64_t>(std::min<std::uint64_t>(UnixEpoch - ticks, bound));
    return FileTime(std::chrono::nanoseconds(sinceEpoch * 100));
}

FILETIME ToNativeTime(FileTime time) {
    // Rounded down, also before 1970.
    using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
    const std::int64_t sinceEpoch = std::chrono::floor<Ticks>(time.time_since_epoch()).count();
    const std::uint64_t ticks = UnixEpoch + static_cast<std::uint64_t>(sinceEpoch);
    return {static_cast<DWORD>(ticks & 0xFFFFFFFF), static_cast<DWORD>(ticks >> 32)};
}

} // namespace korvadex
