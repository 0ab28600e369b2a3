// A last look at a copy, before what it was made from is deleted.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"
#include "sim/copy_plan.h"

#include <string>

namespace korvadex {

// The first file of the package that its copy in `destination` (ends in a backslash), or in Staging's gauges,
// does not hold with its size; "" when the copy is whole.
std::string FirstNotCopied(CommandContext& context, const LoadedPackage& package, CopyRoot root,
                           const std::string& destination);

} // namespace korvadex
