// Which gauges the panels of the simulator use.
#pragma once

#include "package/command_context.h"
#include "sim/config_search.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace korvadex {

class GaugeUse {
  public:
    // Gives the gauges' names (see GaugeName); called on another thread while the panels are looked for.
    using ListNames = std::function<std::vector<std::string>()>;
    // Is told of panels after all have been found.
    using Progress = std::function<void(int done, int total)>;

    // A gauge is in use when a line of a panel.cfg contains its name, and "gauge" as well. Reads every panel.
    GaugeUse(CommandContext& context, const ListNames& listNames, const Progress& progress);

    // By the name's position in that list.
    bool IsUsed(std::size_t name) const { return isUsed[name]; }
    // What could not be looked at, and may use any of them.
    const std::vector<Unseen>& NotSearched() const { return unseen; }

  private:
    std::vector<bool> isUsed;
    std::vector<Unseen> unseen;
};

} // namespace korvadex
