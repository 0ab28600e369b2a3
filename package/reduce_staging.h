// Emptying the directories of Staging that only the configurations not chosen used.
#pragma once

#include "package/aircraft_cfg.h"

namespace korvadex {

// The first directory of the saved list whose last component ends with `ending`, without case; "" when none
// does.
std::string FindSavedDirectory(const DirectoryList& saved, std::string_view ending);

// saved: all directories of Staging, without trailing backslashes.
void EmptyUnusedDirectories(CommandContext& context, const DirectoryList& saved, const std::string& cfgPath,
                            const std::vector<Configuration>& configurations, std::size_t chosen);

} // namespace korvadex
