#include "ui/menus.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include <optional>

namespace korvadex {

namespace {

enum class Built { Yes, NotYet };

// A top-level menu has no caption of an entry; an entry whose caption is "-" is a separator.
struct Row {
    const char* name;
    const char* caption;
    Built built = Built::NotYet;
    std::optional<int> code = std::nullopt;
    const char* shortcut = ""; // works while the entry's menu is visible
};
struct Branch {
    Row menu;
    std::optional<Side> processor; // of the codes
    std::vector<Row> entries;
};

std::vector<Branch> MenuTree() {
    constexpr auto yes = Built::Yes;
    return {
        {{"mnuFile", "&File"},
         {},
         {{"mnuLocations", "&Locations", yes},
          {"mnuLocationProfiles", "Location &profiles", yes},
          {"mnuExit", "&Exit", yes}}},
        {{"mnuTools", "&Tools"},
         {},
         {{"mnuAllPackages", "&List all packages in Hangar", yes},
          {"mnuInstalledPackages", "List packages &installed in MSFS", yes},
          {"mnuPackagesNoImages", "List packages with &no images", yes},
          {"mnuSep17", "-"},
          {"mnuUnusedGauges", "List &unused gauges in MSFS gauges directory", yes},
          {"mnuSep1", "-"},
          {"mnuPhotosByCategory", "&Photo gallery for packages in category", yes},
          {"mnuPhotosForAll", "Photo &gallery for all packages", yes},
          {"mnuSep2", "-"},
          {"mnuCompressAll", "&Compress all packages", yes},
          {"mnuDecompressAll", "&Decompress all packages", yes},
          {"mnuSep3", "-"},
          {"mnuUninstallCategory", "Uninstall packages in current category &from MSFS", yes},
          {"mnuUninstallAll", "Uninstall &all packages from MSFS", yes},
          {"mnuSep4", "-"},
          {"mnuRunMSFS", "&Run Flight Simulator", yes}}},
        {{"mnuStagingOptions", "&Options"},
         Side::Staging,
         {{"mnuStagingToHangar", "Copy package to &Hangar", yes, 0},
          {"mnuSep5", "-"},
          {"mnuProcessZipFile", "Process &ZIP file into Staging", yes, 1, "Ctrl+O"},
          {"mnuSep6", "-"},
          {"mnuImportFromMSFS", "Import package from &MSFS", yes, 2},
          {"mnuSep7", "-"},
          {"mnuRemoveStaging", "&Remove all from Staging", yes, 4},
          {"mnuRemovePanelFromStaging", "Remove &panel from Staging", yes, 5},
          {"mnuRemoveAircraftFromStaging", "Remove &aircraft from Staging", yes, 6},
          {"mnuRemoveSoundFromStaging", "Remove &sound from Staging", yes, 7}}},
        {{"mnuHangarOptions", "&Options"},
         Side::Hangar,
         {{"mnuHangarToMsfs", "&Copy package to MSFS", yes, 0, "Ctrl+I"},
          {"mnuSep8", "-"},
          {"mnuRemoveFromMsfs", "&Remove package from MSFS", yes, 1, "Ctrl+U"},
          {"mnuRemoveFromHangar", "Remove package from &Hangar", yes, 2},
          {"mnuSep9", "-"},
          {"mnuRename", "Re&name package and/or aircraft", yes, 3},
          {"mnuSep10", "-"},
          {"mnuCreatePanelAlias", "Create &panel alias", yes, 4},
          {"mnuPastePanelAlias", "Paste panel &alias", yes, 6},
          {"mnuRestoreOldPanel", "Restore &old panel", yes, 8},
          {"mnuSep11", "-"},
          {"mnuCreateSoundAlias", "Create &sound alias", yes, 5},
          {"mnuPasteSoundAlias", "Past&e sound alias", yes, 7},
          {"mnuRestoreOldSound", "Restore old so&und", yes, 9},
          {"mnuSep14", "-"},
          {"mnuCheckRefs", "Check aliases &to package", yes, 11},
          {"mnuGaugeCrosscheck", "Check &gauges for package", yes, 12},
          {"mnuSep15", "-"},
          {"mnuCopyToStaging", "Cop&y package to Staging", yes, 13},
          {"mnuSep16", "-"},
          {"mnuCompress", "Co&mpress package", yes, 14},
          {"mnuDecompress", "&Decompress Package", yes, 15}}},
        {{"mnuNotes", "&Data"},
         {},
         {{"mnuCreateNotes", "&Create package notes", yes},
          {"mnuDeleteNotes", "&Delete package notes", yes},
          {"mnuReadNotes", "&Read package notes", yes},
          {"mnuSep18", "-"},
          {"mnuImportImageClipboard", "Import &screenshot for package", yes},
          {"mnuImportImage", "Import image &file for package", yes},
          {"mnuSep19", "-"},
          {"mnuInformation", "FS2002 &Information", yes}}},
        {{"mnuHelp", "He&lp"}, {}, {{"mnuReadMe", "&Read me", yes}, {"mnuAbout", "&About Korvadex", yes}}},
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
            entry->setEnabled(row.built == Built::Yes);
            entry->setShortcut(QKeySequence(row.shortcut));
            if (row.code && branch.processor)
                connect(entry, &QAction::triggered, this, [this, side = *branch.processor, code = *row.code] {
                    emit CommandChosen(side, code);
                });
            else
                connect(entry, &QAction::triggered, this,
                        [this, entry] { emit EntryChosen(entry->objectName()); });
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
    for (const char* gallery : {"mnuPhotosByCategory", "mnuPhotosForAll"})
        parent()->findChild<QAction*>(gallery)->setEnabled(side == Side::Hangar);
}

} // namespace korvadex
