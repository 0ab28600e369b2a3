// Sends random add-ons through the whole program and compares trees: nothing of a kept configuration is lost without
// a question, the simulator ends as it began, and what is said is true.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace korvadex::test {

struct RoadReport {
    struct Answers {
        int yes = 0, no = 0; // OK counts as yes
    };
    int roads = 0, commands = 0;
    std::map<std::string, Answers> questions; // their texts without names and paths
    std::map<std::string, int> notices;       // the same of what only informs
    std::map<std::string, int> refusals;
    std::vector<std::string> violations; // each with how to see it again
};

// Makes one add-on of these two numbers and takes it on all its roads.
void TakeRoads(std::uint64_t seed, int number, RoadReport& report);
// So many commands in any order, with undos, redos and restarts among them: each undo gives back what was there before
// the command, and each redo what was there after it, to the byte, the time and the attributes. The first violation
// ends it.
void TakeWalk(std::uint64_t seed, int commands, RoadReport& report);

} // namespace korvadex::test
