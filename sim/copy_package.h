// Copying the loaded package, group by group, into the Hangar, the simulator or Staging.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"
#include "sim/copy_plan.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace korvadex {

// What was not listed in full cannot be copied in full, and a copy is often followed by a deletion. False, after a
// message, when the package can be copied nowhere.
bool CheckCopySource(CommandContext& context, const LoadedPackage& package);

// Copies to a directory of this name in one of the three locations: "Jets\Lear" in the Hangar; "My Lear" among the
// aircraft of Staging, and among those of the simulator, where it gets "_" for blanks. Gives the new directory (ends in
// a backslash), which appears whole or not at all; none, after a message, when it was refused or failed. Before it
// appears it is handed to adapt, under the name of its own that it has until then.
std::optional<std::string> CopyPackageTo(CommandContext& context, const LoadedPackage& package, CopyRoot root,
                                         std::string_view name,
                                         const std::function<void(const std::string& directory)>& adapt = {});

// The full path of a file such as "\panel\panel.cfg" inside the installed directory of a package; "" when the
// package is not installed or has no such file.
std::string GetInstalledFile(const FileSystem& files, const Locations& locations, const std::string& package,
                             const std::string& relative);

} // namespace korvadex
