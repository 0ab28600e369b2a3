// Commands that change where a package of the Hangar lives, or tell who relies on it.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

#include <functional>
#include <string>

namespace korvadex {

// "the Hangar leads by a link to C:\FS\aircraft\Lear, ..." where the package's directory (ends in a backslash) belongs
// to the simulator or to Staging, "" elsewhere.
std::string DescribePlaceOfOthers(const CommandContext& context, const std::string& directory);

// An installed package is offered to removeFromSim first; either answer goes on. Directly before the deletion
// lastLook may keep the package, after a message of its own. True when the package has gone.
bool RemoveFromHangar(CommandContext& context, const std::function<void()>& removeFromSim,
                      const std::function<bool()>& lastLook = {});

// Refused for an aircraft when Staging holds one. removeFromHangar runs when the user wants that, after every
// file has been copied and counted; its lastLook tells whether all of that is still so.
void CopyToStaging(CommandContext& context, const LoadedPackage& package,
                   const std::function<void(const std::function<bool()>& lastLook)>& removeFromHangar);

// frmRename, unless the package is installed or another one of the Hangar uses its panel or sound. Gives the name that
// the package has afterwards.
std::string RenameInHangar(CommandContext& context, const LoadedPackage& package);

void CheckReferences(CommandContext& context);

// frmInstallStatus for the installed package.
void CheckInstalledGauges(CommandContext& context);

} // namespace korvadex
