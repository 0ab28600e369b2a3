// Keeps a window painted while a command runs.
#pragma once

#include <QElapsedTimer>

class QAbstractButton;

namespace korvadex {

class Painting {
  public:
    // The next step paints.
    void Start() { last.invalidate(); }
    // Paints what waits for it, though not so often that the command gets slow. Keys and clicks wait until it has
    // ended.
    void Step();
    // From now on this button works in the middle of the command, and Esc presses it; all other keys and clicks are
    // lost. nullptr: they wait again.
    void SetStop(QAbstractButton* button) { stop = button; }

  private:
    QElapsedTimer last;
    QAbstractButton* stop = nullptr;
};

} // namespace korvadex
