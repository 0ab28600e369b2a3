// The commands of the last time: what the window History shows of them, and does.
#pragma once

#include "app/settings.h"
#include "journal/file_changes.h"
#include "journal/history.h"
#include "package/dialogs.h"

#include <functional>
#include <string>
#include <vector>

namespace korvadex {

// Of the list, as text.
struct HistoryRow {
    std::string time, command, package, files, size, state;
    std::string reason = {}; // of a state that cannot be changed

    bool operator==(const HistoryRow&) const = default;
};

// Rows count from 0, the newest command first. kx.ini is written by the caller.
class HistoryEditor {
  public:
    // reverse: takes the next command back or does it again, and shows what has come of it; false, after a message,
    // when it could not.
    using Reverse = std::function<bool(const HistoryEntry* next, bool isUndo)>;
    HistoryEditor(History& ofProgram, const FileSystem& fileSystem, UserDialogs& userDialogs, Settings& programSettings,
                  Reverse reverseNext)
        : history(ofProgram), files(fileSystem), user(userDialogs), settings(programSettings),
          reverse(std::move(reverseNext)) {}

    std::vector<HistoryRow> Rows() const;
    std::vector<FileChange> FilesOf(int row) const;

    // How many commands have to be taken back, or done again, until this one is as well; 0 when it cannot be.
    int UndosTo(int row) const;
    int RedosTo(int row) const;
    // So many of them, after a question when there are more than one; stops at the first that cannot be.
    void TakeBackTo(int row);
    void DoAgainTo(int row);

    // After a question.
    void Empty();
    // The same where it lets something go.
    void SetLimits(const HistoryLimits& limits);
    const HistoryLimits& Limits() const { return settings.historyLimits; }
    // How much is kept, and where.
    std::string DescribeKept() const;

  private:
    const HistoryEntry& EntryAt(int row) const;
    void ReverseTo(int row, int count, bool isUndo);
    // The directories in which something is kept that is within reach, or away.
    std::string NameKept(bool isAway) const;

    History& history;
    const FileSystem& files;
    UserDialogs& user;
    Settings& settings;
    const Reverse reverse;
};

} // namespace korvadex
