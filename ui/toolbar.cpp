#include "ui/toolbar.h"

#include "app/main_window.h"
#include "ui/icons.h"

#include <QAction>

namespace korvadex {

Toolbar::Toolbar(QWidget* parent) : QToolBar(parent) {
    for (const char* key : ToolbarKeys()) {
        if (*key == '\0') {
            addSeparator();
            continue;
        }
        QAction* action = addAction(NamedIcon(key), {});
        action->setObjectName(key);
        widgetForAction(action)->setObjectName("btn" + QString(key));
        connect(action, &QAction::triggered, this, [this, key] { emit Chosen(key); });
    }
    ShowState({});
}

void Toolbar::ShowState(const MainView& view) {
    const Side side = view.HangarSideShown ? Side::Hangar : Side::Staging;
    for (QAction* action : actions()) {
        const Command* command = CommandOfKey(action->objectName().toStdString(), side);
        action->setEnabled(command && CanWork(*command, view));
        if (command) {
            action->setText(command->extras.toolTip); // the accessible name
            action->setToolTip(command->extras.toolTip);
        }
    }
}

} // namespace korvadex
