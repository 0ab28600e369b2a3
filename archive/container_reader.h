// Archives other than zip for those who unpack them, by libarchive: 7z, rar, lha, cab, iso, and tar with what packs it.
#pragma once

#include "archive/archive_reader.h"

#include <string_view>

namespace korvadex {

// NotAnArchive when there is none of these kinds in the file, also when an empty file would do for one.
OpenedArchive OpenContainer(const FileSystem& files, const std::string& path);

// The same for a program that unpacks itself; its beginning is known.
OpenedArchive OpenContainerBehind(std::string_view program, const FileSystem& files, const std::string& path);
// Where in it the first of the archives seems to begin; npos when there is none.
std::size_t FindContainer(std::string_view program, std::size_t from);

} // namespace korvadex
