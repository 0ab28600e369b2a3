// Looking through the configuration files of many aircraft at once, each file read one time only.
#pragma once

#include "package/command_context.h"
#include "package/walk.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

// What a visitor wants after one file.
enum class Visit { Continue, Stop };

// The lines in lower case, for as long as the visit lasts.
using LowerLines = std::vector<std::string_view>;
using ConfigVisitor = std::function<Visit(const FileEntry& file, const LowerLines& lines)>;
using ConfigProgress = std::function<void(int done, int total)>;

// Hands every file of that name (lower case) in the tree to the visitor, in the tree's order, each read once,
// and moves the main window's progress bar over them, or calls progress where that is given. Files below leaveOut (a directory ending in a
// backslash, or "") do not count. False when something was not looked at (a limit cut the list, a directory
// or a file could not be read): then an answer "nobody uses it" is worth nothing.
bool VisitConfigFiles(CommandContext& context, const Tree& tree, const std::string& fileName,
                      const std::string& leaveOut, const ConfigVisitor& visitor,
                      const ConfigProgress& progress = {});

// True when the line, in lower case, speaks of a gauge.
bool IsGaugeLine(std::string_view lowerLine);

} // namespace korvadex
