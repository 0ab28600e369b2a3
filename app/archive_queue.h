// The archives that wait for Staging, in a file of their own: a restart finds them all again.
#pragma once

#include "package/locations.h"
#include "platform/file_system.h"

#include <string>
#include <vector>

namespace korvadex {

struct QueuedArchive {
    std::string path;
    std::string part = {};   // the directory of one aircraft in it; "" for the whole archive
    std::string reason = {}; // why it was left; "" while it just waits

    bool operator==(const QueuedArchive&) const = default;
};

struct FoundArchives {
    std::vector<QueuedArchive> archives;
    std::vector<std::string> unreadable; // directories
};
// These archives, and in the place of a directory among them all archives below it, in the order of a listing. What
// lies in one of the locations is passed over there.
FoundArchives FindArchives(const FileSystem& files, const Locations& locations, const std::vector<std::string>& paths);

inline constexpr const char* NoArchiveText = "No archive waits in the queue.";
inline constexpr const char* GoneArchiveReason = "It is not there.  Is its drive away, or was it moved?";
inline constexpr const char* NothingCameReason = "Nothing of it came into Staging.";
inline constexpr const char* OddLineReason = "This line of queue.txt does not name an archive.";

class ArchiveQueue {
  public:
    explicit ArchiveQueue(FileSystem& disk) : files(disk) {}

    // Reads what waits from this file, and keeps it there from now on unless it isToBeRead only. A failure other than
    // that of a file that is not there: nothing is known, and that file is never written over.
    Status Open(const std::string& path, bool isToBeRead);
    const std::vector<QueuedArchive>& Entries() const { return entries; }
    // One that names the same waits.
    bool Holds(const QueuedArchive& archive) const;
    // Which of them are there may have changed. True when any has come or gone.
    bool LookAgain();

    // These change what waits, also where the failure says that the file could not be written. No two name the same:
    // what waits already is not added again.
    Status Add(const std::vector<QueuedArchive>& archives);
    Status AddFirst(const std::vector<QueuedArchive>& archives);
    // Those that name the same as these.
    Status Remove(std::vector<QueuedArchive> archives);
    // What these name comes last, for the reasons that they bear.
    Status PutLast(std::vector<QueuedArchive> archives);
    // They get the reasons that these bear.
    Status SetReasons(std::vector<QueuedArchive> archives);

  private:
    bool IsSame(const QueuedArchive& a, const QueuedArchive& b) const;
    std::vector<QueuedArchive>::iterator Find(const QueuedArchive& archive);
    std::vector<QueuedArchive> NewOf(const std::vector<QueuedArchive>& archives);
    Status Save() const;

    FileSystem& files;
    std::string file;
    bool isReadOnly = true;
    Status unread;
    std::vector<QueuedArchive> entries;
};

} // namespace korvadex
