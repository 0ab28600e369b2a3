// The commands on a package of the Hangar, by their codes.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"
#include "sim/aliases.h"

#include <optional>
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

// Carries out a command on the loaded package of the Hangar. The held aliases
// follow a package that is renamed or goes.
Changes RunHangarCommand(CommandContext& context, HangarCommand CommandCode, const LoadedPackage& package,
                         HeldAliases& held);

// Packs or unpacks the package's bitmaps and gauges. Gives what could not be, with the reason; nothing where there is
// nothing to pack.
std::optional<std::vector<std::string>> CompressInHangar(CommandContext& context, const LoadedPackage& package,
                                                         bool compress);
// "Done.", or what was not compressed or decompressed.
void TellCompressed(CommandContext& context, const std::vector<std::string>& failures);

} // namespace korvadex
