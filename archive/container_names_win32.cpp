#include "archive/container_names.h"
#include "platform/code_page.h"
#include "platform/win32.h"

#include <archive.h>
#include <archive_entry.h>

namespace korvadex {

namespace {

constexpr UINT OldCodePage = 437;

// libarchive has read the bytes as those of code page 437. Where the letters are UTF-8 that was read so, it is taken
// for what it is; no name is like that by chance.
std::string Unconverted(const std::wstring& name) {
    std::string bytes(name.size() * 4, '\0');
    BOOL hasOthers = FALSE;
    const int count = WideCharToMultiByte(OldCodePage, WC_NO_BEST_FIT_CHARS, name.data(), static_cast<int>(name.size()),
                                          bytes.data(), static_cast<int>(bytes.size()), nullptr, &hasOthers);
    bytes.resize(static_cast<std::size_t>(count));
    return count > 0 && !hasOthers && IsValidUtf8(bytes) ? bytes : FromWide(name);
}

// Where libarchive has no way to UTF-16 it still has the UTF-8 of the archive.
std::optional<std::string> TextOf(const wchar_t* name, const char* utf8) {
    if (name)
        return Unconverted(name);
    return utf8 ? std::optional<std::string>(utf8) : std::nullopt;
}

} // namespace

struct Utf8Names::Locale {};
Utf8Names::Utf8Names() = default;
Utf8Names::~Utf8Names() = default;

void KeepBytesOfNames(archive& reader) {
    for (const char* format : {"tar", "lha", "cab", "rar", "zip"})
        archive_read_set_format_option(&reader, format, "hdrcharset", "CP437");
}

std::optional<std::string> NameOf(archive_entry& entry) {
    return TextOf(archive_entry_pathname_w(&entry), archive_entry_pathname_utf8(&entry));
}

std::optional<std::string> HardLinkOf(archive_entry& entry) {
    return TextOf(archive_entry_hardlink_w(&entry), archive_entry_hardlink_utf8(&entry));
}

} // namespace korvadex
