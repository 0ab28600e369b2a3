#include "platform/code_page.h"

#include "platform/win32.h"

#include <algorithm>
#include <array>

namespace korvadex {

namespace {

// One UTF-16 unit for each byte. Text is read and written through the one table, so that every byte comes
// back as itself, whatever the system would make of bytes that its code page leaves unused.
using ByteTable = std::array<wchar_t, 256>;

ByteTable ReadSystemTable() {
    // A system set to a code page of several bytes (Japanese, UTF-8 ...) has no letter for a lone byte.
    // Add-on files come from western systems then.
    UINT codePage = GetACP();
    CPINFO info{};
    if (!GetCPInfo(codePage, &info) || info.MaxCharSize != 1)
        codePage = 1252;

    ByteTable table{};
    for (unsigned byte = 0; byte < table.size(); ++byte) {
        const char text = static_cast<char>(byte);
        const auto last = table.begin() + byte;
        const bool known = MultiByteToWideChar(codePage, 0, &text, 1, last, 1) == 1 && *last != 0xFFFD &&
                           std::find(table.begin(), last, *last) == last;
        if (!known)
            *last = static_cast<wchar_t>(0xF700 + byte); // a private letter, the same in both directions
    }
    return table;
}

const ByteTable& SystemTable() {
    static const ByteTable table = ReadSystemTable();
    return table;
}

} // namespace

std::string FromCodePage(std::string_view bytes) {
    const ByteTable& table = SystemTable();
    std::wstring wide;
    wide.reserve(bytes.size());
    for (const char byte : bytes)
        wide += table[static_cast<unsigned char>(byte)];
    return FromWide(wide);
}

std::optional<std::string> ToCodePage(std::string_view utf8) {
    const std::optional<std::wstring> wide = ToWide(utf8);
    if (!wide)
        return std::nullopt;
    const ByteTable& table = SystemTable();
    std::string bytes;
    bytes.reserve(wide->size());
    for (const wchar_t unit : *wide) {
        const auto found = std::find(table.begin(), table.end(), unit);
        if (found == table.end())
            return std::nullopt;
        bytes += static_cast<char>(found - table.begin());
    }
    return bytes;
}

} // namespace korvadex
