#include "ui/painting.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>

namespace korvadex {

namespace {

// Lets nothing of what the user does through, but to one button.
class OnlyStop : public QObject {
  public:
    explicit OnlyStop(QAbstractButton& stopButton) : stop(stopButton) { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        switch (event->type()) {
        case QEvent::Shortcut:
            return true;
        case QEvent::ShortcutOverride: // it is to come as a key
            event->accept();
            return true;
        case QEvent::KeyPress:
            if (watched->isWidgetType() && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
                stop.click();
                return true;
            }
            [[fallthrough]];
        case QEvent::KeyRelease:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::Drop:
            return watched->isWidgetType() && watched != &stop;
        default:
            return false;
        }
    }

  private:
    QAbstractButton& stop;
};

} // namespace

void Painting::Step() {
    constexpr int interval = 40; // ms
    if (last.isValid() && last.elapsed() < interval)
        return;
    if (stop) {
        const OnlyStop filter(*stop);
        QCoreApplication::processEvents();
    } else {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
    last.start();
}

} // namespace korvadex
