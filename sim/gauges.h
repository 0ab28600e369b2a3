// Gauges, the instruments of panels: which there are, who uses them, and how they get into the simulator.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

class SharedFiles;

// A gauge file's own name: "Cessna.Clock.gau" -> "cessna" (up to the first dot, lower case).
std::string GaugeName(std::string_view path);

// Gauges that come with the simulator; they are never deleted.
bool IsStockGauge(std::string_view fileName);

// "C:\FS2002\gauges directory does not exist. ..." True when it does.
bool CheckGaugesDirectory(CommandContext& context, const std::string& root);

// Puts the package's gauges into root & "gauges\"; existing ones stay as they are. False, after a message, when that
// directory is missing or a copy failed; what was added then is still listed in `placed`.
bool InstallGauges(CommandContext& context, const std::vector<FileEntry>& gauges, const std::string& root,
                   SharedFiles& placed);

// Tells of gauges that could not be deleted, if there are any, and what can be done about it.
void TellRemainingGauges(CommandContext& context, const std::vector<std::string>& remaining);

} // namespace korvadex
