// The menus of the main window: every entry in its place; one whose command does not exist yet is disabled.
#pragma once

#include "app/program.h"

#include <QObject>
#include <QString>

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
    // An entry that bears a command code.
    void CommandChosen(Side processor, int code);
    // Any other entry, by its name.
    void EntryChosen(const QString& name);

  private:
    QMenu* stagingOptions = nullptr;
    QMenu* hangarOptions = nullptr;
};

} // namespace korvadex
