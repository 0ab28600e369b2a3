#include "ui/window_geometry.h"

#include "ui/qt_text.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QScreen>
#include <QVariant>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace korvadex {

namespace {

int Pixels(double twips) {
    return int(std::lround(twips / TwipsPerPixel));
}

// The frame of a window that was never shown is not known yet.
constexpr QSize Frame(8, 40);
// Some desktops let a frame hang over.
constexpr int Overhang = 8;

// Where it is when all of it can be seen, else on the screen that has most of it: that may have been another one, or
// one that showed all things smaller.
QRect OnScreen(const QRect& window) {
    QRegion all;
    QRect nearest;
    int most = -1;
    for (const QScreen* screen : QGuiApplication::screens()) {
        const QRect available = screen->availableGeometry();
        const QSize common = available.intersected(window).size();
        all += available;
        if (common.width() * common.height() > most)
            nearest = available;
        most = std::max(most, common.width() * common.height());
    }
    if (QRegion(window.adjusted(Overhang, Overhang, -Overhang, -Overhang)).subtracted(all).isEmpty())
        return window;
    QRect moved(window.topLeft(), window.size().boundedTo(nearest.size()));
    moved.moveLeft(std::clamp(moved.left(), nearest.left(), nearest.right() + 1 - moved.width()));
    moved.moveTop(std::clamp(moved.top(), nearest.top(), nearest.bottom() + 1 - moved.height()));
    return moved;
}

constexpr const char* NormalFrame = "normalFrame";

bool IsNormal(const QWidget& window) {
    return !window.isMaximized() && !window.isFullScreen();
}

QPoint FrameOf(const QWidget& window) {
    return window.frameGeometry().topLeft() - window.geometry().topLeft();
}

// The frame of a maximised window may be thinner: the normal one is remembered.
class FrameKeeper : public QObject {
  public:
    explicit FrameKeeper(QWidget& watched) : QObject(&watched), window(watched) { window.installEventFilter(this); }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        const bool mayTell = event->type() == QEvent::WindowActivate || event->type() == QEvent::Move;
        if (mayTell && window.isVisible() && IsNormal(window))
            window.setProperty(NormalFrame, FrameOf(window));
        return false;
    }

  private:
    QWidget& window;
};

class DialogFitter : public QObject {
  public:
    DialogFitter() { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool isShown = event->type() == QEvent::Show && !event->spontaneous();
        if ((isShown || event->type() == QEvent::WindowActivate) && qobject_cast<QDialog*>(watched)) {
            auto& dialog = *static_cast<QDialog*>(watched);
            if (isShown)
                FitToScreen(dialog);
            // It got its place for the size that it had before, and without a frame: the title stays on the screen.
            if (const int top = dialog.screen()->availableGeometry().top(); dialog.y() < top)
                dialog.move(dialog.x(), top);
        }
        return false;
    }
};

} // namespace

ScreenSize ScreenInTwips(const QWidget& window) {
    const QSize size = window.screen()->size();
    return {size.height() * TwipsPerPixel, size.width() * TwipsPerPixel};
}

WindowGeometry GeometryInTwips(const QWidget& window) {
    const bool isNormal = IsNormal(window);
    const QRect inner = isNormal ? window.geometry() : window.normalGeometry();
    const QVariant kept = window.property(NormalFrame);
    // One that was never normal since its place was set still has its corner there, without a frame.
    const QPoint corner = inner.topLeft() + (isNormal ? FrameOf(window) : kept.toPoint());
    return {corner.y() * TwipsPerPixel, corner.x() * TwipsPerPixel, inner.height() * TwipsPerPixel,
            inner.width() * TwipsPerPixel};
}

void SetGeometryInTwips(QWidget& window, const SavedGeometry& geometry) {
    if (!window.property(NormalFrame).isValid())
        new FrameKeeper(window); // goes with the window
    QSize size = window.size();
    if (geometry.width)
        size.setWidth(Pixels(*geometry.width));
    if (geometry.height)
        size.setHeight(Pixels(*geometry.height));
    window.resize(size);
    if (!geometry.left && !geometry.top)
        return;
    QPoint corner = window.pos();
    if (geometry.left)
        corner.setX(Pixels(*geometry.left));
    if (geometry.top)
        corner.setY(Pixels(*geometry.top));
    const QRect place = OnScreen({corner, window.size() + Frame});
    window.resize(place.size() - Frame);
    window.move(place.topLeft());
}

void FitToScreen(QWidget& window) {
    const QSize most = window.screen()->availableSize() - Frame;
    window.resize(window.size().boundedTo(most));
}

std::unique_ptr<QObject> FitDialogsToScreen() {
    return std::make_unique<DialogFitter>();
}

} // namespace korvadex
