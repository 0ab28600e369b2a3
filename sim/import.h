// Bringing an aircraft that is already in the simulator into Staging, from where it can become a package.
#pragma once

#include "package/command_context.h"

#include <string>

namespace korvadex {

// Shows frmMSFSImport with the aircraft that no category of the Hangar holds, and copies the chosen one with
// its directories. The name of the aircraft that was imported, "" when the user chose none or nothing was
// copied: then RunImportGaugeStep (sim/gauges.h) is to follow, after Staging has been loaded. What could not be
// copied is named; nothing in Staging or in the simulator is replaced.
std::string ImportFromSim(CommandContext& context);

} // namespace korvadex
