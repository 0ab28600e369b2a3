// Copying the loaded package, group by group, into the Hangar, the simulator or Staging.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

#include <functional>
#include <string>

namespace korvadex {

// What was not listed in full cannot be copied in full, and a copy is often followed by a deletion. False, after a
// message, when the package can be copied nowhere.
bool CheckCopySource(CommandContext& context, const LoadedPackage& package);

// Copies to the directory `destination` (below one of the three locations), which comes back as it was used:
// under MSFS with
// "_" for blanks, with a trailing backslash. The new directory appears whole or not at all. False, after a
// message, when it was refused or failed. Before it appears it is handed to adapt, under the name of its own that it
// has until then.
bool CopyPackageTo(CommandContext& context, const LoadedPackage& package, std::string& destination,
                   const std::function<void(const std::string& directory)>& adapt = {});

// The full path of a file such as "\panel\panel.cfg" inside the installed directory of a package; "" when the
// package is not installed or has no such file.
std::string GetInstalledFile(const FileSystem& files, const Locations& locations, const std::string& package,
                             const std::string& relative);

} // namespace korvadex
