// Giving a package of the Hangar another name, and its aircraft another title in the simulator.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

namespace korvadex {

// Shows frmRename for the package, and carries out what was entered: both the name and the title, or neither. Nothing
// takes the place of an existing directory.
Changes RenamePackage(CommandContext& context, const LoadedPackage& package);

} // namespace korvadex
