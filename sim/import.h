// Bringing an aircraft that is already in the simulator into Staging, from where it can become a package.
#pragma once

#include "package/command_context.h"

#include <string>
#include <string_view>

namespace korvadex {

// Shows frmMSFSImport with the aircraft that no category of the Hangar holds, and copies the chosen one with
// its directories. The name of the aircraft that was imported, "" when the user chose none or nothing was
// copied: then RunImportGaugeStep (sim/gauges.h) is to follow, after Staging has been loaded. Files that are in
// Staging already are replaced; where they came with the same aircraft (the one imported `before`, or the one that
// the name file names), Staging may be cleared first. What could not be copied is named.
std::string ImportFromSim(CommandContext& context, std::string_view before = "");

} // namespace korvadex
