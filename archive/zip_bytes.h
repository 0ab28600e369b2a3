// The numbers in an archive's own records, and the bytes of the file that they stand in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <zip.h>

namespace korvadex {

// What each record of an archive begins with, and the size of its fixed part.
namespace ZipRecord {
inline constexpr std::uint32_t Local = 0x04034B50, Central = 0x02014B50, End = 0x06054B50, End64 = 0x06064B50,
                               Locator64 = 0x07064B50;
inline constexpr std::size_t LocalSize = 30, CentralSize = 46, EndSize = 22, End64Size = 56, Locator64Size = 20;
} // namespace ZipRecord

// The number in these bytes, at most eight, the lowest first. They must be there.
std::uint64_t Little(std::string_view bytes, std::size_t at, std::size_t count);
std::string LittleBytes(std::uint64_t value, std::size_t count);

// Bytes of an open source; none when it does not tell.
std::optional<std::uint64_t> SizeOf(zip_source_t* source);
// None when they are not all there.
std::optional<std::string> BytesAt(zip_source_t* source, std::uint64_t offset, std::uint64_t count);

} // namespace korvadex
