#include "tour/inspector.h"

#include "tests/support/hands.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAccessible>
#include <QApplication>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QScreen>
#include <QToolButton>

namespace korvadex::tour {

namespace {

constexpr int Rounding = 1;     // of sizes at 150 %
constexpr int EnoughToSee = 60; // device-independent pixels of what has the focus

QString NameOf(const QWidget& widget) {
    return widget.objectName().isEmpty() ? QString(widget.metaObject()->className()) : widget.objectName();
}

// It may be moved into sight.
bool IsScrolled(const QWidget& widget) {
    for (const QWidget* above = widget.parentWidget(); above && !above->isWindow(); above = above->parentWidget())
        if (qobject_cast<const QAbstractScrollArea*>(above))
            return true;
    return false;
}

QString DescribePlace(const QWidget& widget, const QRect& place) {
    const QRect room = widget.window()->rect();
    return QString("%1 at %2,%3 %4x%5 in %6x%7")
        .arg(NameOf(widget))
        .arg(place.x())
        .arg(place.y())
        .arg(place.width())
        .arg(place.height())
        .arg(room.width())
        .arg(room.height());
}

// Its text has not the room that it needs; "" when it has.
QString DescribeCut(const QWidget& widget) {
    const auto* label = qobject_cast<const QLabel*>(&widget);
    QSize needed;
    if (label && !label->text().isEmpty())
        needed = label->wordWrap() ? QSize(0, label->heightForWidth(label->width())) : label->sizeHint();
    else if (const auto* button = qobject_cast<const QAbstractButton*>(&widget); button && !button->text().isEmpty()) {
        const auto* tool = qobject_cast<const QToolButton*>(button);
        if (!tool || tool->toolButtonStyle() != Qt::ToolButtonIconOnly)
            needed = button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
    } else if (const auto* group = qobject_cast<const QGroupBox*>(&widget))
        needed = group->fontMetrics().size(Qt::TextShowMnemonic, group->title());
    if (needed.width() <= widget.width() + Rounding && needed.height() <= widget.height() + Rounding)
        return {};
    return QString("%1 is cut: has %2x%3, needs %4x%5")
        .arg(NameOf(widget))
        .arg(widget.width())
        .arg(widget.height())
        .arg(needed.width())
        .arg(needed.height());
}

void CheckPlaces(const QWidget& window, QStringList& faults) {
    const QRect screen = window.screen()->availableGeometry();
    const QRect frame = window.frameGeometry();
    if (!screen.contains(frame))
        faults.append(QString("off the screen: %1,%2 %3x%4 on %5x%6")
                          .arg(frame.x())
                          .arg(frame.y())
                          .arg(frame.width())
                          .arg(frame.height())
                          .arg(screen.width())
                          .arg(screen.height()));
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisible() || widget->window() != &window || widget->size().isEmpty())
            continue;
        const QRect place(widget->mapTo(&window, QPoint()), widget->size());
        if (!IsScrolled(*widget) && !window.rect().contains(place))
            faults.append("not within: " + DescribePlace(*widget, place));
        if (const QString cut = DescribeCut(*widget); !cut.isEmpty())
            faults.append(cut);
    }
}

// From one control to the next with Tab, until it has been there before.
void CheckKeys(QWidget& window, QStringList& faults) {
    QWidget* const before = window.focusWidget();
    if (!before || !window.isActiveWindow())
        return;
    QWidgetList seen;
    for (QWidget* focus = before; focus && !seen.contains(focus); focus = window.focusWidget()) {
        seen.append(focus);
        QApplication::processEvents();
        if (test::InSight(*focus).height() < qMin(focus->height(), EnoughToSee))
            faults.append("focus out of sight: " +
                          DescribePlace(*focus, {focus->mapTo(&window, QPoint()), focus->size()}));
        auto* speaker = QAccessible::queryAccessibleInterface(focus);
        if (!speaker || speaker->text(QAccessible::Name).isEmpty())
            faults.append("without a name: " + NameOf(*focus));
        QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
        QCoreApplication::sendEvent(focus, &tab);
    }
    before->setFocus();
}

} // namespace

QStringList FaultsOf(QWidget& window) {
    QStringList faults;
    CheckPlaces(window, faults);
    CheckKeys(window, faults);
    return faults;
}

} // namespace korvadex::tour
