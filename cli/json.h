// Text in the form that other programs read.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace korvadex {

std::string JsonText(std::string_view text);
// Those that begin with the end of a line stand in lines of their own.
std::string JsonArray(const std::vector<std::string>& values);
// The values are in that form already.
std::string JsonObject(const std::vector<std::pair<std::string, std::string>>& members);

} // namespace korvadex
