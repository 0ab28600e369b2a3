// Names of files in a message: all of them, or the first and how many more there are.
#pragma once

#include <string>
#include <vector>

namespace korvadex {

inline constexpr std::size_t MaxNamesInMessage = 20;

// One name to a line; "... and 5 more" ends a list of more than MaxNamesInMessage.
std::string ListNames(const std::vector<std::string>& names);

} // namespace korvadex
