#include "ui/toolbar.h"

#include "ui/icons.h"

#include <QAction>

namespace korvadex {

Toolbar::Toolbar(QWidget* parent) : QToolBar(parent) {
    for (const QString key : ToolbarKeys()) {
        if (key.isEmpty()) {
            addSeparator();
            continue;
        }
        QAction* action = addAction(NamedIcon(key), {});
        action->setObjectName(key);
        widgetForAction(action)->setObjectName("btn" + key);
        connect(action, &QAction::triggered, this,
                [this, key] { emit Chosen(*CommandOfKey(key.toStdString(), shownSide)); });
    }
    ShowSide(Side::Hangar);
}

void Toolbar::ShowSide(Side side) {
    shownSide = side;
    for (QAction* action : actions()) {
        const Command* command = CommandOfKey(action->objectName().toStdString(), side);
        action->setEnabled(command != nullptr);
        if (command) {
            action->setText(command->extras.toolTip); // the accessible name
            action->setToolTip(command->extras.toolTip);
        }
    }
}

} // namespace korvadex
