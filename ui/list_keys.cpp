#include "ui/list_keys.h"

#include <QKeyEvent>
#include <QListWidget>

#include <algorithm>

namespace korvadex {

namespace {

class FirstKey : public QObject {
  public:
    explicit FirstKey(QListWidget& watched) : QObject(&watched), list(watched) { list.installEventFilter(this); }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() != QEvent::KeyPress || list.count() == 0 || !list.selectedItems().isEmpty())
            return false;
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key != Qt::Key_Down && key != Qt::Key_Up && key != Qt::Key_Home && key != Qt::Key_PageUp)
            return false;
        list.setCurrentRow(std::max(0, list.currentRow()), QItemSelectionModel::ClearAndSelect);
        return true;
    }

  private:
    QListWidget& list;
};

} // namespace

void SelectByFirstKey(QListWidget& list) {
    new FirstKey(list); // goes with the list
}

} // namespace korvadex
