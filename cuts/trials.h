// One command, cut at each of its calls, and what the next start makes of it.
#pragma once

#include <string>

namespace korvadex::test {

struct Trials {
    std::string mode = "kill"; // tools/cuts says which there are
    int every = 1;             // of so many calls one
    int jobs = 1;              // at the same time
    int only = 0;              // 0, or the one call: all is printed, and the ground stays
};

// Prints what came of each. The number of those that ended neither as before nor as after the command.
int TryCommand(const std::string& command, const Trials& trials);

} // namespace korvadex::test
