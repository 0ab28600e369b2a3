#include "tour/camera.h"

#include "ui/photo_view.h"

#include <QApplication>
#include <QPainter>

#include <algorithm>

namespace korvadex::tour {

namespace {

constexpr int Border = 1, TitleHeight = 24; // device-independent pixels

bool HasFrame(const QWidget& window) {
    return window.windowType() != Qt::Popup && window.windowType() != Qt::SplashScreen;
}

QRect Frame(const QWidget& window) {
    const QRect inner(window.mapToGlobal(QPoint()), window.size());
    return HasFrame(window) ? inner.adjusted(-Border, -TitleHeight, Border, Border) : inner;
}

// What belongs to a window is before it; a menu is before everything.
int Height(const QWidget& window) {
    if (window.windowType() == Qt::Popup)
        return 1000;
    int height = window.isActiveWindow() ? 1 : 0;
    for (const QWidget* owner = window.parentWidget(); owner; owner = owner->window()->parentWidget())
        height += 2;
    return height;
}

void PaintFrame(QPainter& painter, const QWidget& window) {
    const QRect frame = Frame(window);
    const QPalette& colors = window.palette();
    const bool isDark = colors.window().color().lightness() < 128;
    const QColor bar = isDark ? colors.window().color().darker(140) : colors.window().color().darker(112);
    painter.fillRect(frame, bar.darker(130));
    const QRect title = QRect(frame.topLeft(), QSize(frame.width(), TitleHeight)).adjusted(1, 1, -1, 0);
    painter.fillRect(title, bar);

    const QString text = window.windowTitle().isEmpty() ? QCoreApplication::applicationName() : window.windowTitle();
    painter.setFont(window.font());
    painter.setPen(colors.color(QPalette::Active, QPalette::WindowText));
    painter.drawText(title.adjusted(22, 0, -20, 0), Qt::AlignCenter,
                     painter.fontMetrics().elidedText(text, Qt::ElideRight, title.width() - 42));
    QApplication::windowIcon().paint(&painter, title.x() + 4, title.y() + 4, 16, 16);
    // A question that has to be answered cannot be closed.
    if (window.windowFlags().testFlag(Qt::CustomizeWindowHint) &&
        !window.windowFlags().testFlag(Qt::WindowCloseButtonHint))
        return;
    const QRectF cross(title.right() - 15.5, title.y() + 8, 8, 8);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(painter.pen().color(), 1.5));
    painter.drawLine(cross.topLeft(), cross.bottomRight());
    painter.drawLine(cross.topRight(), cross.bottomLeft());
}

} // namespace

QList<QWidget*> ShownWindows() {
    QList<QWidget*> windows;
    for (auto* window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->windowType() != Qt::ToolTip)
            windows.append(window);
    std::ranges::stable_sort(windows, {}, [](const QWidget* window) { return Height(*window); });
    return windows;
}

QImage PictureOf(const QList<QWidget*>& windows) {
    QRect area;
    for (const auto* window : windows)
        area |= Frame(*window);
    const qreal ratio = windows.isEmpty() ? 1 : windows.front()->devicePixelRatioF();
    QImage picture(area.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.translate(-area.topLeft());
    for (auto* window : windows) {
        painter.save();
        if (HasFrame(*window))
            PaintFrame(painter, *window);
        painter.restore();
        painter.drawPixmap(window->mapToGlobal(QPoint()), window->grab());
    }
    return picture;
}

bool IsLoaded(const QWidget& window) {
    const auto photos = window.findChildren<PhotoView*>();
    return std::ranges::none_of(photos,
                                [](const PhotoView* photo) { return photo->isVisible() && photo->IsLoading(); });
}

} // namespace korvadex::tour
