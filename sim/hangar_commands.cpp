#include "sim/hangar_commands.h"

#include "archive/compression.h"
#include "package/name_list.h"
#include "sim/hangar_package.h"
#include "sim/install.h"
#include "sim/remove.h"

namespace korvadex {

std::optional<std::vector<std::string>> CompressInHangar(CommandContext& context, const LoadedPackage& package,
                                                         bool compress) {
    if (compress && package.isCompressed && !HasFilesToPack(context, package.path))
        return std::nullopt;
    const std::string others = compress ? DescribePlaceOfOthers(context, package.path) : "";
    return others.empty() ? CompressPackage(context, package.path, compress)
                          : std::vector{package.path + " cannot be compressed: " + others};
}

void TellCompressed(CommandContext& context, const std::vector<std::string>& failures) {
    if (failures.empty())
        context.user.Tell("Done.");
    else
        context.user.Tell(
            ListNames(failures) +
                "\r\n\r\nWhat is named here was left alone.  Please run the command again when the cause is settled.",
            MessageIcon::Exclamation);
}

namespace {

Changes Compress(CommandContext& context, const LoadedPackage& package, bool compress) {
    const auto failures = CompressInHangar(context, package, compress);
    if (!failures)
        return {};
    TellCompressed(context, *failures);
    return {.package = true};
}

Changes Carry(CommandContext& context, HangarCommand CommandCode, const LoadedPackage& package, HeldAliases& held) {
    switch (CommandCode) {
    case InstallPackage:
        return InstallIntoSim(context, package);
    case RemovePackageFromSim:
        return RemoveFromSim(context, package).changes;
    case RemovePackageFromHangar:
        return RemoveFromHangar(context, package);
    case RenameHangarPackage:
        return RenameInHangar(context, package);
    case CreatePanelAlias:
        CreateAlias(context, "panel", package, held);
        break;
    case CreateSoundAlias:
        CreateAlias(context, "sound", package, held);
        break;
    case PastePanelAlias:
        return PasteAlias(context, "panel", package, held.HeldPanelAlias);
    case PasteSoundAlias:
        return PasteAlias(context, "sound", package, held.HeldSoundAlias);
    case RestoreOldPanel:
        return RestoreOldConfig(context, "panel", package);
    case RestoreOldSound:
        return RestoreOldConfig(context, "sound", package);
    case CheckPackageReferences:
        CheckReferences(context, package.ref);
        break;
    case CheckPackageGauges:
        CheckInstalledGauges(context, package.ref);
        break;
    case CopyPackageToStaging:
        return CopyToStaging(context, package);
    case CompressShownPackage:
    case DecompressShownPackage:
        return Compress(context, package, CommandCode == CompressShownPackage);
    default:
        break;
    }
    return {};
}

} // namespace

Changes RunHangarCommand(CommandContext& context, HangarCommand CommandCode, const LoadedPackage& package,
                         HeldAliases& held) {
    if (package.ref.IsNone()) {
        context.user.Tell("Please select a package first.", MessageIcon::Exclamation);
        return {};
    }
    const Changes changes = Carry(context, CommandCode, package, held);
    if (changes.renamed)
        held.FollowPackage(package.ref, *changes.renamed);
    return changes;
}

} // namespace korvadex
