// Who in the simulator uses what, found out once for many removals.
#pragma once

#include "sim/config_usage.h"
#include "sim/gauge_removal.h"

#include <string>
#include <vector>

namespace korvadex {

class SimUsage : public ConfigUsage {
  public:
    // Reads what is below MsfsDir & "aircraft\".
    SimUsage(CommandContext& context, const std::vector<std::string>& packageNames);

    // By a panel outside of the directory leaveOut, for the gauges that the simulator had; any other counts as used,
    // and each one while something there could not be looked at.
    bool IsGaugeUsed(const std::string& gaugeName, const std::string& leaveOut) const;
    // Those panels, full paths.
    std::vector<std::string> PanelsWithGauge(const std::string& gaugeName, const std::string& leaveOut) const;
    const GaugeOwners& Owners() const { return owners; }

  private:
    const GaugeOwners owners;
};

} // namespace korvadex
