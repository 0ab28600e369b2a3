// Giving a package of the Hangar another name, and its aircraft another title in the simulator.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

#include <functional>
#include <string>

namespace korvadex {

// frmRename: what its fields hold when it comes up.
struct RenameEntry {
    std::string packageName, aircraftTitle;
};
struct RenameForm {
    RenameEntry entry;
    bool hasTitle = true; // false: the title field is disabled
    // cmdAccept with what the fields hold. True closes the dialog; false leaves it open, after a message.
    std::function<bool(const RenameEntry& entered)> accept;
};

// Shows frmRename for the package, and carries out what was entered: both the name and the title, or neither. Nothing
// takes the place of an existing directory.
Changes RenamePackage(CommandContext& context, const LoadedPackage& package);

} // namespace korvadex
