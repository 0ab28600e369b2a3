// The main window's progress bar for the length of one piece of work.
#pragma once

#include "package/command_context.h"

namespace korvadex {

// Shown from 0 to maximum while the object lives, hidden when it goes, however the work ends.
class ProgressBar {
  public:
    ProgressBar(MainWindow& shownIn, int maximum) : window(shownIn) { window.ShowProgress(0, maximum); }
    ~ProgressBar() { window.HideProgress(); }
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void Set(int newValue) {
        value = newValue;
        window.SetProgress(value);
    }
    void Step() { Set(value + 1); }
    // Sets the value again: keeps the window painted in the middle of a long step.
    void Touch() { window.SetProgress(value); }

  private:
    MainWindow& window;
    int value = 0;
};

} // namespace korvadex
