// Many random add-ons, each on its roads; tools/random-roads starts it.
#include "tests/support/random_roads.h"

#include <cstdlib>
#include <iostream>
#include <string_view>

namespace {

void Print(const korvadex::test::RoadReport& report) {
    std::cout << report.roads << " roads, " << report.commands << " commands\n\nQuestions (yes/no):\n";
    for (const auto& [text, answers] : report.questions)
        std::cout << "  " << answers.yes << "/" << answers.no << "  " << text << "\n";
    for (const auto& [heading, texts] :
         {std::pair("Notices", &report.notices), std::pair("Refusals", &report.refusals)}) {
        std::cout << "\n" << heading << ":\n";
        for (const auto& [text, count] : *texts)
            std::cout << "  " << count << "  " << text << "\n";
    }
    std::cout << "\nViolations: " << report.violations.size() << "\n";
    for (const auto& violation : report.violations)
        std::cout << "  " << violation << "\n";
}

} // namespace

int main(int argumentCount, char** arguments) {
    std::uint64_t seed = 1;
    int first = 0, count = 200, walks = 0;
    for (int i = 1; i + 1 < argumentCount; i += 2) {
        const std::string_view option = arguments[i];
        const auto value = std::strtoull(arguments[i + 1], nullptr, 10);
        if (option == "--seed")
            seed = value;
        else if (option == "--count")
            count = static_cast<int>(value);
        else if (option == "--walks")
            walks = static_cast<int>(value);
        else if (option == "--only") {
            first = static_cast<int>(value);
            count = 1;
        }
    }
    korvadex::test::RoadReport report;
    for (int number = first; number < first + count; ++number)
        korvadex::test::TakeRoads(seed, number, report);
    for (int walk = 0; walk < walks; ++walk)
        korvadex::test::TakeWalk(seed + static_cast<std::uint64_t>(walk), 200, report);
    Print(report);
    return report.violations.empty() ? 0 : 1;
}
