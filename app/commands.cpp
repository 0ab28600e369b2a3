#include "app/commands.h"

#include "app/program.h"

#include <stdexcept>
#include <string>

namespace korvadex {

namespace {

constexpr Command FileCommands[] = {
    Command("mnuFileProcessZip", "Process &ZIP file into Staging", &Program::ProcessZipIntoStaging,
            {.shortcut = "Ctrl+O"}),
    Command("mnuFileProcessDirectory", "Process a &directory of ZIP files", &Program::ProcessArchiveDirectory),
    Command("mnuLastArchives", "Last &archives", nullptr,
            {.choices = &MainView::lastArchives, .choose = &Program::ProcessLastArchive}),
    Command("mnuGoToStaging", "Go to &Staging", &Program::GoToStaging, {.separator = "mnuSep25", .shortcut = "F7"}),
    Command("mnuGoToHangar", "&Go to Hangar", &Program::GoToHangar, {.shortcut = "F8"}),
    Command("mnuLocations", "&Locations", &Program::ChangeLocations, {.separator = "mnuSep26"}),
    Command("mnuLocationProfiles", "Location &profiles", &Program::EditLocationProfiles),
    Command("mnuHistory", "&History", &Program::ShowHistory),
    Command("mnuExit", "&Exit", &Program::Shutdown),
};

constexpr Command ToolsCommands[] = {
    Command("mnuAllPackages", "&List all packages in Hangar", &Program::ListAllPackages,
            {.key = "ListAllPackages", .toolTip = "List all packages in Hangar"}),
    Command("mnuInstalledPackages", "List packages &installed in MSFS", &Program::ListInstalledPackages,
            {.key = "ListInstalledPackages", .toolTip = "List packages installed in MSFS"}),
    Command("mnuPackagesNoImages", "List packages with &no images", &Program::ListPackagesNoImages),
    Command("mnuUnusedGauges", "List &unused gauges in MSFS gauges directory", &Program::ShowUnusedGauges,
            {.separator = "mnuSep17", .key = "UnusedGauges", .toolTip = "List unused gauges in MSFS gauges directory"}),
    Command("mnuPhotosByCategory", "&Photo gallery for packages in category", &Program::ShowPhotosByCategory,
            {.separator = "mnuSep1",
             .key = "PhotoGalleryCategory",
             .toolTip = "Photo gallery for packages in category",
             .needs = NeedsHangarSide}),
    Command("mnuPhotosForAll", "Photo &gallery for all packages", &Program::ShowPhotosForAll,
            {.key = "PhotoGalleryAll", .toolTip = "Photo gallery for all packages", .needs = NeedsHangarSide}),
    Command("mnuCompressAll", "&Compress all packages", &Program::CompressAll,
            {.separator = "mnuSep2", .needs = NeedsAnyPackage}),
    Command("mnuDecompressAll", "&Decompress all packages", &Program::DecompressAll, {.needs = NeedsAnyPackage}),
    Command("mnuUninstallCategory", "Uninstall packages in current category &from MSFS", &Program::UninstallCategory,
            {.separator = "mnuSep3", .needs = NeedsAnyPackage}),
    Command("mnuUninstallAll", "Uninstall &all packages from MSFS", &Program::UninstallAll, {.needs = NeedsAnyPackage}),
    Command("mnuCollection", "&Show collection", &Program::ToggleCollection,
            {.separator = "mnuSep22", .shortcut = "F9", .tick = &MainView::isCollectionShown}),
    Command("mnuTakeNext", "Ta&ke the next archive of the queue", &Program::TakeNextArchive,
            {.separator = "mnuSep23", .shortcut = "Ctrl+N", .needs = NeedsQueued}),
    Command("mnuTakeAll", "&Take all archives that need no question", &Program::TakeAllArchives,
            {.needs = NeedsQueued}),
    Command("mnuRunMSFS", "&Run Flight Simulator", &Program::StartSimulator,
            {.separator = "mnuSep4", .key = "RunMSFS", .toolTip = "Run Flight Simulator"}),
};

constexpr CommandExtras UndoExtras = {.shortcut = "Ctrl+Z", .object = &MainView::undoText};
constexpr CommandExtras RedoExtras = {.shortcut = "Ctrl+Y", .object = &MainView::redoText};

constexpr Command StagingCommands[] = {
    Command("mnuStagingUndo", "&Undo", &Program::UndoLast, UndoExtras),
    Command("mnuStagingRedo", "Redo", &Program::RedoLast, RedoExtras),
    Command("mnuStagingToHangar", "Copy package to &Hangar", &Program::CopyStagingToHangar,
            {.separator = "mnuSep20",
             .CommandCode = 0,
             .shortcut = "Ctrl+H",
             .key = "Install",
             .toolTip = "Copy packge to Hangar",
             .needs = NeedsStagedFiles}),
    Command("mnuProcessZipFile", "Process &ZIP file into Staging", &Program::ProcessZipIntoStaging,
            {.separator = "mnuSep5",
             .CommandCode = 1,
             .key = "ProcessZip",
             .toolTip = "Process ZIP file into Staging",
             .hasButtonOnBothSides = true}),
    Command("mnuProcessZipDirectory", "Process a &directory of ZIP files", &Program::ProcessArchiveDirectory),
    Command("mnuImportFromMSFS", "Import package from &MSFS", &Program::ImportIntoStaging,
            {.separator = "mnuSep6",
             .CommandCode = 2,
             .key = "ImportFromMSFS",
             .toolTip = "Import package from MSFS",
             .hasButtonOnBothSides = true}),
    Command("mnuRemoveStaging", "&Remove all from Staging", &Program::RemoveAllFromStaging,
            {.separator = "mnuSep7",
             .CommandCode = 4,
             .key = "RemovePackage",
             .toolTip = "Remove all from Staging",
             .needs = NeedsStagedFiles}),
    Command("mnuRemovePanelFromStaging", "Remove &panel from Staging", &Program::RemovePanelFromStaging,
            {.CommandCode = 5, .needs = NeedsStagedFiles}),
    Command("mnuRemoveAircraftFromStaging", "Remove &aircraft from Staging", &Program::RemoveAircraftFromStaging,
            {.CommandCode = 6, .needs = NeedsStagedFiles}),
    Command("mnuRemoveSoundFromStaging", "Remove &sound from Staging", &Program::RemoveSoundFromStaging,
            {.CommandCode = 7, .needs = NeedsStagedFiles}),
};

constexpr Command HangarCommands[] = {
    Command("mnuHangarUndo", "Undo", &Program::UndoLast, UndoExtras), // "Restore old sound" has the letter
    Command("mnuHangarRedo", "Redo", &Program::RedoLast, RedoExtras),
    Command("mnuHangarToMsfs", "&Copy package to MSFS", &Program::InstallPackage,
            {.separator = "mnuSep21",
             .CommandCode = 0,
             .shortcut = "Ctrl+I",
             .key = "Install",
             .toolTip = "Copy package to MSFS",
             .needs = NeedsPackage | NeedsNotInstalled}),
    Command("mnuRemoveFromMsfs", "&Remove package from MSFS", &Program::RemovePackageFromSim,
            {.separator = "mnuSep8",
             .CommandCode = 1,
             .shortcut = "Ctrl+U",
             .key = "Uninstall",
             .toolTip = "Remove package from MSFS",
             .needs = NeedsPackage | NeedsInstalled}),
    Command("mnuRemoveFromHangar", "Remove package from &Hangar", &Program::RemovePackageFromHangar,
            {.CommandCode = 2, .key = "RemovePackage", .toolTip = "Remove package from Hangar", .needs = NeedsPackage}),
    Command("mnuRename", "Re&name package and/or aircraft", &Program::RenamePackage,
            {.separator = "mnuSep9", .CommandCode = 3, .needs = NeedsPackage}),
    Command("mnuCreatePanelAlias", "Create &panel alias", &Program::CreatePanelAlias,
            {.separator = "mnuSep10", .CommandCode = 4, .needs = NeedsPackage}),
    Command("mnuPastePanelAlias", "Paste panel &alias", &Program::PastePanelAlias,
            {.CommandCode = 6, .needs = NeedsPackage | NeedsPanelLender}),
    Command("mnuRestoreOldPanel", "Restore &old panel", &Program::RestoreOldPanel,
            {.CommandCode = 8, .needs = NeedsPackage}),
    Command("mnuCreateSoundAlias", "Create &sound alias", &Program::CreateSoundAlias,
            {.separator = "mnuSep11", .CommandCode = 5, .needs = NeedsPackage}),
    Command("mnuPasteSoundAlias", "Past&e sound alias", &Program::PasteSoundAlias,
            {.CommandCode = 7, .needs = NeedsPackage | NeedsSoundLender}),
    Command("mnuRestoreOldSound", "Restore old so&und", &Program::RestoreOldSound,
            {.CommandCode = 9, .needs = NeedsPackage}),
    Command("mnuCheckRefs", "Check aliases &to package", &Program::CheckPackageReferences,
            {.separator = "mnuSep14", .CommandCode = 11, .needs = NeedsPackage}),
    Command("mnuGaugeCrosscheck", "Check &gauges for package", &Program::CheckPackageGauges,
            {.CommandCode = 12, .needs = NeedsPackage | NeedsInstalled}),
    Command("mnuCopyToStaging", "Cop&y package to Staging", &Program::CopyPackageToStaging,
            {.separator = "mnuSep15", .CommandCode = 13, .needs = NeedsPackage}),
    Command("mnuCompress", "Co&mpress package", &Program::CompressShownPackage,
            {.separator = "mnuSep16",
             .CommandCode = 14,
             .key = "Compress",
             .toolTip = "Compress package",
             .hasButtonOnBothSides = true,
             .needs = NeedsPackage}),
    Command("mnuDecompress", "&Decompress Package", &Program::DecompressShownPackage,
            {.CommandCode = 15,
             .key = "Decompress",
             .toolTip = "Decompress package",
             .hasButtonOnBothSides = true,
             .needs = NeedsPackage}),
};

constexpr Command DataCommands[] = {
    Command("mnuCreateNotes", "&Create package notes", &Program::CreatePackageNotes, {.needs = NeedsShown}),
    Command("mnuDeleteNotes", "&Delete package notes", &Program::DeletePackageNotes, {.needs = NeedsShown}),
    Command("mnuReadNotes", "&Read package notes", &Program::ReadPackageNotes,
            {.key = "ReadNotes", .toolTip = "Read package notes", .needs = NeedsShown}),
    Command("mnuImportImageClipboard", "Import &screenshot for package", &Program::ImportImageClipboard,
            {.separator = "mnuSep18", .needs = NeedsShown}),
    Command("mnuImportImage", "Import image &file for package", &Program::ImportImageFiles, {.needs = NeedsShown}),
    Command("mnuInformation", "FS2002 &Information", &Program::EditInformation,
            {.separator = "mnuSep19", .key = "Information", .toolTip = "FS2002 Information", .needs = NeedsShown}),
};

constexpr Command HelpCommands[] = {
    Command("mnuHelpOnSide", "&Help on this side", &Program::OpenHelpOnSide, {.shortcut = "F1"}),
    Command("mnuReadMe", "&Read me", &Program::OpenReadMe),
    Command("mnuAbout", "&About Korvadex", &Program::ShowAbout),
};

constexpr Menu Menus[] = {
    {"mnuFile", "&File", {}, FileCommands},
    {"mnuTools", "&Tools", {}, ToolsCommands},
    {"mnuStagingOptions", "&Options", Side::Staging, StagingCommands},
    {"mnuHangarOptions", "&Options", Side::Hangar, HangarCommands},
    {"mnuNotes", "&Data", {}, DataCommands},
    {"mnuHelp", "He&lp", {}, HelpCommands},
};

constexpr PackageCommand ForPackages[] = {
    {"mnuInstallEach", "&Copy to MSFS", &Program::InstallEach, "Ctrl+I", nullptr, NeedsNotInstalled},
    {"mnuRemoveEach", "&Remove from MSFS", &Program::RemoveEach, "Ctrl+U", nullptr, NeedsInstalled},
    {"mnuCheckGaugesOfEach", "Check &gauges", &Program::CheckGaugesOfEach, "", "mnuSepEach1", NeedsInstalled},
    {"mnuCheckRefsOfEach", "Check aliases &to", &Program::CheckReferencesOfEach},
    {"mnuCompressEach", "Co&mpress", &Program::CompressEach, "", "mnuSepEach2"},
    {"mnuDecompressEach", "&Decompress", &Program::DecompressEach},
    {"mnuDeleteEach", "Remove from &Hangar", &Program::DeleteEach, "Del", "mnuSepEach3"},
};

constexpr PackageCommand ForOnePackage = {"mnuRenameOne", "Re&name", &Program::RenameOne, "F2"};

constexpr const char* Keys[] = {
    "ListAllPackages",
    "ListInstalledPackages",
    "",
    "PhotoGalleryCategory",
    "PhotoGalleryAll",
    "",
    "UnusedGauges",
    "",
    "ProcessZip",
    "ImportFromMSFS",
    "",
    "Decompress",
    "Compress",
    "",
    "Install",
    "Uninstall",
    "RemovePackage",
    "",
    "RunMSFS",
    "",
    "ReadNotes",
    "Information",
};

} // namespace

std::span<const Menu> MainMenus() {
    return Menus;
}

std::span<const PackageCommand> PackageCommands() {
    return ForPackages;
}

const PackageCommand& RenameCommand() {
    return ForOnePackage;
}

std::span<const char* const> ToolbarKeys() {
    return Keys;
}

bool CanWork(const Command& command, const MainView& view) {
    const CommandExtras& extras = command.extras;
    return (extras.needs & ~view.present) == 0 && !(extras.object && (view.*extras.object).empty()) &&
           !(extras.choices && (view.*extras.choices).empty());
}

const Command& CommandOfEntry(std::string_view entry) {
    for (const Menu& menu : Menus)
        for (const Command& command : menu.commands)
            if (command.entry == entry)
                return command;
    throw std::invalid_argument("no command is called " + std::string(entry));
}

const Command* CommandOfKey(std::string_view key, Side side) {
    for (const Menu& menu : Menus)
        for (const Command& command : menu.commands) {
            const auto& extras = command.extras;
            if (!key.empty() && extras.key == key && (menu.side.value_or(side) == side || extras.hasButtonOnBothSides))
                return &command;
        }
    return nullptr;
}

} // namespace korvadex
