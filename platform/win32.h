// What the Windows halves of this floor share: the system header, UTF-16 text, long paths and file times.
#pragma once

#include "platform/file_system.h"

#include <windows.h>

// The system header renames every routine of these names; ours keep theirs.
#undef CreateDirectory
#undef RemoveDirectory

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace korvadex {

struct HandleCloser {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using UniqueHandle = std::unique_ptr<std::remove_pointer_t<HANDLE>, HandleCloser>;

// None when the text is no valid UTF-8.
std::optional<std::wstring> ToWide(std::string_view utf8);
// An unpaired surrogate, which UTF-8 cannot hold, becomes U+FFFD: a name with one cannot be found again.
std::string FromWide(std::wstring_view wide);

// `C:\a\b\` -> `\\?\C:\a\b`, `C:\` -> `\\?\C:\`. With this beginning the system takes up to 32767 characters
// and no longer interprets the rest, so what it would not store is refused here: none for anything but a path
// from the root of a drive, and for components "." and "..".
std::optional<std::wstring> ExtendedPath(std::string_view path);

// The same for a file that is only read, which may also lie on a share:
// `\\server\share\a` -> `\\?\UNC\server\share\a`.
std::optional<std::wstring> SourcePath(std::string_view path);

// What a code of GetLastError() means to the program.
FileFault FaultOfNative(DWORD code);
Status NativeFault(const std::string& path, DWORD code = GetLastError());

// FILETIME counts 100 ns from 1601; what FileTime cannot hold (before 1678, after 2262) becomes its nearest
// bound.
FileTime FromNativeTime(const FILETIME& time);
FILETIME ToNativeTime(FileTime time);

} // namespace korvadex
