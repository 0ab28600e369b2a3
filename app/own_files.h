// Where the program's own files lie. A portable program has them all beside its executable. An installed one
// (/usr/bin/korvadex) finds what came with it in share/korvadex beside the executable's directory, and keeps its
// settings in a directory of the user's.
#pragma once

#include "platform/file_system.h"

#include <string>
#include <string_view>

namespace korvadex {

inline constexpr std::string_view ReadMePage = "kxdoc.htm";

// Where the read-me page is; it ends in a backslash, and may be a place that no drive leads to. executable: as the
// host names it.
std::string DataDirectory(const FileSystem& files, const std::string& executable);

// What to open for the chapter of this id ("" for none): a small page in AppDir that leads there, as the programs that
// desktops ask for pages open only whole ones. The page itself when that could not be written.
std::string PageAt(FileSystem& files, const std::string& appDir, const std::string& page, std::string_view chapter);

// Where kx.ini is (AppDir): the executable's directory, when the program is not installed or there is a kx.ini in it;
// otherwise userDirectory (as the host names it), which is made. Where no drive leads to that, C:\Korvadex\ stands in
// for it. BadName when no drive leads to any of them.
Result<std::string> SettingsDirectory(FileSystem& files, const std::string& executable,
                                      const std::string& userDirectory);

// The same for this run, or the directory that $KORVADEX_HOME names, as a path of the host or with a drive letter.
// Throws std::runtime_error, with a text for the user, where there is none.
std::string AppDirectory(FileSystem& files, const std::string& executable);

} // namespace korvadex
