// Which files are archives, by their names: where archives are looked for, and where they are offered. What such a file
// is in truth, its bytes tell.
#pragma once

#include <string>
#include <string_view>

namespace korvadex {

// "Lear.zip", "Lear.TAR.GZ"; not the programs that unpack themselves.
bool IsArchiveName(std::string_view name);
// The same or a program.
bool MayBeArchiveName(std::string_view name);
// "Lear.zip" -> "Lear", "Lear.tar.gz" -> "Lear", "Lear 45.2.exe" -> "Lear 45.2"
std::string WithoutArchiveEnding(std::string_view name);
// Those other than zip, for the list of a file dialog: "*.7z *.rar ...".
std::string OtherArchivePatterns();

} // namespace korvadex
