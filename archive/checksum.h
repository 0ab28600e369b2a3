// Telling whether a file still holds the bytes that it held.
#pragma once

#include "platform/file_system.h"

#include <cstdint>
#include <string>

namespace korvadex {

// The CRC-32 of a whole file.
Result<std::uint32_t> FileChecksum(const FileSystem& files, const std::string& path);

} // namespace korvadex
