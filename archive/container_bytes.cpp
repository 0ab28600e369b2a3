#include "archive/container_bytes.h"

namespace korvadex {

std::uint64_t NumberAt(std::string_view bytes, std::size_t from, std::size_t count) {
    std::uint64_t number = 0;
    for (std::size_t i = count; from + count <= bytes.size() && i > 0; --i)
        number = number << 8 | static_cast<std::uint8_t>(bytes[from + i - 1]);
    return number;
}

std::uint64_t TakeNumber(std::string_view& bytes) {
    std::uint64_t number = 0;
    for (unsigned shift = 0; shift < 63 && !bytes.empty(); shift += 7) {
        const auto byte = static_cast<std::uint8_t>(bytes.front());
        bytes.remove_prefix(1);
        number |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
        if (byte < 0x80)
            break;
    }
    return number;
}

} // namespace korvadex
