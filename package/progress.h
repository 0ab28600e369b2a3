// The main window's progress bar for the length of one piece of work.
#pragma once

#include "package/command_context.h"

namespace korvadex {

// Thrown at a step of the bar when the user has stopped the command: what it has done is taken back by whoever gave it,
// unless it stays as this says, in whole sentences.
struct Stopped {
    std::string stays = {};
};

// Shown from 0 to maximum while the object lives, hidden when it goes, however the work ends.
class ProgressBar {
  public:
    ProgressBar(CommandDisplay& shownIn, int maximum) : display(shownIn) { display.ShowProgress(0, maximum); }
    ~ProgressBar() { display.HideProgress(); }
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void Set(int newValue) {
        value = newValue;
        display.SetProgress(value);
    }
    void Step() { Set(value + 1); }
    // Sets the value again: keeps the window painted in the middle of a long step.
    void Touch() { display.SetProgress(value); }

  private:
    CommandDisplay& display;
    int value = 0;
};

} // namespace korvadex
