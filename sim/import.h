// Bringing an aircraft that is already in the simulator into Staging, from where it can become a package.
#pragma once

#include "package/command_context.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

// frmMSFSImport.
struct ImportForm {
    std::vector<std::string> names; // of lstPackages
    // cmdOK, or a double click, on a row (-1: none is selected). True closes the dialog.
    std::function<bool(int row)> accept;
};

// The aircraft of the simulator that no category of the Hangar holds.
std::vector<std::string> ImportableAircraft(CommandContext& context);

// Copies this one into an empty Staging, as ImportFromSim does.
bool ImportIntoEmptyStaging(CommandContext& context, const std::string& aircraft);

// Shows frmMSFSImport with the aircraft that no category of the Hangar holds, and copies the chosen one with
// its directories. The name of the aircraft that was imported, "" when the user chose none or nothing was
// copied: then RunImportGaugeStep (sim/gauge_check.h) is to follow, after Staging has been loaded. Files that are in
// Staging already are replaced; where they came with the same aircraft (the one imported `before`, or the one that
// the name file names), Staging may be cleared first. What could not be copied is named.
std::string ImportFromSim(CommandContext& context, std::string_view before = "");

} // namespace korvadex
