// The names of members as libarchive hands them out: it converts those of Unicode by the locale of the thread, or, on
// Windows, gives them in UTF-16.
#pragma once

#include <memory>
#include <optional>
#include <string>

struct archive;
struct archive_entry;

namespace korvadex {

// While one lives, what libarchive converts on this thread it converts to UTF-8, where the host goes by locales.
class Utf8Names {
  public:
    Utf8Names();
    ~Utf8Names();
    Utf8Names(const Utf8Names&) = delete;
    Utf8Names& operator=(const Utf8Names&) = delete;

  private:
    struct Locale;
    std::unique_ptr<Locale> locale;
};

// To be called before the archive is opened: names that are not of Unicode keep their bytes, or are of code page 437.
void KeepBytesOfNames(archive& reader);
// A name in UTF-8 whose bytes libarchive has read as of code page 437: where they were UTF-8 themselves it is taken for
// what it is, as no name is like that by chance.
std::string ReadAgain(const std::string& name);
// UTF-8, or the bytes that the archive has. None when the name could not be converted.
std::optional<std::string> NameOf(archive_entry& entry);
// The member whose bytes this one shares; none when it has its own.
std::optional<std::string> HardLinkOf(archive_entry& entry);

} // namespace korvadex
