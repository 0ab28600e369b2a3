// Packing and unpacking a package of the Hangar in place.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

#include <optional>
#include <string>
#include <vector>

namespace korvadex {

// Packs or unpacks the package's bitmaps and gauges. Gives what could not be, with the reason; nothing where there is
// nothing to pack.
std::optional<std::vector<std::string>> CompressInHangar(CommandContext& context, const LoadedPackage& package,
                                                         bool compress);
// "Done.", or what was not compressed or decompressed.
void TellCompressed(CommandContext& context, const std::vector<std::string>& failures);

} // namespace korvadex
