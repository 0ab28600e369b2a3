// The categories of the Hangar, which are directories in it, and which of them a package is in.
#pragma once

#include "package/command_context.h"

#include <string>

namespace korvadex {

// Why a category cannot get this name; "" when it can. own: the one that it has now, "" for a new one.
std::string DescribeBadCategoryName(const CommandContext& context, const std::string& name,
                                    const std::string& own = "");

// Asks for the name of a category until it is a name that is free; own: the one that it has now, "" for a new one. ""
// when the user gave up, or entered what it has.
std::string AskCategoryName(CommandContext& context, const std::string& own = "");

// These are false, after a message, when nothing was done.
bool MakeCategory(CommandContext& context, const std::string& name);
// A link is renamed itself, and leads to the same place. The records of installed packages follow.
bool RenameCategory(CommandContext& context, const std::string& category, const std::string& name);

// The package goes to another category as it is, installed or not; the record of its installation follows.
Changes MoveToCategory(CommandContext& context, const PackageRef& package, const std::string& category);

} // namespace korvadex
