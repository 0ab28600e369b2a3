#include "platform/code_page.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace korvadex {

namespace {

// The upper half of code page 437 (IBM PC).
constexpr std::array<char16_t, 128> CodePage437 = {
    0x00C7, 0x00FC, 0x00E9, 0x00E2, 0x00E4, 0x00E0, 0x00E5, 0x00E7, 0x00EA, 0x00EB, 0x00E8, 0x00EF, 0x00EE,
    0x00EC, 0x00C4, 0x00C5, 0x00C9, 0x00E6, 0x00C6, 0x00F4, 0x00F6, 0x00F2, 0x00FB, 0x00F9, 0x00FF, 0x00D6,
    0x00DC, 0x00A2, 0x00A3, 0x00A5, 0x20A7, 0x0192, 0x00E1, 0x00ED, 0x00F3, 0x00FA, 0x00F1, 0x00D1, 0x00AA,
    0x00BA, 0x00BF, 0x2310, 0x00AC, 0x00BD, 0x00BC, 0x00A1, 0x00AB, 0x00BB, 0x2591, 0x2592, 0x2593, 0x2502,
    0x2524, 0x2561, 0x2562, 0x2556, 0x2555, 0x2563, 0x2551, 0x2557, 0x255D, 0x255C, 0x255B, 0x2510, 0x2514,
    0x2534, 0x252C, 0x251C, 0x2500, 0x253C, 0x255E, 0x255F, 0x255A, 0x2554, 0x2569, 0x2566, 0x2560, 0x2550,
    0x256C, 0x2567, 0x2568, 0x2564, 0x2565, 0x2559, 0x2558, 0x2552, 0x2553, 0x256B, 0x256A, 0x2518, 0x250C,
    0x2588, 0x2584, 0x258C, 0x2590, 0x2580, 0x03B1, 0x00DF, 0x0393, 0x03C0, 0x03A3, 0x03C3, 0x00B5, 0x03C4,
    0x03A6, 0x0398, 0x03A9, 0x03B4, 0x221E, 0x03C6, 0x03B5, 0x2229, 0x2261, 0x00B1, 0x2265, 0x2264, 0x2320,
    0x2321, 0x00F7, 0x2248, 0x00B0, 0x2219, 0x00B7, 0x221A, 0x207F, 0x00B2, 0x25A0, 0x00A0};

} // namespace

void AppendUtf8(std::string& text, char32_t letter) {
    if (letter < 0x80) {
        text += static_cast<char>(letter);
    } else if (letter < 0x800) {
        text += static_cast<char>(0xC0 | (letter >> 6));
        text += static_cast<char>(0x80 | (letter & 0x3F));
    } else {
        if (letter < 0x10000) {
            text += static_cast<char>(0xE0 | (letter >> 12));
        } else {
            text += static_cast<char>(0xF0 | (letter >> 18));
            text += static_cast<char>(0x80 | ((letter >> 12) & 0x3F));
        }
        text += static_cast<char>(0x80 | ((letter >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (letter & 0x3F));
    }
}

char32_t TakeLetter(std::string_view& utf8) {
    const auto first = static_cast<std::uint8_t>(utf8.front());
    const std::size_t length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    char32_t letter = length == 1 ? first : first & (0x7Fu >> length);
    for (std::size_t k = 1; k < length; ++k)
        letter = (letter << 6) | (static_cast<std::uint8_t>(utf8[k]) & 0x3F);
    utf8.remove_prefix(length);
    return letter;
}

std::string FromCodePage437(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<std::uint8_t>(c);
        AppendUtf8(text, byte < 0x80 ? byte : CodePage437[byte - 0x80]);
    }
    return text;
}

std::optional<std::string> ToCodePage437(std::string_view utf8) {
    if (!IsValidUtf8(utf8))
        return std::nullopt;
    std::string bytes;
    while (!utf8.empty()) {
        const char32_t letter = TakeLetter(utf8);
        const auto* const found = std::ranges::find(CodePage437, letter);
        if (letter >= 0x80 && found == CodePage437.end())
            return std::nullopt;
        bytes +=
            static_cast<char>(letter < 0x80 ? letter : static_cast<char32_t>(0x80 + (found - CodePage437.begin())));
    }
    return bytes;
}

bool IsValidUtf8(std::string_view bytes) {
    for (std::size_t i = 0; i < bytes.size();) {
        const auto first = static_cast<std::uint8_t>(bytes[i]);
        const std::size_t length = first < 0x80   ? 1
                                   : first < 0xC2 ? 0
                                   : first < 0xE0 ? 2
                                   : first < 0xF0 ? 3
                                   : first < 0xF5 ? 4
                                                  : 0;
        if (length == 0 || bytes.size() - i < length)
            return false;
        char32_t letter = length == 1 ? first : first & (0x7Fu >> length);
        for (std::size_t k = 1; k < length; ++k) {
            const auto next = static_cast<std::uint8_t>(bytes[i + k]);
            if ((next & 0xC0) != 0x80)
                return false;
            letter = (letter << 6) | (next & 0x3F);
        }
        const bool isOverlong = (length == 3 && letter < 0x800) || (length == 4 && letter < 0x10000);
        if (isOverlong || (letter >= 0xD800 && letter <= 0xDFFF) || letter > 0x10FFFF)
            return false;
        i += length;
    }
    return true;
}

std::string_view FirstLetters(std::string_view text, std::size_t count) {
    std::size_t end = 0;
    for (; end < text.size(); ++end) {
        const bool isContinued = (static_cast<std::uint8_t>(text[end]) & 0xC0) == 0x80;
        if (!isContinued && count-- == 0)
            break;
    }
    return text.substr(0, end);
}

} // namespace korvadex
