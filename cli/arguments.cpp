#include "cli/arguments.h"

#include <algorithm>
#include <array>

namespace korvadex {

namespace {

constexpr std::array WithValue = {"--answer", "--category", "--staging", "--hangar", "--msfs"};
constexpr std::array WithoutValue = {"--json", "--names", "--all", "--delete", "--aliases", "--help", "--version"};

} // namespace

Arguments ReadArguments(const std::vector<std::string>& given, std::string& problem) {
    Arguments read;
    bool areWords = false;
    for (auto at = given.begin(); at != given.end() && problem.empty(); ++at) {
        if (areWords || !at->starts_with('-') || *at == "-") {
            read.words.push_back(*at);
            continue;
        }
        areWords = *at == "--";
        if (areWords)
            continue;
        const auto equals = at->find('=');
        const std::string name = *at == "-h" ? "--help" : at->substr(0, equals);
        const bool takesValue = std::ranges::find(WithValue, name) != WithValue.end();
        if (!takesValue && std::ranges::find(WithoutValue, name) == WithoutValue.end())
            problem = "There is no option " + name + ".";
        else if (!takesValue && equals != std::string::npos)
            problem = "The option " + name + " takes no value.";
        else if (takesValue && equals == std::string::npos && at + 1 == given.end())
            problem = "The option " + name + " needs a value.";
        else if (read.Has(name))
            problem = "The option " + name + " is given twice.";
        else if (!takesValue)
            read.options[name];
        else
            read.options[name] = equals != std::string::npos ? at->substr(equals + 1) : *++at;
    }
    return read;
}

} // namespace korvadex
