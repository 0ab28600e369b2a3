#include "ui/package_menu.h"

#include <QAbstractScrollArea>
#include <QKeyEvent>
#include <QMenu>

#include <algorithm>

namespace korvadex {

QAction* AddEntry(QMenu& menu, const char* name, const QString& caption, const QKeySequence& key) {
    QAction* entry = menu.addAction(caption);
    entry->setObjectName(name);
    entry->setShortcut(key);
    entry->setShortcutContext(Qt::WidgetShortcut);
    entry->setShortcutVisibleInContextMenu(true);
    return entry;
}

void AddPackageCommands(QMenu& menu, const std::vector<PackageRef>& packages, const CanWorkOn& canWork,
                        const std::function<void(const PackageCommand&)>& give) {
    for (const PackageCommand& command : PackageCommands()) {
        if (command.separator)
            menu.addSeparator()->setObjectName(command.separator);
        QAction* entry = AddEntry(menu, command.entry, command.caption, QKeySequence(command.shortcut));
        entry->setEnabled(!canWork || canWork(command, packages));
        QObject::connect(
            entry, &QAction::triggered, menu.parent(), [give, &command] { give(command); }, Qt::QueuedConnection);
    }
}

const PackageCommand* PackageCommandOf(const QKeyEvent& pressed) {
    const QKeySequence keys(QKeyCombination(pressed.modifiers() & ~Qt::KeypadModifier, Qt::Key(pressed.key())));
    const auto commands = PackageCommands();
    const auto found = std::ranges::find_if(commands, [&](const PackageCommand& command) {
        return *command.shortcut && keys == QKeySequence(command.shortcut);
    });
    return found == commands.end() ? nullptr : &*found;
}

void OpenMenu(QMenu& menu, const QAbstractScrollArea& list, const QPoint& at) {
    const QRect inside = list.viewport()->rect();
    menu.popup(list.viewport()->mapToGlobal(
        QPoint(std::clamp(at.x(), inside.left(), inside.right()), std::clamp(at.y(), inside.top(), inside.bottom()))));
}

} // namespace korvadex
