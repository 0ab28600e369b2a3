// Looking through the configuration files of many aircraft at once, each file read one time only.
#pragma once

#include "package/command_context.h"
#include "package/walk.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

// The lines in lower case, for as long as the visit lasts.
using LowerLines = std::vector<std::string_view>;
using ConfigVisitor = std::function<void(const FileEntry& file, const LowerLines& lines)>;

struct ConfigSearch {
    std::string fileName;   // in lower case
    bool isEnding = false;  // files whose names end like that as well: oldpanel.cfg
    std::string leaveOut{}; // what lies below this directory (ending in a backslash) does not count
};

// What could not be looked at, though it may be such a file, or hold one.
struct Unseen {
    std::string path, reason;
};
// "C:\FS\aircraft\x  (a link that leads nowhere)", one to a line, in a message of its own words before and after.
std::string ListUnseen(const std::vector<Unseen>& unseen);

// Finds every such file below a directory, however many there are, and in what its links lead to, in the order of a
// walk: an aircraft may live on another drive, and reading it does no harm. Gives what could not be looked at: while
// there is such a thing an answer "nobody uses it" is worth nothing.
std::vector<Unseen> FindConfigFiles(const FileSystem& files, const std::string& root, const ConfigSearch& search,
                                    const std::function<void(const FileEntry&)>& found);

// The same, and hands each file to the visitor, read once, while the main window's bar shows how far it is.
std::vector<Unseen> VisitConfigFiles(CommandContext& context, const std::string& root, const ConfigSearch& search,
                                     const ConfigVisitor& visitor);
std::vector<Unseen> VisitConfigFiles(CommandContext& context, const Tree& tree, const ConfigSearch& search,
                                     const ConfigVisitor& visitor);

// True when the line, in lower case, speaks of a gauge.
bool IsGaugeLine(std::string_view lowerLine);

} // namespace korvadex
