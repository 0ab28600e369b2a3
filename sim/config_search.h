// Looking through the configuration files of many aircraft at once, each file read one time only.
#pragma once

#include "package/command_context.h"
#include "package/walk.h"
#include "sim/configs_ahead.h"

#include <functional>
#include <set>
#include <span>
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

// Every such file below a directory, however many there are, and in what its links lead to: an aircraft may live on
// another drive, and reading it does no harm. All are found, and being read, once this stands.
class ConfigFiles {
  public:
    ConfigFiles(const FileSystem& fileSystem, const std::string& root, ConfigSearch wanted);
    ConfigFiles(const FileSystem& fileSystem, const Tree& tree, ConfigSearch wanted);

    // To be called once: hands each one to the visitor, in the order of a walk. Gives what could not be looked at:
    // while there is such a thing an answer "nobody uses it" is worth nothing. Without `progress` the main window's bar
    // shows how far it is.
    std::vector<Unseen> Visit(CommandDisplay& display, const ConfigVisitor& visitor,
                              const ConfigProgress& progress = {});

  private:
    bool IsWanted(const FileEntry& entry) const;
    void AddFiles(std::span<const FileEntry> entries, int depth);
    void AddUnreadable(const Tree& tree);
    void AddLink(const FileEntry& link, int depth);

    const FileSystem& files;
    const ConfigSearch search;
    std::set<std::string> visited; // what links led to
    std::vector<Unseen> unseen;
    ConfigsAhead configs{files};
};

// The same in one go.
std::vector<Unseen> VisitConfigFiles(CommandContext& context, const std::string& root, const ConfigSearch& search,
                                     const ConfigVisitor& visitor);

// True when the line, in lower case, speaks of a gauge.
bool IsGaugeLine(std::string_view lowerLine);

} // namespace korvadex
