#include "ui/photo_view.h"

#include "ui/qt_text.h"

#include <QMouseEvent>
#include <QPainter>
#include <QTextLayout>

namespace korvadex {

namespace {

constexpr int Margin = 5, EmblemSize = 128, BadgeSize = 16, BadgeMargin = 3;

} // namespace

PhotoView::PhotoView(QWidget* parent, int linesOfText) : QWidget(parent), captionLines(linesOfText) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void PhotoView::ShowNothing() {
    content = Content::Nothing;
    badge = {};
    picture = {};
    caption.clear();
    setToolTip({});
    setAccessibleName({});
    update();
}

void PhotoView::ShowEmblem(const QIcon& icon) {
    ShowNothing();
    content = Content::Emblem;
    emblem = icon;
}

void PhotoView::ShowPicture(const LoadedPicture* loaded, const QString& text) {
    content = loaded ? Content::Picture : Content::Loading;
    picture = loaded ? *loaded : LoadedPicture();
    caption = text;
    setAccessibleName(text);
    update();
}

void PhotoView::SetMarked(bool isMarkedNow) {
    if (isMarked == isMarkedNow)
        return;
    isMarked = isMarkedNow;
    update();
}

void PhotoView::ShowBadge(const QIcon& icon) {
    badge = icon;
    update();
}

QRect PhotoView::PictureArea() const {
    const int below = captionLines ? captionLines * fontMetrics().lineSpacing() + 2 : 0;
    return rect().adjusted(Margin, Margin, -Margin, -Margin - below);
}

QRectF PhotoView::Placed(const QSizeF& size) const {
    const QRectF area = PictureArea();
    QRectF place(QPointF(), size);
    place.moveCenter(area.center());
    if (captionLines)
        place.moveBottom(area.bottom());
    place.moveTopLeft(place.topLeft().toPoint());
    return place;
}

// A thumbnail has no room for the advice.
QString PhotoView::Trouble() const {
    if (picture.trouble.isEmpty())
        return {};
    const char* said =
        picture.image.isNull() ? "This picture cannot be shown: " : "This picture cannot be shown as a whole: ";
    return said + picture.trouble + (captionLines ? QString(".") : ".  " + picture.advice);
}

QColor PhotoView::TextColor() const {
    return palette().color(isMarked ? QPalette::HighlightedText : QPalette::WindowText);
}

QSize PhotoView::Box() const {
    return (QSizeF(PictureArea().size()) * devicePixelRatioF()).toSize();
}

void PhotoView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::SmoothPixmapTransform | QPainter::Antialiasing);
    if (content == Content::Nothing)
        return;
    if (content == Content::Emblem) {
        const int size = std::min({EmblemSize, width(), height()});
        QRect place(0, 0, size, size);
        place.moveCenter(rect().center());
        return emblem.paint(&painter, place);
    }
    if (isMarked) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().highlight());
        painter.drawRoundedRect(rect(), 4, 4);
    }
    if (picture.image.isNull())
        PaintPlaceholder(painter);
    else
        PaintPicture(painter);
    PaintCaption(painter);
    if (!badge.isNull())
        PaintBadge(painter);
}

void PhotoView::PaintBadge(QPainter& painter) const {
    const QRect ground(PictureArea().topLeft(), QSize(BadgeSize, BadgeSize) + 2 * QSize(BadgeMargin, BadgeMargin));
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().window());
    painter.drawRoundedRect(ground, 4, 4);
    badge.paint(&painter, ground.marginsRemoved({BadgeMargin, BadgeMargin, BadgeMargin, BadgeMargin}));
}

void PhotoView::PaintCaption(QPainter& painter) const {
    const QRect area = PictureArea();
    painter.setPen(TextColor());
    QTextLayout layout(caption, font());
    QTextOption wrap;
    wrap.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(wrap);
    layout.beginLayout();
    for (int number = 1; number <= captionLines; ++number) {
        QTextLine line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(area.width());
        const QString text =
            number < captionLines ? caption.mid(line.textStart(), line.textLength()) : caption.mid(line.textStart());
        const int height = fontMetrics().lineSpacing();
        painter.drawText(QRect(area.left(), area.bottom() + 3 + (number - 1) * height, area.width(), height),
                         Qt::AlignCenter | Qt::TextSingleLine,
                         fontMetrics().elidedText(text.trimmed(), Qt::ElideRight, area.width()));
    }
    layout.endLayout();
}

void PhotoView::PaintPicture(QPainter& painter) const {
    const QRectF area = PictureArea();
    QSizeF shown = picture.natural;
    if (shown.width() > area.width() || shown.height() > area.height())
        shown.scale(area.size(), Qt::KeepAspectRatio);
    // Pixel by pixel where it was decoded for this very size, but for rounding.
    const QSizeF exact = QSizeF(picture.image.size()) / devicePixelRatioF();
    if (std::abs(exact.width() - shown.width()) < 2 && std::abs(exact.height() - shown.height()) < 2)
        shown = exact;
    const QRectF place = Placed(shown);
    painter.drawImage(place, picture.image);
    const QString trouble = Trouble();
    if (trouble.isEmpty())
        return;
    painter.setPen(palette().color(QPalette::WindowText));
    // Only a part of it is there: said across its lower end.
    QRectF note = painter.boundingRect(area, Qt::AlignHCenter | Qt::AlignBottom | Qt::TextWordWrap, trouble);
    note.moveBottom(place.bottom());
    painter.fillRect(QRectF(place.left(), note.top(), place.width(), note.height()), palette().window());
    painter.drawText(note, Qt::AlignCenter | Qt::TextWordWrap, trouble);
}

void PhotoView::PaintPlaceholder(QPainter& painter) const {
    const QRectF area = PictureArea();
    const QRectF frame = Placed(QSizeF(4, 3).scaled(area.size(), Qt::KeepAspectRatio)).adjusted(0.5, 0.5, -0.5, -0.5);
    QColor quiet = TextColor();
    quiet.setAlphaF(0.5F);
    painter.setPen(QPen(quiet, 1, content == Content::Loading ? Qt::DotLine : Qt::SolidLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(frame, 3, 3);
    painter.setPen(TextColor());
    painter.drawText(frame.adjusted(4, 2, -4, -2), Qt::AlignCenter | Qt::TextWordWrap, Trouble());
}

void PhotoView::resizeEvent(QResizeEvent* /*event*/) {
    emit Resized();
}

void PhotoView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        emit Clicked();
}

void PhotoView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        emit DoubleClicked();
}

} // namespace korvadex
