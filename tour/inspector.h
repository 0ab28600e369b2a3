// A second look at a window on a small screen: that nothing of it is cut off, off the screen or, by keys, out of sight.
#pragma once

#include <QStringList>
#include <QWidget>

namespace korvadex::tour {

// What is wrong with the window; it gets its focus back.
QStringList FaultsOf(QWidget& window);

} // namespace korvadex::tour
