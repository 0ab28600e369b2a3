#include "ui/menus.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include <optional>

namespace korvadex {

namespace {

// A top-level menu has no caption of an entry; an entry whose caption is "-" is a separator.
struct Row {
    const char* name;
    const char* caption;
    std::optional<int> code = std::nullopt;
    const char* shortcut = ""; // works while the entry's menu is visible
};
struct Branch {
    Row menu;
    std::optional<Side> processor; // of the codes
    std::vector<Row> entries;
};

std::vector<Branch> MenuTree() {
    return {
        {{"mnuFile", "&File"},
         {},
         {{"mnuLocations", "&Locations"}, {"mnuLocationProfiles", "Location &profiles"}, {"mnuExit", "&Exit"}}},
        {{"mnuTools", "&Tools"},
         {},
         {{"mnuAllPackages", "&List all packages in Hangar"},
          {"mnuInstalledPackages", "List packages &installed in MSFS"},
          {"mnuPackagesNoImages", "List packages with &no images"},
          {"mnuSep17", "-"},
          {"mnuUnusedGauges", "List &unused gauges in MSFS gauges directory"},
          {"mnuSep1", "-"},
          {"mnuPhotosByCategory", "&Photo gallery for packages in category"},
          {"mnuPhotosForAll", "Photo &gallery for all packages"},
          {"mnuSep2", "-"},
          {"mnuCompressAll", "&Compress all packages"},
          {"mnuDecompressAll", "&Decompress all packages"},
          {"mnuSep3", "-"},
          {"mnuUninstallCategory", "Uninstall packages in current category &from MSFS"},
          {"mnuUninstallAll", "Uninstall &all packages from MSFS"},
          {"mnuSep4", "-"},
          {"mnuRunMSFS", "&Run Flight Simulator"}}},
        {{"mnuStagingOptions", "&Options"},
         Side::Staging,
         {{"mnuStagingToHangar", "Copy package to &Hangar", 0},
          {"mnuSep5", "-"},
          {"mnuProcessZipFile", "Process &ZIP file into Staging", 1, "Ctrl+O"},
          {"mnuSep6", "-"},
          {"mnuImportFromMSFS", "Import package from &MSFS", 2},
          {"mnuSep7", "-"},
          {"mnuRemoveStaging", "&Remove all from Staging", 4},
          {"mnuRemovePanelFromStaging", "Remove &panel from Staging", 5},
          {"mnuRemoveAircraftFromStaging", "Remove &aircraft from Staging", 6},
          {"mnuRemoveSoundFromStaging", "Remove &sound from Staging", 7}}},
        {{"mnuHangarOptions", "&Options"},
         Side::Hangar,
         {{"mnuHangarToMsfs", "&Copy package to MSFS", 0, "Ctrl+I"},
          {"mnuSep8", "-"},
          {"mnuRemoveFromMsfs", "&Remove package from MSFS", 1, "Ctrl+U"},
          {"mnuRemoveFromHangar", "Remove package from &Hangar", 2},
          {"mnuSep9", "-"},
          {"mnuRename", "Re&name package and/or aircraft", 3},
          {"mnuSep10", "-"},
          {"mnuCreatePanelAlias", "Create &panel alias", 4},
          {"mnuPastePanelAlias", "Paste panel &alias", 6},
          {"mnuRestoreOldPanel", "Restore &old panel", 8},
          {"mnuSep11", "-"},
          {"mnuCreateSoundAlias", "Create &sound alias", 5},
          {"mnuPasteSoundAlias", "Past&e sound alias", 7},
          {"mnuRestoreOldSound", "Restore old so&und", 9},
          {"mnuSep14", "-"},
          {"mnuCheckRefs", "Check aliases &to package", 11},
          {"mnuGaugeCrosscheck", "Check &gauges for package", 12},
          {"mnuSep15", "-"},
          {"mnuCopyToStaging", "Cop&y package to Staging", 13},
          {"mnuSep16", "-"},
          {"mnuCompress", "Co&mpress package", 14},
          {"mnuDecompress", "&Decompress Package", 15}}},
        {{"mnuNotes", "&Data"},
         {},
         {{"mnuCreateNotes", "&Create package notes"},
          {"mnuDeleteNotes", "&Delete package notes"},
          {"mnuReadNotes", "&Read package notes"},
          {"mnuSep18", "-"},
          {"mnuImportImageClipboard", "Import &screenshot for package"},
          {"mnuImportImage", "Import image &file for package"},
          {"mnuSep19", "-"},
          {"mnuInformation", "FS2002 &Information"}}},
        {{"mnuHelp", "He&lp"}, {}, {{"mnuReadMe", "&Read me"}, {"mnuAbout", "&About Korvadex"}}},
    };
}

} // namespace

Menus::Menus(QMenuBar* bar) : QObject(bar) {
    for (const Branch& branch : MenuTree()) {
        QMenu* menu = bar->addMenu(branch.menu.caption);
        menu->setObjectName(branch.menu.name);
        for (const Row& row : branch.entries) {
            const bool isSeparator = QString(row.caption) == "-";
            QAction* entry = isSeparator ? menu->addSeparator() : menu->addAction(row.caption);
            entry->setObjectName(row.name);
            if (isSeparator)
                continue;
            entry->setShortcut(QKeySequence(row.shortcut));
            if (row.code && branch.processor)
                connect(entry, &QAction::triggered, this,
                        [this, side = *branch.processor, code = *row.code] { emit CommandChosen(side, code); });
            else
                connect(entry, &QAction::triggered, this, [this, entry] { emit EntryChosen(entry->objectName()); });
        }
        if (branch.processor)
            (*branch.processor == Side::Staging ? stagingOptions : hangarOptions) = menu;
    }
    // Quit and About stay where the tree has them, on every desktop.
    for (auto* entry : bar->findChildren<QAction*>())
        entry->setMenuRole(QAction::NoRole);
}

void Menus::ShowSide(Side side) {
    const auto show = [](QMenu* menu, bool isVisible) {
        menu->menuAction()->setVisible(isVisible);
        // Qt lets a hidden menu take its key: Alt+O would open the visible one only every other time.
        menu->setTitle(isVisible ? "&Options" : "Options");
    };
    show(stagingOptions, side == Side::Staging);
    show(hangarOptions, side == Side::Hangar);
}

} // namespace korvadex
