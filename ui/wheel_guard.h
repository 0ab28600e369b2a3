// The wheel over combo boxes.
#pragma once

class QWidget;

namespace korvadex {

// From now on the wheel scrolls what lies under it and leaves the choice of a combo box in this window alone, unless
// the box has the focus.
void KeepWheelFromChoices(const QWidget& window);

} // namespace korvadex
