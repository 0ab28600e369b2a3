// Commands that change where a package of the Hangar lives, or tell who relies on it.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"
#include "sim/config_usage.h"

#include <functional>
#include <string>

namespace korvadex {

// "the Hangar leads by a link to C:\FS\aircraft\Lear, ..." where the package's directory (ends in a backslash) belongs
// to the simulator or to Staging, "" elsewhere.
std::string DescribePlaceOfOthers(const CommandContext& context, const std::string& directory);

// An installed package is offered to be removed from the simulator first; either answer goes on. Directly before the
// deletion lastLook may keep the package, after a message of its own. known: it is one of many, who uses what in the
// Hangar was found out for all of them, and what is asked about every one was asked.
Changes RemoveFromHangar(CommandContext& context, const LoadedPackage& package,
                         const std::function<bool()>& lastLook = {}, const ConfigUsage* known = nullptr);

// Refused for an aircraft when Staging holds one. The package is removed from the Hangar when the user wants that,
// after every file has been copied and counted, and while all of that is still so.
Changes CopyToStaging(CommandContext& context, const LoadedPackage& package);

// frmRename, unless the package is installed or another one of the Hangar uses its panel or sound.
Changes RenameInHangar(CommandContext& context, const LoadedPackage& package);

// Lists who uses the package's panel or sound via alias; as one of many both, and nothing is said when nobody does.
// False when it could not be found out.
bool CheckReferences(CommandContext& context, const PackageRef& package, const ConfigUsage* known = nullptr);

// frmInstallStatus for the installed package. False, after a message, when there is nothing to check, or it cannot be
// read.
bool CheckInstalledGauges(CommandContext& context, const PackageRef& package);

} // namespace korvadex
