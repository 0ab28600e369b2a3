#include "ui/toolbar.h"

#include <QAction>
#include <QIcon>

// A resource in a static library is not found before this ran; the macro wants to stand outside of any namespace.
static void InitIcons() {
    Q_INIT_RESOURCE(icons);
}

namespace korvadex {

namespace {

struct Button {
    const char* key; // also the name of the icon and of the action; nullptr for a separator
    const char* toolTip;
    bool isBuilt;
};

// What depends on the side (all tool tips that are missing here): ShowSide.
constexpr Button Buttons[] = {
    {"ListAllPackages", "List all packages in Hangar", true},
    {"ListInstalledPackages", "List packages installed in MSFS", true},
    {nullptr, nullptr, false},
    {"PhotoGalleryCategory", "", true},
    {"PhotoGalleryAll", "", true},
    {nullptr, nullptr, false},
    {"UnusedGauges", "List unused gauges in MSFS gauges directory", true},
    {nullptr, nullptr, false},
    {"ProcessZip", "Process ZIP file into Staging", true},
    {"ImportFromMSFS", "Import package from MSFS", true},
    {nullptr, nullptr, false},
    {"Decompress", "Decompress package", true},
    {"Compress", "Compress package", true},
    {nullptr, nullptr, false},
    {"Install", "", true},
    {"Uninstall", "", true},
    {"RemovePackage", "", true},
    {nullptr, nullptr, false},
    {"RunMSFS", "Run Flight Simulator", true},
    {nullptr, nullptr, false},
    {"ReadNotes", "Read package notes", true},
    {"Information", "FS2002 Information", true},
};

} // namespace

Toolbar::Toolbar(QWidget* parent) : QToolBar(parent) {
    InitIcons();
    for (const Button& button : Buttons) {
        if (!button.key) {
            addSeparator();
            continue;
        }
        const QString key = button.key;
        QAction* action = addAction(QIcon(":/icons/" + key + ".svg"), {});
        action->setObjectName(key);
        SetButton(button.key, button.toolTip, button.isBuilt);
        connect(action, &QAction::triggered, this, [this, key] { emit KeyPressed(key); });
    }
    ShowSide(Side::Hangar);
}

void Toolbar::ShowSide(Side side) {
    const bool isHangar = side == Side::Hangar;
    SetButton("Install", isHangar ? "Copy package to MSFS" : "Copy packge to Hangar", true);
    SetButton("Uninstall", "Remove package from MSFS", isHangar);
    SetButton("RemovePackage", isHangar ? "Remove package from Hangar" : "Remove all from Staging", true);
    SetButton("PhotoGalleryCategory", "Photo gallery for packages in category", isHangar);
    SetButton("PhotoGalleryAll", "Photo gallery for all packages", isHangar);
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
