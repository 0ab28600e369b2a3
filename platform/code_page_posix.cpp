#include "platform/code_page.h"

#include <array>
#include <cstdint>

namespace korvadex {

namespace {

// Code page 1252 differs from Latin-1 only here, at 0x80 to 0x9F; its five unused bytes stand for themselves.
constexpr std::array<char16_t, 32> CodePage1252 = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                   0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                   0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                   0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::optional<char> ByteOf(char32_t letter) {
    if (letter < 0x80 || (letter >= 0xA0 && letter <= 0xFF))
        return static_cast<char>(letter);
    for (std::size_t i = 0; i < CodePage1252.size(); ++i) {
        if (CodePage1252[i] == letter)
            return static_cast<char>(0x80 + i);
    }
    return std::nullopt;
}

} // namespace

std::string FromCodePage(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<std::uint8_t>(c);
        AppendUtf8(text, byte >= 0x80 && byte < 0xA0 ? CodePage1252[byte - 0x80] : byte);
    }
    return text;
}

std::optional<std::string> ToCodePage(std::string_view utf8) {
    if (!IsValidUtf8(utf8))
        return std::nullopt;
    std::string bytes;
    bytes.reserve(utf8.size());
    while (!utf8.empty()) {
        const auto byte = ByteOf(TakeLetter(utf8));
        if (!byte)
            return std::nullopt;
        bytes += *byte;
    }
    return bytes;
}

} // namespace korvadex
