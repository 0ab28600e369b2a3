// Packing and unpacking a package of the Hangar in place.
#pragma once

#include "archive/compression.h"
#include "package/command_context.h"
#include "package/loaded_package.h"

#include <optional>
#include <string>
#include <vector>

namespace korvadex {

// The turn of the package in a compression: packs or unpacks its bitmaps and gauges. Gives what could not be, with the
// reason; nothing where there is nothing to pack.
std::optional<std::vector<std::string>> CompressInHangar(CommandContext& context, const LoadedPackage& package,
                                                         Compression& compression);
// "Done.", or what was not compressed or decompressed.
void TellCompressed(CommandContext& context, const std::vector<std::string>& failures);

} // namespace korvadex
