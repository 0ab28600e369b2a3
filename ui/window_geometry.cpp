#include "ui/window_geometry.h"

#include "ui/qt_text.h"

#include <QGuiApplication>
#include <QScreen>
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

} // namespace

ScreenSize ScreenInTwips(const QWidget& window) {
    const QSize size = window.screen()->size();
    return {size.height() * TwipsPerPixel, size.width() * TwipsPerPixel};
}

WindowGeometry GeometryInTwips(const QWidget& window) {
    const bool isNormal = !window.isMaximized() && !window.isFullScreen();
    const QRect inner = isNormal ? window.geometry() : window.normalGeometry();
    const QPoint frame = window.frameGeometry().topLeft() - window.geometry().topLeft();
    const QPoint corner = inner.topLeft() + frame;
    return {corner.y() * TwipsPerPixel, corner.x() * TwipsPerPixel, inner.height() * TwipsPerPixel,
            inner.width() * TwipsPerPixel};
}

void SetGeometryInTwips(QWidget& window, const SavedGeometry& geometry) {
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

} // namespace korvadex
