// The commands on the package of the Hangar that the main window shows.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

namespace korvadex {

enum HangarCommand : int { InstallPackage = 0, RemovePackageFromSim = 1 };

// Carries out state.CommandCode on the shown package.
void RunHangarCommand(CommandContext& context, CommandState& state, LoadedPackage& package);

} // namespace korvadex
