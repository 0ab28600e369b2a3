// Undo and Redo in text fields.
#pragma once

class QWidget;

namespace korvadex {

// Ctrl+Z and Ctrl+Y in the text fields that the window has now are the field's own, also where the system has another
// key for one of them: they never reach the commands of the window.
void KeepUndoKeysInFields(const QWidget& window);

} // namespace korvadex
