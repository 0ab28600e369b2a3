// Which archives of the queue the commands of the history have taken, in a file beside it: with a command that is taken
// back they come back, also after a restart.
#pragma once

#include "app/archive_queue.h"
#include "journal/history_entry.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace korvadex {

class TakenArchives {
  public:
    explicit TakenArchives(FileSystem& disk) : files(disk) {}

    // What this file says, and it is kept there from now on unless it isToBeRead only. Without it nothing is known; one
    // that cannot be read is never written over.
    void Open(const std::string& path, bool isToBeRead);
    // The entry has taken these; of the commands that are not in the history any more nothing is kept. A failure says
    // that it is known for this run only.
    Status Note(const HistoryEntry& entry, const std::vector<QueuedArchive>& archives,
                const std::vector<HistoryEntry>& history);
    std::vector<QueuedArchive> By(const HistoryEntry& entry) const;

  private:
    Status Save() const;

    FileSystem& files;
    std::string file;
    Status unread; // why the file could not be read
    bool isReadOnly = true;
    // By the entry's item and the time when it was done first: items count from 1 again in a history that was emptied.
    std::map<std::pair<std::string, std::string>, std::vector<QueuedArchive>> taken;
};

} // namespace korvadex
