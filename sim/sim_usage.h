// Who in the simulator uses what, found out once for many removals.
#pragma once

#include "package/command_context.h"
#include "sim/alias_users.h"
#include "sim/gauge_removal.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace korvadex {

class SimUsage {
  public:
    // Reads every panel.cfg and sound.cfg below MsfsDir & "aircraft\", each once.
    SimUsage(CommandContext& context, const std::vector<std::string>& packageNames);

    // As FindAliasUsers below MsfsDir & "aircraft\".
    AliasUsers FindUsers(std::string_view packageName, const std::string& kind, const std::string& leaveOut) const;
    // By a panel outside of the directory leaveOut, for the gauges that the simulator had; any other counts as used,
    // and each one while something there could not be looked at.
    bool IsGaugeUsed(const std::string& gaugeName, const std::string& leaveOut) const;
    // Those panels, full paths.
    std::vector<std::string> PanelsWithGauge(const std::string& gaugeName, const std::string& leaveOut) const;
    const GaugeOwners& Owners() const { return owners; }
    // The directory (ending in a backslash) is gone, and what it used is no longer used by it.
    void Forget(const std::string& directory);

  private:
    using Users = std::unordered_map<std::string, std::vector<std::size_t>>; // text -> files

    void Read(CommandContext& context, const std::string& kind, const std::vector<std::string>& packageNames,
              const std::vector<std::string>& gauges);

    // The files that have the text and are still there, outside of leaveOut.
    std::vector<std::string> Remaining(const Users& users, const std::string& text, const std::string& leaveOut) const;

    struct File {
        std::string path;
        bool isGone = false;
    };
    std::vector<File> files;
    Users aliasUsers, gaugeUsers;
    const GaugeOwners owners;
    std::unordered_map<std::string, std::vector<Unseen>> unseen; // by kind
};

} // namespace korvadex
