// Commands that change where a package of the Hangar lives, or tell who relies on it.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

#include <functional>
#include <string>

namespace korvadex {

// An installed package is offered to removeFromSim first; either answer goes on.
void RemoveFromHangar(CommandContext& context, const std::function<void()>& removeFromSim);

// Refused for an aircraft when Staging holds one. removeFromHangar runs when the user wants that, after every file has been copied and counted.
void CopyToStaging(CommandContext& context, const LoadedPackage& package,
                   const std::function<void()>& removeFromHangar);

// frmRename, unless the package is installed or another one of the Hangar uses its panel or sound.
void RenameInHangar(CommandContext& context, const LoadedPackage& package);

void CheckReferences(CommandContext& context);

// frmInstallStatus for the installed package.
void CheckInstalledGauges(CommandContext& context);

} // namespace korvadex
