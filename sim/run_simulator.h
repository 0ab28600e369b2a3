// Starting the simulator itself.
#pragma once

#include "package/command_context.h"

#include <string>

namespace korvadex {

// The path of the first of the known executables that stands in the directory (which ends in a backslash), the newest
// simulator first; "" when there is none.
std::string FindSimulatorProgram(const FileSystem& files, const std::string& directory);

// Starts the first of the known executables in the MSFS directory, and says so when there is none or it could
// not be started.
void RunSimulator(CommandContext& context);

} // namespace korvadex
