#include "cli/terminal_window.h"

#include <algorithm>

namespace korvadex {

void TerminalWindow::ShowProgress(int minimum, int maximum) {
    from = minimum;
    to = std::max(maximum, minimum + 1);
    SetProgress(minimum);
}

void TerminalWindow::SetProgress(int value) {
    if (canStop)
        heed();
    screen.ShowProgress(static_cast<int>(100LL * (std::clamp(value, from, to) - from) / (to - from)), status);
}

void TerminalWindow::ShowFileList(const std::string&, const std::vector<ListLine>& lines) {
    for (const ListLine& line : lines)
        screen.Say(LineText(line));
}

std::optional<WindowGeometry> TerminalWindow::Geometry() const {
    if (!saved.top || !saved.left || !saved.height || !saved.width)
        return std::nullopt;
    return WindowGeometry{*saved.top, *saved.left, *saved.height, *saved.width};
}

} // namespace korvadex
