// Numbers and marks in the records of archives.
#pragma once

#include <cstdint>
#include <string_view>

namespace korvadex {

inline constexpr std::string_view OldRarMark{"Rar!\x1A\x07\0", 7}, NewRarMark{"Rar!\x1A\x07\x01\0", 8};
inline constexpr std::string_view SevenZipMark{"7z\xBC\xAF\x27\x1C", 6}, CabinetMark{"MSCF\0\0\0\0", 8};

// Little-endian; 0 where the bytes end before.
std::uint64_t NumberAt(std::string_view bytes, std::size_t from, std::size_t count);
// Seven bits in a byte, the lowest first: taken from the front.
std::uint64_t TakeNumber(std::string_view& bytes);

} // namespace korvadex
