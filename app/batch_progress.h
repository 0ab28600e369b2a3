// What is shown while many packages are gone through: one bar over all of them, and "17 of 120: Pellmoor P12".
#pragma once

#include "app/main_window.h"

#include <functional>
#include <string>
#include <vector>

namespace korvadex {

// The bar of each package's command moves a part of this one. While it lives the user can stop.
class BatchProgress : public CommandDisplay {
  public:
    BatchProgress(CommandDisplay& shownIn, MainWindow& mainWindow, std::size_t packages,
                  std::function<bool()> wantsToStop);
    ~BatchProgress() override;
    BatchProgress(const BatchProgress&) = delete;
    BatchProgress& operator=(const BatchProgress&) = delete;

    // The turn of the next package. False when the user has had enough.
    bool Next(const PackageRef& package);

    // Where texts and lists go that a command shows; without it, where they always do.
    std::vector<std::string>* notes = nullptr;

    void ShowProgress(int minimum, int maximum) override;
    void SetProgress(int value) override;
    void HideProgress() override;
    void ShowStatus(const std::string& text) override;
    void ShowFileList(const std::string& caption, const std::vector<ListLine>& lines) override;

  private:
    CommandDisplay& display;
    MainWindow& window;
    const int count;
    const std::function<bool()> isStopped;
    int turn = 0;
    int from = 0, to = 1; // of the bar of the command
};

} // namespace korvadex
