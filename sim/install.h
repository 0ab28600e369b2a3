// Putting a package into the simulator.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

namespace korvadex {

// Copies the package to the simulator's aircraft, with its gauges, sounds, effects and modules beside those of others,
// unless it is installed, or the package whose panel or sound it uses via alias is not. Then its gauges are checked.
Changes InstallIntoSim(CommandContext& context, const LoadedPackage& package);

} // namespace korvadex
