// Cuts every command at each call by which it changes the disk, and looks at what the next start makes of it;
// tools/cuts starts it, and it starts itself.
//
//   --list                              the commands
//   --run DIRECTORY COMMAND APPDIR      gives one there
//   --restart DIRECTORY APPDIR          starts the program there, and ends it
//   [--mode MODE] [--commands A,B] [--every N] [--jobs N] [--at N]
#include "cuts/ground.h"
#include "cuts/trials.h"

#include <iostream>
#include <map>
#include <sstream>

namespace korvadex::test {
namespace {

int Main(const std::vector<std::string>& arguments) {
    const std::string what = arguments.empty() ? "" : arguments[0];
    if (what == "--run") {
        RunCommandOn(arguments.at(1), arguments.at(3), arguments.at(2));
        return 0;
    }
    if (what == "--restart")
        return DoOn(arguments.at(1), arguments.at(2), "") ? 0 : 1;

    auto commands = CutCommands();
    if (what == "--list") {
        for (const auto& command : commands)
            std::cout << command << "\n";
        return 0;
    }
    std::map<std::string, std::string> options;
    for (std::size_t i = 0; i + 1 < arguments.size(); i += 2)
        options[arguments[i]] = arguments[i + 1];
    const auto number = [&](const char* option, int usual) {
        return options.contains(option) ? std::stoi(options[option]) : usual;
    };
    const Trials trials = {.mode = options.contains("--mode") ? options["--mode"] : "kill",
                           .every = number("--every", 1),
                           .jobs = number("--jobs", 1),
                           .only = number("--at", 0)};
    if (options.contains("--commands")) {
        commands.clear();
        std::istringstream names(options["--commands"]);
        for (std::string name; std::getline(names, name, ',');)
            commands.push_back(name);
    }
    int neither = 0;
    for (const auto& command : commands)
        neither += TryCommand(command, trials);
    std::cout << trials.mode << ": " << commands.size() << " commands, " << neither
              << " cuts that left neither what was before nor what is after\n";
    return neither == 0 ? 0 : 1;
}

} // namespace
} // namespace korvadex::test

int main(int count, char** arguments) {
    try {
        return korvadex::test::Main({arguments + 1, arguments + count});
    } catch (const std::exception& problem) {
        std::cerr << problem.what() << "\n";
        return 2;
    }
}
