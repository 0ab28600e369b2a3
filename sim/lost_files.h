// What would be lost with an installed aircraft, as no package of the Hangar has it.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

#include <string>
#include <vector>

namespace korvadex {

// Files of the installed directory (ends in a backslash) that are neither as they were installed nor anywhere in the
// package: a simulator's own aircraft may bear the name of a package, and people edit what they fly. Below the
// directory, with a word on why: "panel\panel.cfg  (changed)".
std::vector<std::string> FilesOfOthers(CommandContext& context, const LoadedPackage& package,
                                       const std::string& directory);

} // namespace korvadex
