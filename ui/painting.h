// Keeps a window painted while a command runs.
#pragma once

#include <QElapsedTimer>

namespace korvadex {

class Painting {
  public:
    // The next step paints.
    void Start() { last.invalidate(); }
    // Paints what waits for it, though not so often that the command gets slow. Keys and clicks wait until it has
    // ended.
    void Step();

  private:
    QElapsedTimer last;
};

} // namespace korvadex
