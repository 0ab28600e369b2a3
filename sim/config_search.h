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

using ConfigVisitor = std::function<Visit(const FileEntry& file, const std::vector<std::string>& lowerLines)>;

// Hands every file of that name (lower case) in the tree, its lines in lower case, to the visitor, in the
// tree's order, and moves the progress bar over them. Files below leaveOut (a directory ending in a
// backslash, or "") do not count. False when something was not looked at (a limit cut the list, a directory
// or a file could not be read): then an answer "nobody uses it" is worth nothing.
bool VisitConfigFiles(CommandContext& context, const Tree& tree, const std::string& fileName,
                      const std::string& leaveOut, const ConfigVisitor& visitor);

// True when the line, in lower case, speaks of a gauge.
bool IsGaugeLine(std::string_view lowerLine);

} // namespace korvadex
