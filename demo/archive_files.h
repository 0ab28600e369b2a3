// Archives as bytes: zip archives as add-ons come in, and cabinets as gauges come in.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace korvadex::demo {

// A name (in UTF-8, with "/" between directories; ending in "/" for a directory's own entry) and the bytes.
using Members = std::vector<std::pair<std::string, std::string>>;

// A zip archive with these members in this order, all of one fixed time.
std::string ZipArchive(const Members& members);
// A cabinet with these members, stored without compression.
std::string Cabinet(const Members& members);

} // namespace korvadex::demo
