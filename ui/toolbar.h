// The toolbar of the main window: one button for each key; what a button does depends on the side that is shown.
#pragma once

#include "app/commands.h"

#include <QToolBar>

namespace korvadex {

class Toolbar : public QToolBar {
    Q_OBJECT

  public:
    explicit Toolbar(QWidget* parent = nullptr);

    // Tool tips name what the buttons do on that side; those that do nothing there are off.
    void ShowSide(Side side);

  signals:
    void Chosen(const char* key);
};

} // namespace korvadex
