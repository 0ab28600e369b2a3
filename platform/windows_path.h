// The rules of Windows path text, the same on every host.
//
// Inside the program every path is a Windows path in UTF-8: `C:\Hangar\Jets\Lear\`. A directory that is
// about to be extended bears its trailing backslash; entries of lists do not. Names compare without case.
#pragma once

#include <string>
#include <string_view>

namespace korvadex {

// Lower-cases UTF-8 text letter by letter (Latin, Greek, Cyrillic), as file names are compared.
// Bytes that are no valid UTF-8 stay as they are.
std::string FoldCase(std::string_view text);

bool EqualNoCase(std::string_view a, std::string_view b);
// The order of a directory listing: without case, ties broken by the bytes themselves.
bool LessNoCase(std::string_view a, std::string_view b);
bool EndsWithNoCase(std::string_view text, std::string_view ending);
bool StartsWithNoCase(std::string_view text, std::string_view beginning);

// Blanks only: no tab or line end is taken off.
std::string_view TrimLeft(std::string_view text);
std::string_view Trim(std::string_view text);

// "" -> "", "C:\a" -> "C:\a\", "C:\a\" -> "C:\a\"
std::string AddBackslash(std::string_view path);
// "C:\a\" -> "C:\a", "C:\" -> "C:\"
std::string WithoutBackslash(std::string_view path);

// The last component, with its trailing backslash where the path has one:
//   "C:\Hangar\Jets\Lear\"               -> "Lear\"
//   "C:\Hangar\Jets\Lear\" (two levels)  -> "Jets\Lear\"
//   "C:\Staging\panel\panel.cfg"         -> "panel.cfg"
std::string LastPathComponent(std::string_view path, bool twoLevels = false);
// All before the last component, ending in a backslash: C:\a\b.txt -> C:\a\, C:\a\b\ -> C:\a\, C:\ -> "".
std::string ParentDirectory(std::string_view path);

// A name beside one that is taken: "a.txt" with 2 -> "a(2).txt"; without an extension the number ends it.
std::string NumberedName(std::string_view path, int number);

// True when path lies below directory (which ends in a backslash) or is that directory itself.
bool IsAtOrBelow(std::string_view path, std::string_view directory);

// A drive letter, a colon and a backslash at the beginning.
bool IsDrivePath(std::string_view path);

// CON, NUL, COM1 ..., alone or with an extension ("nul.txt"), in any case: names that Windows keeps for
// devices.
bool IsDeviceName(std::string_view name);
// True when the text can be the name of a file on every host: not empty, not "." or "..", no \ / : * ? " < >
// |, no control character, no trailing dot or blank, no device name, at most 255 units of UTF-16.
bool IsStorableName(std::string_view name);

// The name of every scratch directory of the program; no list shows them or what they hold. No name but these three
// is hidden, however much like it: what no list shows is copied nowhere, and lost when its directory is cleared.
inline constexpr std::string_view ScratchDirectoryName = "~kx~scratch";
bool IsScratchName(std::string_view name);
// Beside it: what commands have taken away and an undo brings back, and the file by which one program holds a place.
inline constexpr std::string_view KeptDirectoryName = "~kx~kept";
inline constexpr std::string_view LockFileName = "~kx~lock";
// Kept or lock: what no command deletes.
bool IsLastingName(std::string_view name);
bool IsOwnName(std::string_view name); // one of the three

// What file managers write into any directory by themselves (Thumbs.db, desktop.ini, .DS_Store, .directory),
// and the tree __MACOSX that they add to archives: no part of what the user keeps there.
bool IsFileManagersFile(std::string_view name);
bool IsFileManagersDirectory(std::string_view name);

} // namespace korvadex
