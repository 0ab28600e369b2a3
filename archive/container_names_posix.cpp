#include "archive/container_names.h"

#include <archive.h>
#include <archive_entry.h>
#include <clocale>
#include <locale.h>

namespace korvadex {

struct Utf8Names::Locale {
    locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    locale_t before = utf8 ? uselocale(utf8) : nullptr;
};

Utf8Names::Utf8Names() : locale(std::make_unique<Locale>()) {}

Utf8Names::~Utf8Names() {
    if (!locale->utf8)
        return;
    uselocale(locale->before);
    freelocale(locale->utf8);
}

// The bytes are left as they are where no character set is named. For lha libarchive wants one.
void KeepBytesOfNames(archive& reader) {
    archive_read_set_format_option(&reader, "lha", "hdrcharset", "CP437");
}

std::optional<std::string> NameOf(archive_entry& entry) {
    const char* name = archive_entry_pathname(&entry);
    return name ? std::optional<std::string>(ReadAgain(name)) : std::nullopt;
}

std::optional<std::string> HardLinkOf(archive_entry& entry) {
    const char* name = archive_entry_hardlink(&entry);
    return name ? std::optional<std::string>(ReadAgain(name)) : std::nullopt;
}

} // namespace korvadex
