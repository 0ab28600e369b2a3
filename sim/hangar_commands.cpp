#include "sim/hangar_commands.h"

#include "sim/install.h"

namespace korvadex {

void RunHangarCommand(CommandContext& context, CommandState& state, LoadedPackage& package) {
    if (context.window.SelectedPackageText().empty()) {
        context.user.Tell("Please select a package first.", MessageIcon::Exclamation);
        return;
    }
    // The branches are tested one after another, not as a switch: one may change the command code and run the
    // processor again, so that a later branch sees the changed code. The order is 0, 1, 2, 13, 3, 4, 6, 8, 5,
    // 7, 9, 14, 15, 11, 12.
    if (state.CommandCode == InstallPackage)
        InstallIntoSim(context, package);
    if (state.CommandCode == RemovePackageFromSim)
        RemoveFromSim(context, state, package);
}

} // namespace korvadex
