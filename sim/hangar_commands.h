// The commands on the package of the Hangar that the main window shows.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"
#include "sim/aliases.h"
#include "sim/sim_usage.h"

#include <string>
#include <vector>

namespace korvadex {

enum HangarCommand : int {
    InstallPackage = 0,
    RemovePackageFromSim = 1,
    RemovePackageFromHangar = 2,
    RenameHangarPackage = 3,
    CreatePanelAlias = 4,
    CreateSoundAlias = 5,
    PastePanelAlias = 6,
    PasteSoundAlias = 7,
    RestoreOldPanel = 8,
    RestoreOldSound = 9,
    CheckPackageReferences = 11,
    CheckPackageGauges = 12,
    CopyPackageToStaging = 13,
    CompressShownPackage = 14,
    DecompressShownPackage = 15
};

// What the commands of the Hangar side know of each other.
struct HangarMemory {
    HeldAliases held;
    SimUsage* usage = nullptr; // during a batch of removals
};

// Carries out state.CommandCode on the shown package; a code without a command does nothing.
void RunHangarCommand(CommandContext& context, CommandState& state, HangarMemory& memory, LoadedPackage& package);

// "Done.", or what was not compressed or decompressed: the texts that CompressPackage gives.
void TellCompressed(CommandContext& context, const std::vector<std::string>& failures);

} // namespace korvadex
