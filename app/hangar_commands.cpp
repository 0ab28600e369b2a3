// The commands on the package of the Hangar that is shown.
#include "app/program.h"

#include <algorithm>

namespace korvadex {

namespace {

// Those that ask whether the package is installed, or work in the simulator.
bool NeedsSimulator(HangarCommand command) {
    constexpr HangarCommand others[] = {CreatePanelAlias, CreateSoundAlias, CheckPackageReferences,
                                        CompressShownPackage, DecompressShownPackage};
    return std::ranges::find(others, command) == std::end(others);
}

} // namespace

void Program::RunOnPackage(HangarCommand command, bool goesThere) {
    Run([&] {
        if (goesThere)
            EnsureHangarSide();
        if (!view.HangarSideShown || !(NeedsSimulator(command) ? IsShownThere({Place::Simulator}) : IsShownThere()))
            return;
        if (command != HangarCommand::RemovePackageFromSim)
            ReloadWhenChanged(); // what a command copies, writes or deletes must be what is there
        ShowChanges(RunHangarCommand(context, command, package, held));
    });
}

void Program::InstallPackage() {
    RunOnPackage(HangarCommand::InstallPackage);
}

void Program::RemovePackageFromSim() {
    RunOnPackage(HangarCommand::RemovePackageFromSim);
}

void Program::RemovePackageFromHangar() {
    RunOnPackage(HangarCommand::RemovePackageFromHangar);
}

void Program::RenamePackage() {
    RunOnPackage(HangarCommand::RenameHangarPackage);
}

void Program::CreatePanelAlias() {
    RunOnPackage(HangarCommand::CreatePanelAlias);
}

void Program::PastePanelAlias() {
    RunOnPackage(HangarCommand::PastePanelAlias);
}

void Program::RestoreOldPanel() {
    RunOnPackage(HangarCommand::RestoreOldPanel);
}

void Program::CreateSoundAlias() {
    RunOnPackage(HangarCommand::CreateSoundAlias);
}

void Program::PasteSoundAlias() {
    RunOnPackage(HangarCommand::PasteSoundAlias);
}

void Program::RestoreOldSound() {
    RunOnPackage(HangarCommand::RestoreOldSound);
}

void Program::CheckPackageReferences() {
    RunOnPackage(HangarCommand::CheckPackageReferences);
}

void Program::CheckPackageGauges() {
    RunOnPackage(HangarCommand::CheckPackageGauges);
}

void Program::CopyPackageToStaging() {
    RunOnPackage(HangarCommand::CopyPackageToStaging);
}

void Program::CompressShownPackage() {
    RunOnPackage(HangarCommand::CompressShownPackage, true);
}

void Program::DecompressShownPackage() {
    RunOnPackage(HangarCommand::DecompressShownPackage, true);
}

} // namespace korvadex
