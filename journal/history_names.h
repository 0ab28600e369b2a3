// The names of the files in the directory of the history.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace korvadex {

inline constexpr std::string_view LogExtension = ".log", DoneExtension = ".done", NewExtension = ".new";

// "000012"
std::string NameOfNumber(int number);

// Of the name of a file, "000012.log" with ".log"; none when it is no such name.
std::optional<int> NumberInName(std::string_view name, std::string_view extension);

} // namespace korvadex
