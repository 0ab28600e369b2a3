// The program without windows: one command of its command line.
#pragma once

#include "cli/screen.h"
#include "platform/file_system.h"
#include "platform/launcher.h"

#include <functional>
#include <string>
#include <vector>

namespace korvadex {

// What the command line answers.
enum ExitCode : int {
    AllDone = 0,
    NotDone = 1,      // nothing, or not all of it
    QuestionOpen = 2, // nothing was changed, or of many packages not those that it was about
    WrongUsage = 3
};

struct CommandLineHost {
    FileSystem& files;
    Launcher& launcher;
    std::function<std::string()> appDir;                     // ends in a backslash; may throw std::runtime_error
    std::function<std::string(const std::string&)> absolute; // of a path of the host
    std::function<void()> noteInterrupts;                    // from now on
    std::function<bool()> wasInterrupted;
};

// arguments: without the name of the program.
int RunCommandLine(const std::vector<std::string>& arguments, const Streams& streams, const CommandLineHost& host);

} // namespace korvadex
