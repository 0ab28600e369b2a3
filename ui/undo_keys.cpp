#include "ui/undo_keys.h"

#include <QKeyEvent>
#include <QLineEdit>

namespace korvadex {

namespace {

class FieldKeys : public QObject {
  public:
    explicit FieldKeys(QLineEdit& watched) : QObject(&watched), field(watched) { field.installEventFilter(this); }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if ((event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress) || field.isReadOnly())
            return false;
        const auto* key = static_cast<QKeyEvent*>(event);
        const bool isUndo = key->key() == Qt::Key_Z, isRedo = key->key() == Qt::Key_Y;
        if (key->modifiers() != Qt::ControlModifier || (!isUndo && !isRedo))
            return false;
        event->accept();
        if (event->type() == QEvent::KeyPress)
            isUndo ? field.undo() : field.redo();
        return true;
    }

  private:
    QLineEdit& field;
};

} // namespace

void KeepUndoKeysInFields(const QWidget& window) {
    for (auto* field : window.findChildren<QLineEdit*>())
        new FieldKeys(*field); // goes with the field
}

} // namespace korvadex
