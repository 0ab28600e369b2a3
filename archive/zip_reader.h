// Zip archives for those who unpack them, by libzip, libdeflate and ISA-L.
#pragma once

#include "archive/archive_reader.h"

namespace korvadex {

OpenedArchive OpenZipArchive(const FileSystem& files, const std::string& path);

} // namespace korvadex
