// Keeping a package of the Hangar packed: its bitmaps and gauges, each an archive of itself, and a marker file
// that says so.
#pragma once

#include "package/command_context.h"

#include <string>
#include <vector>

namespace korvadex {

// Packs (compress) or unpacks every .bmp and .gau below the directory (ends in a backslash); the marker then stands
// when any of them is packed. What is in the wanted state already stays as it is, so that an interrupted run is
// finished by the next. Gives back what was not done and why, a text for each file; a single text when a limit of the
// walk would leave files out: then nothing was done.
std::vector<std::string> CompressPackage(CommandContext& context, const std::string& packagePath, bool compress);

// True when the directory holds a .bmp or .gau that is not packed.
bool HasFilesToPack(CommandContext& context, const std::string& packagePath);

} // namespace korvadex
