// Gauges in the simulator that no aircraft needs any more: found, shown, and deleted where the user says so.
#pragma once

#include "package/command_context.h"

#include <functional>
#include <string>
#include <vector>

namespace korvadex {

// frmUnusedGauges.
struct UnusedGauge {
    std::string name, path; // lstFileList shows the name, with its directory where two have the same
};
struct UnusedGaugesForm {
    // To be called once, when the window stands: the search, which moves the window's progress bar (from 1 to
    // maximum) on its way.
    std::function<std::vector<UnusedGauge>(const std::function<void(int value, int maximum)>& progress)> search;
    // cmdDelete with the selected rows; what the list is to show from then on.
    std::function<std::vector<UnusedGauge>(const std::vector<int>& rows)> remove;
};

// Asks, searches and shows frmUnusedGauges. The search itself deletes nothing.
void ListUnusedGauges(CommandContext& context);

} // namespace korvadex
