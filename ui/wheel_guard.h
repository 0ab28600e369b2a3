// The wheel over boxes that take a choice or a number.
#pragma once

class QWidget;

namespace korvadex {

// From now on the wheel scrolls what lies under it and leaves a combo box or the number in a spin box of this window
// alone, unless the box has the focus.
void KeepWheelFromChoices(const QWidget& window);

} // namespace korvadex
