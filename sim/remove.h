// Taking an installed package out of the simulator without a trace.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

#include <string>
#include <vector>

namespace korvadex {

class SimUsage;

// How a removal has gone, as far as the user has not been told.
struct RemovalOutcome {
    Changes changes;
    std::string removed;                      // the installed directory, ending in a backslash; "" where it was not
    std::string kept;                         // why the package was left; "" where it was not, or the user knows why
    std::string unseen;                       // what may use the package and could not be looked at, one to a line
    std::vector<std::string> remainingGauges; // that could not be deleted, with the reason
};

// Removes the installed directory and the gauges that came with it, unless another aircraft uses its panel or sound via
// alias, and asks before files are lost that the package does not have. The usage, where it is given, spares the search
// for users; whoever gives it lets it forget what was removed, once that stays so. In QuietMode nothing is asked, nor
// told but of the users of an alias: then the outcome says it.
RemovalOutcome RemoveFromSim(CommandContext& context, const LoadedPackage& package, const SimUsage* usage = nullptr,
                             bool QuietMode = false);

} // namespace korvadex
