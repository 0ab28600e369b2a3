// How much memory an archive wants, which says so before anything of it is unpacked.
#pragma once

#include "archive/container_source.h"

#include <cstdint>
#include <string_view>

namespace korvadex {

// An archive that wants more is not unpacked: the machine has other work as well.
inline constexpr std::uint64_t MostMemory = std::uint64_t{1} << 30;

// Bytes for the dictionaries of a 7z archive, or of what xz has packed; 0 for others and where it is not told.
std::uint64_t MemoryToUnpack(ContainerSource& source);
// The same for a member of a zip archive, by its method and its first bytes as they are packed (1 KB of them).
std::uint64_t MemoryToUnpackMember(int method, std::string_view bytes);

} // namespace korvadex
