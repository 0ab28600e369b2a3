// The commands of the command line.
#pragma once

#include "app/program.h"
#include "cli/arguments.h"
#include "cli/command_line.h"
#include "cli/terminal_user.h"
#include "cli/terminal_window.h"

#include <span>
#include <string>
#include <vector>

namespace korvadex {

struct CommandRun {
    Program& program;
    TerminalUser& user;
    TextScreen& screen;
    const Arguments& arguments;
    const CommandLineHost& host;
    std::vector<std::string> words; // behind the command
};

struct LineCommand {
    const char* name;
    const char* usage;        // what stands behind the name
    const char* help;         // in a line
    bool (*run)(CommandRun&); // false when not all was done, as far as no warning says so
    RunFor runFor = RunFor::Commands;
    std::size_t fewest = 0, most = 0; // words
    const char* options = "";         // that it knows, beside those of all commands
    bool looksWithoutWords = false;
};

inline constexpr std::size_t AnyNumber = 1'000'000;

std::span<const LineCommand> LineCommands();

} // namespace korvadex
