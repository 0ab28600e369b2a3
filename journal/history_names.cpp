#include "journal/history_names.h"

#include "journal/record.h"
#include "platform/windows_path.h"

namespace korvadex {

std::string NameOfNumber(int number) {
    const std::string digits = std::to_string(number);
    return std::string(digits.size() < 6 ? 6 - digits.size() : 0, '0') + digits;
}

std::optional<int> NumberInName(std::string_view name, std::string_view extension) {
    if (!EndsWithNoCase(name, extension))
        return std::nullopt;
    const auto number = NumberOf(name.substr(0, name.size() - extension.size()));
    return number && *number > 0 && *number < 1'000'000'000 ? std::optional(static_cast<int>(*number)) : std::nullopt;
}

} // namespace korvadex
