// The gauge cross-check: what a panel names against what the simulator has.
#pragma once

#include "package/command_context.h"

#include <string>
#include <vector>

namespace korvadex {

// What a panel.cfg names against what the simulator has.
struct PanelCheck {
    bool isRead = false;              // the panel could be
    bool PanelNoGauges = true;        // without any gauge line, as a panel that only leads to another one
    std::vector<std::string> missing; // file names of gauges: "clock.gau"
    std::vector<std::string> used;    // the paths of the files found, each once
};

// Looks up each gauge that a panel.cfg names among the simulator's. One that cannot be read is told of, and has none.
PanelCheck CrossCheckPanel(CommandContext& context, const std::string& path);

// frmInstallStatus for the panel.cfg of an aircraft in the simulator: what CrossCheckPanel found, and whether the
// aircraft is missing whose panel it uses. False where the panel could not be read.
bool ShowInstallCheck(CommandContext& context, const std::string& package, const std::string& panel);

// Checks the first panel.cfg below Staging for the aircraft that was just imported, and copies the gauges
// that it uses to Staging's "gauges".
void RunImportGaugeStep(CommandContext& context, const std::string& aircraft);

} // namespace korvadex
