#include "tour/person.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QPushButton>
#include <QThread>
#include <QWidget>

#include <algorithm>
#include <stdexcept>

namespace korvadex::tour {

namespace {

constexpr int Patience = 60'000, Interval = 10; // ms

} // namespace

void Person::See(const std::function<void()>& look) const {
    std::exception_ptr trouble;
    const auto guarded = [&] { // an exception must not go through Qt's event loop
        try {
            look();
        } catch (...) {
            trouble = std::current_exception();
        }
    };
    QMetaObject::invokeMethod(qApp, guarded, Qt::BlockingQueuedConnection);
    if (trouble)
        std::rethrow_exception(trouble);
}

void Person::Do(std::function<void()> deed) {
    const auto guarded = [this, deed = std::move(deed)] {
        ++underWay;
        try {
            deed();
        } catch (...) {
            thrown = std::current_exception();
        }
        --underWay;
    };
    QMetaObject::invokeMethod(qApp, guarded, Qt::QueuedConnection);
}

// Each deed that is under way has come to a window that waits for an answer, and no button is still on its way down:
// one that is pressed by its key acts a moment later.
bool Person::IsAtRest() const {
    const auto windows = QApplication::topLevelWidgets();
    const auto isDown = [](const QPushButton* button) { return button->isDown(); };
    for (const QWidget* window : windows)
        if (window->isVisible() && std::ranges::any_of(window->findChildren<QPushButton*>(), isDown))
            return false;
    return underWay <= std::ranges::count_if(windows, [](const QWidget* window) {
               return window->isVisible() && (window->isModal() || window->windowType() == Qt::Popup);
           });
}

void Person::Until(const QString& what, const std::function<bool()>& holds) const {
    for (const QDeadlineTimer end(Patience);;) {
        bool isDone = false;
        See([&] {
            if (thrown)
                std::rethrow_exception(thrown);
            isDone = IsAtRest() && holds();
        });
        if (isDone)
            return;
        if (end.hasExpired())
            throw std::runtime_error(what.toStdString() + " has not come");
        QThread::msleep(Interval);
    }
}

} // namespace korvadex::tour
