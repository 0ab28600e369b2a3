// One measured piece of work in a process of its own: how long it took and how much memory it needed at most.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace korvadex::bench {

struct Measure {
    double seconds = 0;  // from the start of the process to its end
    double peakMega = 0; // resident memory at its highest, in 1,000,000 bytes
    bool isGood = false; // the process ended with 0
};

// In a copy of this process; work returns true when its result is whole.
Measure MeasureWork(const std::function<bool()>& work);
// A program of the system, its output thrown away.
Measure MeasureTool(const std::vector<std::string>& command);

} // namespace korvadex::bench
