// Pictures of the program's windows, taken by the program itself: the same with a display and without one.
#pragma once

#include <QImage>
#include <QList>
#include <QWidget>

namespace korvadex::tour {

// The windows that can be seen, what is in front last.
QList<QWidget*> ShownWindows();

// The windows one over the other where they stand, each with a title bar, at the screen's own resolution.
QImage PictureOf(const QList<QWidget*>& windows);

// All that stands in the window, or is open over it, has been loaded.
bool IsLoaded(const QWidget& window);

} // namespace korvadex::tour
