// What was given on the command line.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

// Sorted into options and words; "--category Jets" is the same as "--category=Jets", and behind "--" all are words.
struct Arguments {
    std::map<std::string, std::string, std::less<>> options; // by their names, without a value ""
    std::vector<std::string> words;                          // the command first

    bool Has(std::string_view option) const { return options.contains(option); }
    std::optional<std::string> ValueOf(std::string_view option) const {
        const auto found = options.find(option);
        return found == options.end() ? std::nullopt : std::optional(found->second);
    }
};

// problem: why they cannot be understood; "" when they can.
Arguments ReadArguments(const std::vector<std::string>& given, std::string& problem);

} // namespace korvadex
