#include "ui/menus.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

namespace korvadex {

Menus::Menus(QMenuBar* bar) : QObject(bar) {
    for (const Menu& row : MainMenus()) {
        QMenu* menu = bar->addMenu(row.caption);
        menu->setObjectName(row.name);
        if (row.side)
            ofOneSide.emplace_back(*row.side, menu);
        for (const Command& command : row.commands) {
            if (const char* separator = command.extras.separator)
                menu->addSeparator()->setObjectName(separator);
            QAction* entry = menu->addAction(command.caption);
            entry->setObjectName(command.entry);
            entry->setShortcut(QKeySequence(command.extras.shortcut));
            connect(entry, &QAction::triggered, this, [this, &command] { emit Chosen(command.entry); });
        }
    }
    // Quit and About stay where the table has them, on every desktop.
    for (auto* entry : bar->findChildren<QAction*>())
        entry->setMenuRole(QAction::NoRole);
}

void Menus::ShowSide(Side side) {
    for (const auto& [itsSide, menu] : ofOneSide) {
        const bool isVisible = itsSide == side;
        menu->menuAction()->setVisible(isVisible);
        // Qt lets a hidden menu take its key: Alt+O would open the visible one only every other time.
        menu->setTitle(isVisible ? "&Options" : "Options");
    }
}

} // namespace korvadex
