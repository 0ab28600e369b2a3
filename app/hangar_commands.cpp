// The commands on the package of the Hangar that is shown.
#include "app/program.h"
#include "sim/hangar_compression.h"
#include "sim/hangar_package.h"
#include "sim/install.h"
#include "sim/remove.h"

namespace korvadex {

bool Program::IsPackageReady(std::initializer_list<Place> alsoNeeded, bool asItIsNow) {
    if (!view.HangarSideShown || !IsShownThere(alsoNeeded))
        return false;
    if (asItIsNow)
        ReloadWhenChanged();
    if (package.ref.IsNone())
        user.Tell("Please select a package first.", MessageIcon::Exclamation);
    return !package.ref.IsNone();
}

void Program::RunHangarCommand(std::initializer_list<Place> alsoNeeded, const std::function<Changes()>& command) {
    Run([&] {
        if (!IsPackageReady(alsoNeeded))
            return;
        const Changes changes = command();
        if (changes.renamed)
            held.FollowPackage(package.ref, *changes.renamed);
        ShowChanges(changes);
    });
}

void Program::InstallPackage() {
    RunHangarCommand({Place::Simulator}, [&] { return InstallIntoSim(context, package); });
}

void Program::RemovePackageFromSim() {
    Run([&] {
        if (IsPackageReady({Place::Simulator}, false))
            ShowChanges(RemoveFromSim(context, package).changes);
    });
}

void Program::RemovePackageFromHangar() {
    RunHangarCommand({Place::Simulator}, [&] { return RemoveFromHangar(context, package); });
}

void Program::RenamePackage() {
    RunHangarCommand({Place::Simulator}, [&] { return RenameInHangar(context, package); });
}

void Program::CopyPackageToStaging() {
    RunHangarCommand({Place::Simulator}, [&] { return CopyToStaging(context, package); });
}

void Program::CreatePanelAlias() {
    RunHangarCommand({}, [&] {
        CreateAlias(context, "panel", package, held);
        return Changes();
    });
}

void Program::CreateSoundAlias() {
    RunHangarCommand({}, [&] {
        CreateAlias(context, "sound", package, held);
        return Changes();
    });
}

void Program::PastePanelAlias() {
    RunHangarCommand({Place::Simulator}, [&] { return PasteAlias(context, "panel", package, held.HeldPanelAlias); });
}

void Program::PasteSoundAlias() {
    RunHangarCommand({Place::Simulator}, [&] { return PasteAlias(context, "sound", package, held.HeldSoundAlias); });
}

void Program::RestoreOldPanel() {
    RunHangarCommand({Place::Simulator}, [&] { return RestoreOldConfig(context, "panel", package); });
}

void Program::RestoreOldSound() {
    RunHangarCommand({Place::Simulator}, [&] { return RestoreOldConfig(context, "sound", package); });
}

void Program::CheckPackageReferences() {
    RunHangarCommand({}, [&] {
        CheckReferences(context, package.ref);
        return Changes();
    });
}

void Program::CheckPackageGauges() {
    RunHangarCommand({Place::Simulator}, [&] {
        CheckInstalledGauges(context, package.ref);
        return Changes();
    });
}

void Program::CompressShownPackage() {
    Compress(true);
}

void Program::DecompressShownPackage() {
    Compress(false);
}

void Program::Compress(bool compress) {
    Run([&] {
        EnsureHangarSide();
        if (!IsPackageReady())
            return;
        if (const auto failures = CompressInHangar(context, package, compress)) {
            TellCompressed(context, *failures);
            ShowChanges({.package = true});
        }
    });
}

} // namespace korvadex
