// The menus of the main window, as the table of commands has them.
#pragma once

#include "app/commands.h"

#include <QObject>

#include <utility>
#include <vector>

class QAction;
class QMenu;
class QMenuBar;

namespace korvadex {

// On a screen that is too low for it the menu scrolls, instead of standing in several columns.
void KeepInOneColumn(QMenu& menu);

class Menus : public QObject {
    Q_OBJECT

  public:
    explicit Menus(QMenuBar* bar);

    // Of the two Options menus only that of the shown side is visible.
    void ShowSide(Side side);
    // Entries that name what they are about, or say by a tick how it is; those that cannot work now are off.
    void ShowState(const MainView& view);

  signals:
    void Opened();
    void Chosen(const char* entry);
    void ChoiceMade(const Command& command, int row);

  private:
    std::vector<std::pair<Side, QMenu*>> ofOneSide;
    void ShowChoices(const Command& command, QMenu& menu, const std::vector<std::string>& choices);

    std::vector<std::pair<const Command*, QAction*>> entries;
};

} // namespace korvadex
