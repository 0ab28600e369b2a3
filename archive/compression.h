// Keeping a package of the Hangar packed: its bitmaps and gauges, each an archive of itself, and a marker file
// that says so.
#pragma once

#include "package/command_context.h"

#include <string>

namespace korvadex {

// Packs (compress) or unpacks every .bmp and .gau below the directory (ends in a backslash), then writes or
// deletes the marker. What is in the wanted state already stays as it is, so that an interrupted run is
// finished by the next. Files that fail are told one by one and stay as they were. False, after a message, when a
// limit of the walk would leave files out: then nothing was done.
bool CompressPackage(CommandContext& context, const std::string& packagePath, bool compress);

} // namespace korvadex
