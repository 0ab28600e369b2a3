#include "ui/wheel_guard.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QEvent>

namespace korvadex {

namespace {

class WheelGuard : public QObject {
  public:
    explicit WheelGuard(QWidget& box) : QObject(&box) {
        box.setFocusPolicy(Qt::StrongFocus); // the wheel does not bring it
        box.installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool isKept = event->type() == QEvent::Wheel && !static_cast<QWidget*>(watched)->hasFocus();
        if (isKept)
            event->ignore(); // for what lies under the box
        return isKept;
    }
};

} // namespace

void KeepWheelFromChoices(const QWidget& window) {
    for (QComboBox* box : window.findChildren<QComboBox*>())
        new WheelGuard(*box); // goes with the box
    for (QAbstractSpinBox* box : window.findChildren<QAbstractSpinBox*>())
        new WheelGuard(*box);
}

} // namespace korvadex
