#include "archive/container_names.h"
#include "platform/code_page.h"
#include "platform/win32.h"

#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <string_view>

namespace korvadex {

namespace {

bool IsAscii(std::string_view bytes) {
    return std::ranges::all_of(bytes, [](char letter) { return (letter & 0x80) == 0; });
}

// The bytes of a disc libarchive takes for those of the system's code page. Where it has no way to UTF-16 it still has
// the UTF-8 of the archive.
std::optional<std::string> TextOf(const wchar_t* name, const char* bytes, const char* utf8) {
    if (bytes && IsValidUtf8(bytes) && !IsAscii(bytes))
        return ReadAgain(bytes);
    if (name)
        return ReadAgain(FromWide(name));
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
    return TextOf(archive_entry_pathname_w(&entry), archive_entry_pathname(&entry),
                  archive_entry_pathname_utf8(&entry));
}

std::optional<std::string> HardLinkOf(archive_entry& entry) {
    return TextOf(archive_entry_hardlink_w(&entry), archive_entry_hardlink(&entry),
                  archive_entry_hardlink_utf8(&entry));
}

} // namespace korvadex
