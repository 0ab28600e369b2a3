// Installing the shown package into the simulator, and removing it from there.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

namespace korvadex {

class SimUsage;

void InstallIntoSim(CommandContext& context, const LoadedPackage& package);

// In QuietMode nothing is asked, reported or said to be done; a package that is kept for the sake of files
// that only the simulator has joins state.keptPackages.
// usage, where it is given, spares the search for users.
void RemoveFromSim(CommandContext& context, CommandState& state, const LoadedPackage& package,
                   SimUsage* usage = nullptr);

} // namespace korvadex
