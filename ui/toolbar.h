// The toolbar of the main window: one button for each key; what a key does depends on the side that is shown.
#pragma once

#include "app/program.h"

#include <QToolBar>

namespace korvadex {

class Toolbar : public QToolBar {
    Q_OBJECT

  public:
    explicit Toolbar(QWidget* parent = nullptr);

    // Tool tips name what the buttons do on that side.
    void ShowSide(Side side);

  signals:
    void KeyPressed(const QString& key);

  private:
    void SetButton(const char* key, const QString& toolTip, bool isEnabled);
};

} // namespace korvadex
