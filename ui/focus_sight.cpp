#include "ui/focus_sight.h"

#include <QApplication>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>

namespace korvadex {

namespace {

void ScrollTo(QWidget& control) {
    for (QWidget* above = control.parentWidget(); above && !above->isWindow(); above = above->parentWidget()) {
        auto* area = qobject_cast<QScrollArea*>(above);
        if (!area)
            continue;
        area->ensureWidgetVisible(&control, 0, 0); // of a list, its current row; the rest where there is room for it
        const QSize room = area->viewport()->size();
        const QRect place(control.mapTo(area->widget(), QPoint()), control.size());
        if (place.width() > room.width())
            area->horizontalScrollBar()->setValue(place.left());
        area->ensureVisible(area->horizontalScrollBar()->value() + room.width() / 2, place.center().y(), 0,
                            qMin(place.height(), room.height()) / 2);
    }
}

} // namespace

void KeepFocusInSight(QWidget& window) {
    QObject::connect(qApp, &QApplication::focusChanged, &window, [&window](QWidget* /*before*/, QWidget* now) {
        if (!now || now->window() != &window || QApplication::mouseButtons() != Qt::NoButton)
            return; // what is being clicked must not move away
        // A scroll area follows the key Tab itself, but only to the next of its own controls and, where it is low, not
        // all the way: it comes first.
        QTimer::singleShot(0, now, [now] { ScrollTo(*now); });
    });
}

} // namespace korvadex
