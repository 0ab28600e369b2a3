// How much memory an archive wants, which says so before anything of it is unpacked.
#pragma once

#include "archive/container_source.h"

#include <cstdint>

namespace korvadex {

// An archive that wants more is not unpacked: the machine has other work as well.
inline constexpr std::uint64_t MostMemory = std::uint64_t{1} << 30;

// Bytes for the dictionaries of a 7z archive, or of what xz has packed; 0 for others and where it is not told.
std::uint64_t MemoryToUnpack(ContainerSource& source);

} // namespace korvadex
