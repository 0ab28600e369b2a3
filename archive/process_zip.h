// "Process ZIP file": an archive, and each archive nested in it, unpacked into a directory of its own in
// Staging.
#pragma once

#include "archive/mod_unzip.h"
#include "package/command_context.h"

#include <string>

namespace korvadex {

// Asks for an archive on the directory lastZipPath, or takes the one given; lastZipPath becomes its
// directory. False when the user cancelled: then nothing has changed.
bool ProcessZipFile(CommandContext& context, modUnzip& unzip, std::string& lastZipPath,
                    const std::string& archive = "");

} // namespace korvadex
