// The system asks the program to end.
#pragma once

#include <QObject>

#include <functional>

namespace korvadex {

// Calls end in the event loop, for as long as the owner lives. Signals that the program was started to ignore stay
// ignored. On Windows the session says it (QGuiApplication::commitDataRequest), and nothing is to be done here.
void OnEndSignal(QObject* owner, std::function<void()> end);

} // namespace korvadex
