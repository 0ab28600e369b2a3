#include "ui/painting.h"

#include <QCoreApplication>

namespace korvadex {

void Painting::Step() {
    constexpr int interval = 40; // ms
    if (last.isValid() && last.elapsed() < interval)
        return;
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    last.start();
}

} // namespace korvadex
