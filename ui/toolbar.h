// The toolbar of the main window: one button for each key; what a button does depends on the side that is shown.
#pragma once

#include "app/commands.h"

#include <QToolBar>

namespace korvadex {

class Toolbar : public QToolBar {
    Q_OBJECT

  public:
    explicit Toolbar(QWidget* parent = nullptr);

    // Tool tips name what the buttons do on the side that is shown; those that cannot work now are off.
    void ShowState(const MainView& view);

  signals:
    void Chosen(const char* key);
};

} // namespace korvadex
