#include "ui/toolbar.h"

#include "ui/icons.h"

#include <QAction>

namespace korvadex {

namespace {

struct Button {
    const char* key; // also the name of the icon and of the action; nullptr for a separator
    const char* toolTip;
};

// What depends on the side (all tool tips that are missing here): ShowSide.
constexpr Button Buttons[] = {
    {"ListAllPackages", "List all packages in Hangar"},
    {"ListInstalledPackages", "List packages installed in MSFS"},
    {nullptr, nullptr},
    {"PhotoGalleryCategory", "Photo gallery for packages in category"},
    {"PhotoGalleryAll", "Photo gallery for all packages"},
    {nullptr, nullptr},
    {"UnusedGauges", "List unused gauges in MSFS gauges directory"},
    {nullptr, nullptr},
    {"ProcessZip", "Process ZIP file into Staging"},
    {"ImportFromMSFS", "Import package from MSFS"},
    {nullptr, nullptr},
    {"Decompress", "Decompress package"},
    {"Compress", "Compress package"},
    {nullptr, nullptr},
    {"Install", ""},
    {"Uninstall", ""},
    {"RemovePackage", ""},
    {nullptr, nullptr},
    {"RunMSFS", "Run Flight Simulator"},
    {nullptr, nullptr},
    {"ReadNotes", "Read package notes"},
    {"Information", "FS2002 Information"},
};

} // namespace

Toolbar::Toolbar(QWidget* parent) : QToolBar(parent) {
    for (const Button& button : Buttons) {
        if (!button.key) {
            addSeparator();
            continue;
        }
        const QString key = button.key;
        QAction* action = addAction(NamedIcon(key), {});
        action->setObjectName(key);
        SetButton(button.key, button.toolTip, true);
        connect(action, &QAction::triggered, this, [this, key] { emit KeyPressed(key); });
    }
    ShowSide(Side::Hangar);
}

void Toolbar::ShowSide(Side side) {
    const bool isHangar = side == Side::Hangar;
    SetButton("Install", isHangar ? "Copy package to MSFS" : "Copy packge to Hangar", true);
    SetButton("Uninstall", "Remove package from MSFS", isHangar);
    SetButton("RemovePackage", isHangar ? "Remove package from Hangar" : "Remove all from Staging", true);
}

void Toolbar::SetButton(const char* key, const QString& toolTip, bool isEnabled) {
    auto* action = findChild<QAction*>(key, Qt::FindDirectChildrenOnly);
    action->setText(toolTip); // the accessible name
    action->setToolTip(toolTip);
    action->setEnabled(isEnabled);
    if (QWidget* button = widgetForAction(action))
        button->setObjectName("btn" + QString(key));
}

} // namespace korvadex
