#include "cli/json.h"

#include "platform/code_page.h"

namespace korvadex {

namespace {

// Of the letter in UTF-8 that begins there, in bytes; 0 when none does.
std::size_t LetterLength(std::string_view text) {
    for (std::size_t length = 1; length <= 4 && length <= text.size(); ++length)
        if (IsValidUtf8(text.substr(0, length)))
            return length;
    return 0;
}

} // namespace

std::string JsonText(std::string_view text) {
    std::string quoted = "\"";
    for (std::size_t length = 1; !text.empty(); text.remove_prefix(length)) {
        constexpr std::string_view digits = "0123456789abcdef";
        const auto byte = static_cast<unsigned char>(text.front());
        length = LetterLength(text);
        if (length == 0) {
            quoted += "\xEF\xBF\xBD"; // U+FFFD: names on the disk may be of any bytes
            length = 1;
        } else if (byte == '"' || byte == '\\') {
            quoted += {'\\', text.front()};
        } else if (byte < 0x20 || byte == 0x7F) {
            quoted += std::string("\\u00") + digits[byte / 16] + digits[byte % 16];
        } else {
            quoted += text.substr(0, length);
        }
    }
    return quoted + '"';
}

std::string JsonArray(const std::vector<std::string>& values) {
    std::string text;
    for (const std::string& value : values)
        text += (text.empty() ? "" : value.starts_with('\n') ? "," : ", ") + value;
    return "[" + text + "]";
}

std::string JsonObject(const std::vector<std::pair<std::string, std::string>>& members) {
    std::string text;
    for (const auto& [name, value] : members)
        text += (text.empty() ? "" : ", ") + JsonText(name) + ": " + value;
    return "{" + text + "}";
}

} // namespace korvadex
