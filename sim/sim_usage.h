// Who in the simulator uses what, found out once for many removals.
#pragma once

#include "package/command_context.h"
#include "sim/gauge_removal.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace korvadex {

// What is looked for in a panel.cfg or sound.cfg (kind "panel", "sound") of the simulator to find the users of a
// package: its name, and its name with "_" for blanks, before "\" & kind; in lower case.
std::vector<std::string> AliasTexts(std::string_view packageName, const std::string& kind);

class SimUsage {
  public:
    // Reads every panel.cfg and sound.cfg below MsfsDir & "aircraft\", each once.
    SimUsage(CommandContext& context, const std::vector<std::string>& packageNames);

    // False when something could not be looked at: then the answers are worth nothing.
    bool IsComplete() const { return isComplete; }
    // The configuration files outside of the directory leaveOut that use the package's panel or sound.
    std::vector<std::string> AliasUsers(std::string_view packageName, const std::string& kind,
                                        const std::string& leaveOut) const;
    // By a panel outside of the directory leaveOut, for the gauges that the simulator had; any other counts as used.
    bool IsGaugeUsed(const std::string& gaugeName, const std::string& leaveOut) const;
    const GaugeOwners& Owners() const { return owners; }
    // The directory (ending in a backslash) is gone, and what it used is no longer used by it.
    void Forget(const std::string& directory);

  private:
    using Users = std::unordered_map<std::string, std::vector<std::size_t>>; // text -> files

    void Read(CommandContext& context, const std::string& kind, const std::vector<std::string>& packageNames,
              const std::vector<std::string>& gauges);

    struct File {
        std::string path;
        bool isGone = false;
    };
    std::vector<File> files;
    Users aliasUsers, gaugeUsers;
    const GaugeOwners owners;
    bool isComplete = true;
};

} // namespace korvadex
