// "Process ZIP file": an archive, and each archive nested in it, unpacked into a directory of its own in
// Staging.
#pragma once

#include "archive/mod_unzip.h"
#include "package/command_context.h"

#include <string>

namespace korvadex {

// lastZipPath becomes the directory of the archive. False, after a message, when that cannot be read: then nothing has
// changed.
bool ProcessZipFile(CommandContext& context, modUnzip& unzip, std::string& lastZipPath, const std::string& path);

} // namespace korvadex
