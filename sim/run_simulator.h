// Starting the simulator itself.
#pragma once

#include "package/command_context.h"

namespace korvadex {

// Starts the first of the known executables in the MSFS directory, and says so when there is none or it could
// not be started.
void RunSimulator(CommandContext& context);

} // namespace korvadex
