// Which names a package may bear.
#pragma once

#include "package/command_context.h"

#include <string>
#include <string_view>

namespace korvadex {

// What becomes of a name as typed: trimmed, a double quote becomes "'", and each of \ / : ? < > | * . becomes
// "_".
std::string CleanPackageName(std::string_view typed);

// False for what the disk cannot store, and for what no list shows.
bool CanBePackageName(std::string_view name);

// The name to propose for an aircraft of that title: cleaned, without quotes around it; "" when it can be none.
std::string NameFromTitle(std::string_view title);

// Refuses, with a message, a name that a category already holds; asks when the simulator has it. A blank and "_" are
// one letter here, as they are in the simulator. The directory that is to be renamed does not count. True to go on.
bool CheckPackageName(CommandContext& context, const std::string& name, const std::string& ownDirectory = "");

} // namespace korvadex
