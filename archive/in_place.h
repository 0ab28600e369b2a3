// Single files of a package that are kept packed: a one-member zip archive under the file's own name.
#pragma once

#include "package/command_context.h"

#include <string>

namespace korvadex {

// 0 when the file was a packed one and is now unpacked (testOnly: would be); an Info-ZIP code otherwise, with
// the file as it was. Only an archive that begins at the file's first byte and holds just the member of the
// file's own name counts as packed. A packed file that cannot be unpacked is reported to the user.
int UnzipFileInPlace(CommandContext& context, const std::string& path, bool testOnly = false);

// Packs the file at level 9, unless it is packed already. Failures are reported to the user and leave the
// file as it was.
void ZipFileInPlace(CommandContext& context, const std::string& path);

} // namespace korvadex
