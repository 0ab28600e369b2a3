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

// Enough of the title bar to take hold of it.
bool CanBeReached(const QRect& window) {
    const QRect title(window.left(), window.top(), window.width(), 32);
    const auto screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(), [&](const QScreen* screen) {
        const QRect seen = screen->availableGeometry().intersected(title);
        return seen.width() >= 80 && seen.height() >= 16;
    });
}

constexpr const char* NormalFrame = "normalFrame";

bool IsNormal(const QWidget& window) {
    return !window.isMaximized() && !window.isFullScreen();
}

QPoint FrameOf(const QWidget& window) {
    return window.frameGeometry().topLeft() - window.geometry().topLeft();
}

// The frame of a maximised window may be thinner: the normal one is remembered whenever the window is entered.
class FrameKeeper : public QObject {
  public:
    explicit FrameKeeper(QWidget& watched) : QObject(&watched), window(watched) { window.installEventFilter(this); }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::WindowActivate && IsNormal(window))
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
        if (event->type() == QEvent::Show && !event->spontaneous() && qobject_cast<QDialog*>(watched))
            FitToScreen(*static_cast<QDialog*>(watched));
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
    const QPoint corner = inner.topLeft() + (isNormal || !kept.isValid() ? FrameOf(window) : kept.toPoint());
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
    if (CanBeReached({corner, window.size()}))
        window.move(corner);
}

void FitToScreen(QWidget& window) {
    // The frame of a window that was never shown is not known yet.
    const QSize most = window.screen()->availableSize() - QSize(8, 40);
    window.resize(window.size().boundedTo(most));
}

std::unique_ptr<QObject> FitDialogsToScreen() {
    return std::make_unique<DialogFitter>();
}

} // namespace korvadex
