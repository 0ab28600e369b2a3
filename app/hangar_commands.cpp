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

void Program::RunHangarCommand(const std::string& name, std::initializer_list<Place> alsoNeeded,
                               const std::function<Changes()>& command) {
    Run(Titled(name), [&] {
        LetStop();
        if (!IsPackageReady(alsoNeeded))
            return;
        const Changes changes = command();
        if (changes.renamed)
            held.FollowPackage(package.ref, *changes.renamed);
        if (changes.renamed && !changes.renamed->IsNone())
            FollowInHangar(package.ref.Text(), changes.renamed->Text());
        ShowChanges(changes);
    });
}

void Program::LookAtPackage(std::initializer_list<Place> alsoNeeded, const std::function<void()>& command) {
    Run(Titled(""), [&] {
        LetStop();
        if (IsPackageReady(alsoNeeded))
            command();
    });
}

void Program::InstallPackage() {
    RunHangarCommand("Install", {Place::Simulator}, [&] { return InstallIntoSim(context, package); });
}

void Program::RemovePackageFromSim() {
    Run(Titled("Remove from MSFS"), [&] {
        LetStop();
        if (IsPackageReady({Place::Simulator}, false))
            ShowChanges(RemoveFromSim(context, package).changes);
    });
}

void Program::RemovePackageFromHangar() {
    RunHangarCommand("Remove from Hangar", {Place::Simulator}, [&] { return RemoveFromHangar(context, package); });
}

void Program::RenamePackage() {
    RunHangarCommand("Rename", {Place::Simulator}, [&] { return RenameInHangar(context, package); });
}

void Program::CopyPackageToStaging() {
    RunHangarCommand("Copy to Staging", {Place::Simulator}, [&] { return CopyToStaging(context, package); });
}

void Program::CreatePanelAlias() {
    LookAtPackage({}, [&] { CreateAlias(context, "panel", package, held); });
}

void Program::CreateSoundAlias() {
    LookAtPackage({}, [&] { CreateAlias(context, "sound", package, held); });
}

void Program::PastePanelAlias() {
    RunHangarCommand("Paste panel alias", {Place::Simulator},
                     [&] { return PasteAlias(context, "panel", package, held.HeldPanelAlias); });
}

void Program::PasteSoundAlias() {
    RunHangarCommand("Paste sound alias", {Place::Simulator},
                     [&] { return PasteAlias(context, "sound", package, held.HeldSoundAlias); });
}

void Program::RestoreOldPanel() {
    RunHangarCommand("Restore panel", {Place::Simulator}, [&] { return RestoreOldConfig(context, "panel", package); });
}

void Program::RestoreOldSound() {
    RunHangarCommand("Restore sound", {Place::Simulator}, [&] { return RestoreOldConfig(context, "sound", package); });
}

void Program::CheckPackageReferences() {
    LookAtPackage({}, [&] { CheckReferences(context, package.ref); });
}

void Program::CheckPackageGauges() {
    LookAtPackage({Place::Simulator}, [&] { CheckInstalledGauges(context, package.ref); });
}

void Program::CompressShownPackage() {
    Compress("Compress", true);
}

void Program::DecompressShownPackage() {
    Compress("Decompress", false);
}

void Program::Compress(const std::string& name, bool compress) {
    Run({name, "", compress ? Repacking::Packs : Repacking::Unpacks}, [&] {
        EnsureHangarSide();
        LetStop();
        if (!IsPackageReady())
            return;
        SetSubject(package.ref.Text());
        Compression compression(context, compress, {package.path});
        if (const auto failures = CompressInHangar(context, package, compression)) {
            TellCompressed(context, *failures);
            ShowChanges({.package = true});
        }
    });
}

} // namespace korvadex
