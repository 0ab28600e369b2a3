// Keys in lists of which one row is to be picked.
#pragma once

class QListWidget;

namespace korvadex {

// While no row is selected, an arrow key, Home or Page Up selects the row that has the focus. By itself the list would
// leave the first row out, although it shows it as the one that the keys are at.
void SelectByFirstKey(QListWidget& list);

} // namespace korvadex
