#include "sim/sim_usage.h"

#include "platform/windows_path.h"
#include "sim/gauges.h"

#include <algorithm>

namespace korvadex {

namespace {

std::vector<std::string> GaugesOf(const CommandContext& context) {
    std::vector<std::string> gauges;
    if (const auto entries = context.files.List(context.locations.Gauges())) {
        for (const DirectoryEntry& entry : *entries)
            gauges.push_back(GaugeName(entry.name));
    }
    return gauges;
}

} // namespace

SimUsage::SimUsage(CommandContext& context, const std::vector<std::string>& packageNames)
    : ConfigUsage(context, context.locations.Aircraft(), packageNames, GaugesOf(context)), owners(context) {}

bool SimUsage::IsGaugeUsed(const std::string& gaugeName, const std::string& leaveOut) const {
    const auto isElsewhere = [&](const std::string& path) { return !IsAtOrBelow(path, leaveOut); };
    return !gaugeUsers.contains(gaugeName) || std::ranges::any_of(unseen.at("panel"), isElsewhere, &Unseen::path) ||
           !PanelsWithGauge(gaugeName, leaveOut).empty();
}

std::vector<std::string> SimUsage::PanelsWithGauge(const std::string& gaugeName, const std::string& leaveOut) const {
    return Remaining(gaugeUsers, gaugeName, leaveOut);
}

} // namespace korvadex
