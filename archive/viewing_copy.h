// Looking with other programs at a file that is kept packed.
#pragma once

#include "package/command_context.h"

#include <string>

namespace korvadex {

// The path of an unpacked, read-only copy of a packed bitmap or gauge, under its own name; it stays, as the
// other program may still read it, until the next start clears it away. The path itself when the file is not
// packed; "" after a message when no copy could be made.
std::string MakeViewingCopy(CommandContext& context, const std::string& path);

} // namespace korvadex
