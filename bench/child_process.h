// Measured work in processes of their own: how long it took and how much memory it needed at most, ours beside that of
// tools.
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

// Several measures of the same.
struct Turns {
    std::vector<double> seconds;
    double peakMega = 0;

    void Add(const Measure& measure);
    double Median() const; // in seconds
};

struct Contender {
    std::string name;
    std::function<Measure()> run;
    double limit = 0; // ours takes at most so much of its time; 0 where nothing was set
};

struct Work {
    std::string name;
    std::function<void()> prepare;     // before each turn, not measured
    std::vector<Contender> contenders; // ours first
    std::function<bool()> isDone;      // what ours left on the disk is right; asked after its first turn
};

// What a contender runs.
std::function<Measure()> Ours(std::function<bool()> work);
std::function<Measure()> Tool(std::vector<std::string> command);

// One turn of each contender; the name of one that failed, "" when all did their work.
std::string TakeTurns(const Work& work, std::vector<Turns>& turns);

} // namespace korvadex::bench
