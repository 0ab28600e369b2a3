// The gauges that go when an aircraft is taken out of the simulator: those that came with packages, with the last of
// the packages that has them. One that stood there before stays.
#pragma once

#include "package/command_context.h"
#include "package/walk.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace korvadex {

class SimUsage;

// Which installed aircraft have a gauge in their records.
class GaugeOwners {
  public:
    explicit GaugeOwners(CommandContext& context);
    // Their directories (each ends in a backslash) for a gauge's file name.
    const std::vector<std::string>& Of(std::string_view gauge) const;

  private:
    std::unordered_map<std::string, std::vector<std::string>> owners; // by lower-case file name
};

// Takes out the gauges that came with the aircraft installed in the directory (ends in a backslash), before it goes
// itself: its own panel does not count any more. ownGauges are those of its package. One that another aircraft's record
// has, or that another panel names, stays and is handed on to the record of that aircraft; without a record it stays
// for good. The usage, where it is given, knows the panels and the records. Gives the gauges that could not be deleted,
// each with the reason; a failure when one could not be handed on, and then none was deleted.
Result<std::vector<std::string>> TakeOutGauges(CommandContext& context, const PackageRef& package,
                                               const std::vector<FileEntry>& ownGauges, const std::string& directory,
                                               const SimUsage* usage);

} // namespace korvadex
