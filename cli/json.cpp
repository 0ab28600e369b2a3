#include "cli/json.h"

namespace korvadex {

std::string JsonText(std::string_view text) {
    std::string quoted = "\"";
    for (const char letter : text) {
        constexpr std::string_view digits = "0123456789abcdef";
        const auto byte = static_cast<unsigned char>(letter);
        if (letter == '"' || letter == '\\')
            quoted += {'\\', letter};
        else if (byte < 0x20)
            quoted += std::string("\\u00") + digits[byte / 16] + digits[byte % 16];
        else
            quoted += letter;
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
