// From Windows paths to the names that a case-sensitive host has stored.
#pragma once

#include "platform/drive_map_posix.h"
#include "platform/file_system.h"

#include <sys/stat.h>

#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace korvadex {

// Where a path leads on the host. When nothing is there, the name is the one that a new entry would get: the
// stored names of the directories that exist, then the rest as given.
struct HostName {
    std::string path;
    bool exists = false;
};

// A name of the host may hold a backslash, which parts the components of a Windows path. Inside the program a
// private letter stands for it, so that `panel\main.bmp` in one piece is never taken for main.bmp in panel.
std::string ShownName(std::string_view hostName);
std::string HostSpelling(std::string_view shownName);

// Finds names whatever their case: the exact name first; only on a miss is the directory read. What was read
// is kept while the directory's own time of change shows that nothing else has touched it. May be called on several
// threads at once.
class HostNames {
  public:
    explicit HostNames(DriveMap drives) : map(std::move(drives)) {}

    // BadName for a path without a known drive, or with a component that no Windows path can have.
    Result<HostName> Resolve(const std::string& path);
    // To be called after the program itself has added, renamed or removed an entry.
    void NoteAdded(const std::string& hostPath);
    void NoteRemoved(const std::string& hostPath);

    const DriveMap& Drives() const { return map; }

  private:
    struct Listing {
        std::string directory;
        dev_t device;
        ino_t inode;
        timespec changed;
        std::unordered_map<std::string, std::string> names; // folded -> as stored
    };

    std::optional<std::string> FindName(const std::string& directory, std::string_view name);
    Listing* Cached(const std::string& directory);

    DriveMap map;
    std::mutex mutex;            // guards the listings
    std::list<Listing> listings; // the latest first
};

} // namespace korvadex
