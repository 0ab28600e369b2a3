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

struct ConfigSearch {
    std::string fileName;      // in lower case
    bool isEnding = false;     // files whose names end like that as well: oldpanel.cfg
    std::string leaveOut{};    // what lies below this directory (ending in a backslash) does not count
    ConfigProgress progress{}; // in place of the main window's bar
};

// What could not be looked at, though it may be such a file, or hold one.
struct Unseen {
    std::string path, reason;
};
// "C:\FS\aircraft\x  (a link that leads nowhere)", one to a line, in a message of its own words before and after.
std::string ListUnseen(const std::vector<Unseen>& unseen);

// All below a directory that a search looks at: no limit cuts it.
Tree WalkToSearch(const FileSystem& files, const std::string& root);

// Hands every such file in the tree, and in what its links lead to, to the visitor, in the tree's order, each read
// once. Gives what could not be looked at: while there is such a thing an answer "nobody uses it" is worth nothing.
std::vector<Unseen> VisitConfigFiles(CommandContext& context, const Tree& tree, const ConfigSearch& search,
                                     const ConfigVisitor& visitor);

// True when the line, in lower case, speaks of a gauge.
bool IsGaugeLine(std::string_view lowerLine);

} // namespace korvadex
