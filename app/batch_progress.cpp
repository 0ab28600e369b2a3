#include "app/batch_progress.h"

#include <algorithm>

namespace korvadex {

namespace {

constexpr int StepsOfPackage = 10;

} // namespace

BatchProgress::BatchProgress(CommandDisplay& shownIn, MainWindow& mainWindow, std::size_t packages,
                             std::function<bool()> wantsToStop)
    : display(shownIn), window(mainWindow), count(static_cast<int>(packages)), isStopped(std::move(wantsToStop)) {
    window.OfferStop(true);
    display.ShowProgress(0, std::max(count, 1) * StepsOfPackage);
}

BatchProgress::~BatchProgress() {
    window.OfferStop(false);
    display.HideProgress();
}

bool BatchProgress::Next(const PackageRef& package) {
    if (isStopped())
        return false;
    ++turn;
    display.ShowStatus(std::to_string(turn) + " of " + std::to_string(count) + ": " + package.name);
    HideProgress();
    return true;
}

void BatchProgress::ShowProgress(int minimum, int maximum) {
    from = minimum;
    to = std::max(maximum, minimum + 1);
    SetProgress(minimum);
}

void BatchProgress::SetProgress(int value) {
    const int part = turn > 0 ? std::clamp(value - from, 0, to - from) * StepsOfPackage / (to - from) : 0;
    display.SetProgress(std::max(turn - 1, 0) * StepsOfPackage + part);
}

void BatchProgress::HideProgress() {
    from = 0;
    to = 1;
    SetProgress(0);
}

void BatchProgress::ShowStatus(const std::string& text) {
    if (!notes)
        display.ShowStatus(text);
    else if (!text.empty())
        notes->push_back(text);
}

void BatchProgress::ShowFileList(const std::string& caption, const std::vector<ListLine>& lines) {
    if (!notes)
        return display.ShowFileList(caption, lines);
    std::string text = caption;
    for (const char* before = " "; const ListLine& line : lines)
        text += std::exchange(before, ", ") + line.package.name;
    notes->push_back(text);
}

} // namespace korvadex
