#include "sim/hangar_commands.h"

#include "archive/compression.h"
#include "package/file_primitives.h"
#include "package/name_list.h"
#include "sim/hangar_package.h"
#include "sim/install.h"

namespace korvadex {

namespace {

std::string ShownDirectory(const CommandContext& context) {
    return context.locations.HangarDir + context.window.SelectedCategory() + "\\" + CurrentPackageName(context.window) +
           "\\";
}

void CompressShown(CommandContext& context, CommandState& state, bool compress) {
    const std::string directory = ShownDirectory(context);
    const std::string others = compress ? DescribePlaceOfOthers(context, directory) : "";
    const auto failures = others.empty() ? CompressPackage(context, directory, compress)
                                         : std::vector{directory + " cannot be compressed: " + others};
    if (state.BatchMode)
        state.notCompressed.insert(state.notCompressed.end(), failures.begin(), failures.end());
    else
        TellCompressed(context, failures);
    context.window.RefreshPackageDisplay();
}

} // namespace

void TellCompressed(CommandContext& context, const std::vector<std::string>& failures) {
    if (failures.empty())
        context.user.Tell("Done.");
    else
        context.user.Tell(
            ListNames(failures) +
                "\r\n\r\nWhat is named here was left alone.  Please run the command again when the cause is settled.",
            MessageIcon::Exclamation);
}

void RunHangarCommand(CommandContext& context, CommandState& state, HangarMemory& memory, LoadedPackage& package) {
    if (context.window.SelectedPackageText().empty()) {
        context.user.Tell("Please select a package first.", MessageIcon::Exclamation);
        return;
    }
    const auto runAgainAs = [&](HangarCommand command) {
        return [&, command] {
            state.CommandCode = command;
            RunHangarCommand(context, state, memory, package);
        };
    };
    const std::string name = CurrentPackageName(context.window);
    const auto removeFromHangar = [&](const std::function<bool()>& lastLook) {
        if (RemoveFromHangar(context, runAgainAs(RemovePackageFromSim), lastLook))
            memory.held.FollowPackage(name, "");
    };
    const auto paste = [&](const std::string& kind) {
        PasteAlias(context, kind, package, memory.held.Of(kind));
        context.window.RefreshPackageDisplay();
    };
    const auto restore = [&](const std::string& kind) {
        RestoreOldConfig(context, kind, package);
        context.window.RefreshPackageDisplay();
    };

    // The branches are tested one after another, not as a switch: one may change the command code and run the
    // processor again, so that a later branch sees the changed code. The order is 0, 1, 2, 13, 3, 4, 6, 8, 5,
    // 7, 9, 14, 15, 11, 12.
    if (state.CommandCode == InstallPackage)
        InstallIntoSim(context, package);
    if (state.CommandCode == RemovePackageFromSim)
        RemoveFromSim(context, state, package, memory.usage);
    if (state.CommandCode == RemovePackageFromHangar)
        removeFromHangar({});
    if (state.CommandCode == CopyPackageToStaging)
        CopyToStaging(context, package, removeFromHangar);
    if (state.CommandCode == RenameHangarPackage)
        memory.held.FollowPackage(name, RenameInHangar(context, package));
    if (state.CommandCode == CreatePanelAlias)
        CreateAlias(context, "panel", package, memory.held);
    if (state.CommandCode == PastePanelAlias)
        paste("panel");
    if (state.CommandCode == RestoreOldPanel)
        restore("panel");
    if (state.CommandCode == CreateSoundAlias)
        CreateAlias(context, "sound", package, memory.held);
    if (state.CommandCode == PasteSoundAlias)
        paste("sound");
    if (state.CommandCode == RestoreOldSound)
        restore("sound");
    if (state.CommandCode == CompressShownPackage &&
        (!package.isCompressed || HasFilesToPack(context, ShownDirectory(context))))
        CompressShown(context, state, true);
    if (state.CommandCode == DecompressShownPackage)
        CompressShown(context, state, false);
    if (state.CommandCode == CheckPackageReferences)
        CheckReferences(context);
    if (state.CommandCode == CheckPackageGauges)
        CheckInstalledGauges(context);
}

} // namespace korvadex
