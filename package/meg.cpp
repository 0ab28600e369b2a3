#include "package/meg.h"

#include <array>

namespace korvadex {

namespace {

std::string WithOneDecimal(std::uint64_t tenths) {
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " ";
}

} // namespace

std::string MegText(std::uint64_t bytes) {
    return WithOneDecimal((bytes * 10 + BytesPerMeg / 2) / BytesPerMeg) + "Meg";
}

std::string SizeText(std::uint64_t bytes) {
    constexpr std::array<const char*, 4> units = {"KB", "MB", "GB", "TB"};
    if (bytes < 1024)
        return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
    std::size_t unit = 0;
    std::uint64_t tenths = (bytes * 10 + 512) / 1024;
    for (; tenths >= 10240 && unit + 1 < units.size(); ++unit)
        tenths = (tenths + 512) / 1024;
    return WithOneDecimal(tenths) + units[unit];
}

} // namespace korvadex
