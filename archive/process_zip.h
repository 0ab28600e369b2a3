// "Process ZIP file": an archive, and each archive nested in it, unpacked into a directory of its own in
// Staging.
#pragma once

#include "archive/mod_unzip.h"
#include "package/aircraft_parts.h"
#include "package/command_context.h"

#include <optional>
#include <string>

namespace korvadex {

struct UnpackedArchive {
    ArchiveContents contents;
    bool isWhole = true; // all of it, and of each archive nested in it, is on the disk
};

// lastZipPath becomes the directory of the archive. None, after a message, when that cannot be read: then nothing has
// changed.
std::optional<UnpackedArchive> ProcessZipFile(CommandContext& context, modUnzip& unzip, std::string& lastZipPath,
                                              const std::string& path);

} // namespace korvadex
