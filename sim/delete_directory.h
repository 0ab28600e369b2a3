// Deleting an aircraft's or a package's directory as a whole, and saying what is left of it.
#pragma once

#include "package/command_context.h"

#include <string>

namespace korvadex {

// An aircraft directory that is a link to another place goes as a link; what it leads to is not ours.
bool IsLinkedDirectory(const CommandContext& context, const std::string& directory);

// The whole directory goes, which lies in a location and ends in a backslash; otherwise what is left of it and
// why. `last` as for DeleteTree.
Status DeleteDirectory(CommandContext& context, const std::string& directory, const std::string& last = {});

// "... could not be removed (another program is using it)"
std::string DescribeRemaining(const Status& status);
void TellIncompleteRemoval(CommandContext& context, const Status& status);

} // namespace korvadex
