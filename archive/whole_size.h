// Which files and members are packed and unpacked in memory.
#pragma once

#include <cstdint>

namespace korvadex {

// Up to this many bytes in one piece; what is larger streams.
inline constexpr std::uint64_t MaxWholeSize = 64u << 20;

// Packed and unpacked bytes of a member together, and all that is unpacked ahead: memory stays small whatever the
// archive.
inline constexpr std::uint64_t MaxBuffers = 100u << 20;

} // namespace korvadex
