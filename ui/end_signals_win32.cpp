#include "ui/end_signals.h"

namespace korvadex {

void OnEndSignal(QObject* /*owner*/, std::function<void()> /*end*/) {}

} // namespace korvadex
