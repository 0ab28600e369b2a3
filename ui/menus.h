// The menus of the main window, as the table of commands has them.
#pragma once

#include "app/commands.h"

#include <QObject>

#include <utility>
#include <vector>

class QMenu;
class QMenuBar;

namespace korvadex {

class Menus : public QObject {
    Q_OBJECT

  public:
    explicit Menus(QMenuBar* bar);

    // Of the two Options menus only that of the shown side is visible.
    void ShowSide(Side side);

  signals:
    void Chosen(const char* entry);

  private:
    std::vector<std::pair<Side, QMenu*>> ofOneSide;
};

} // namespace korvadex
