// Gauges, the instruments of panels: put into the simulator, taken out again when nobody else needs them, and
// checked against what a panel names.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"
#include "sim/config_search.h"
#include "sim/name_matcher.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

class SharedFiles;

// A gauge file's own name: "Cessna.Clock.gau" -> "cessna" (up to the first dot, lower case).
std::string GaugeName(std::string_view path);

// Gauges that come with the simulator; they are never deleted.
bool IsStockGauge(std::string_view fileName);

// Notes the gauge names that a panel of some aircraft below root & "aircraft\" uses: a line that contains the
// name also contains "gauge". Gives what could not be looked at.
std::vector<Unseen> FindGaugesInUse(CommandContext& context, const std::string& root, NameMatcher& names,
                                    const ConfigProgress& progress = {});

// "C:\FS2002\gauges directory does not exist. ..." True when it does.
bool CheckGaugesDirectory(CommandContext& context, const std::string& root);

// Puts the package's gauges into root & "gauges\"; existing ones stay as they are. False, after a message, when that
// directory is missing or a copy failed; what was added then is still listed in `placed`.
bool InstallGauges(CommandContext& context, const std::vector<FileEntry>& gauges, const std::string& root,
                   SharedFiles& placed);

// Tells of gauges that could not be deleted, if there are any, and what can be done about it.
void TellRemainingGauges(CommandContext& context, const std::vector<std::string>& remaining);

// What a panel.cfg names against what the simulator has.
struct PanelCheck {
    bool PanelNoGauges = true;        // without any gauge line, as a panel that only leads to another one
    std::vector<std::string> missing; // file names of gauges: "clock.gau"
    std::vector<std::string> used;    // the paths of the files found, each once
};

// Looks up each gauge that a panel.cfg names among the simulator's. One that cannot be read is told of, and has none.
PanelCheck CrossCheckPanel(CommandContext& context, const std::string& path);

// frmInstallStatus for the panel.cfg of an aircraft in the simulator: what CrossCheckPanel found, and whether the
// aircraft is missing whose panel it uses.
void ShowInstallCheck(CommandContext& context, const std::string& package, const std::string& panel);

// Checks the first panel.cfg below Staging for the aircraft that was just imported, and copies the gauges
// that it uses to Staging's "gauges".
void RunImportGaugeStep(CommandContext& context, const std::string& aircraft);

} // namespace korvadex
