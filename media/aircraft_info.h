// The editor for what the simulator shows of an aircraft and what air traffic control calls it.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

namespace korvadex {

// Shows frmInfo for the aircraft.cfg of the loaded package, and writes what was entered into it. Whatever fails, the
// file is as it was and the dialog stays open with what was typed.
void EditAircraftInfo(CommandContext& context, const LoadedPackage& package);

} // namespace korvadex
