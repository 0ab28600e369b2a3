// On a small screen a part of a window is scrolled.
#pragma once

class QWidget;

namespace korvadex {

// Whatever of the window gets the keyboard, but for a click on it, is scrolled into sight.
void KeepFocusInSight(QWidget& window);

} // namespace korvadex
