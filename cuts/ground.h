// Every command that changes the disk, each on a small drive of its own.
#pragma once

#include "platform/file_system.h"

#include <functional>
#include <string>
#include <vector>

namespace korvadex::test {

// Also "undo COMMAND" and "redo COMMAND".
std::vector<std::string> CutCommands();
std::vector<std::string> CommandsWithUndo(); // themselves
// The command whose ground this one has to lead back to: of "undo COMMAND" it is COMMAND; "" for none.
std::string CommandBefore(const std::string& command);
// Makes what the command needs below a new directory of the host, with names in which all is to be seen again: times,
// attributes, read-only files, links. isSimulatorApart: what comes before the command was done with the simulator on a
// volume of its own (as root: it is mounted).
void PrepareGround(const std::string& command, const std::string& hostDirectory, bool isSimulatorApart = false);
// The calls tell by the deletion of this, which is not there, that the command has ended and the program has not.
inline constexpr const char* CommandEndMark = "the command has ended";
// Starts the program there, gives the command and ends the program. Prints what is asked and told; each question is
// answered with Yes. appDir: of this installation, below C:\.
void RunCommandOn(const std::string& hostDirectory, const std::string& appDir, const std::string& command);
// What the user does for it.
std::string CommandSteps(const std::string& command);
// The same for any steps, with "undo", "redo" and "look" (which calls this) among them. False when the program does not
// stay.
bool DoOn(
    const std::string& hostDirectory, const std::string& appDir, const std::string& steps,
    const std::function<void()>& look = [] {});

} // namespace korvadex::test
