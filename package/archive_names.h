// Which files are archives, by their names: where archives are looked for, and where they are offered. What such a file
// is in truth, its bytes tell.
#pragma once

#include <string>
#include <string_view>

namespace korvadex {

// "Lear.zip", "Lear.TAR.GZ"; neither the programs that unpack themselves nor cabinets (.cab), which mostly hold gauges.
bool IsArchiveName(std::string_view name);
// The same, or a program or a cabinet.
bool MayBeArchiveName(std::string_view name);
// "Lear.zip" -> "Lear", "Lear.tar.gz" -> "Lear", "Lear 45.2.exe" -> "Lear 45.2"
std::string WithoutArchiveEnding(std::string_view name);
// Those other than zip, for the list of a file dialog: "*.cab *.7z ...".
std::string OtherArchivePatterns();

} // namespace korvadex
