// What the commands of the last time have done, and the way back.
#pragma once

#include "journal/history_entry.h"
#include "journal/journaled_files.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace korvadex {

// What is kept; the oldest goes first. The last command is kept whatever it takes.
struct HistoryLimits {
    int commands = 30;
    std::uint64_t bytes = std::uint64_t{2} << 30;

    bool operator==(const HistoryLimits&) const = default;
};

// A moment in the work of a command.
struct HistoryMark {
    std::size_t records = 0;
    JournaledFiles::Known known = {};
};

// Packs (or unpacks) these files; the failures.
using Repack = std::function<std::vector<Status>(FileSystem& files, const std::vector<std::string>& paths, bool packs)>;

class History {
  public:
    History(FileSystem& disk, Repack repack);
    History(const History&) = delete;
    History& operator=(const History&) = delete;

    // What commands work with.
    JournaledFiles& Files() { return files; }
    // What lies below that.
    FileSystem& Disk() { return disk; }

    // Reads the history in this directory (ends in a backslash; it is made when it is needed). Who onlyLooks leaves the
    // directory alone: a command of another run may be at work in it.
    void Open(const std::string& historyDirectory, bool onlyLooks = false);
    const std::string& Directory() const { return directory; }
    // From now on things are kept in these.
    void SetLocations(const KeptLocations& keptLocations) { locations = keptLocations; }
    void SetLimits(const HistoryLimits& newLimits) { limits = newLimits; }
    const HistoryLimits& Limits() const { return limits; }

    // --- a command at work
    // One that has not been ended is, as it is.
    void Begin(const CommandTitle& title);
    // What it is about may come to be known while it works.
    bool IsRunning() const { return log != nullptr; }
    void SetSubject(const std::string& subject);
    const std::string& Subject() const { return running.title.subject; }
    const CommandTitle& Title() const { return running.title; }
    // The entry that it has when it stays; also after its end.
    int Item() const { return running.item; }
    // It has changed something that is still to be seen, and could be taken back.
    bool HasChanged() const;
    // The first change that the disk refused for no reason of the file's own.
    const Status& Trouble() const { return files.Trouble(); }
    // From now on others may put something there while the user reads what he is told: it is not the command's.
    void LookAround();
    // What the running command has done since the mark is taken back, and it goes on. The failures: what they name is
    // still the command's.
    HistoryMark Mark() const;
    std::vector<Status> TakeBackTo(const HistoryMark& mark) { return TakeBackIn("", mark); }
    // The same of what it has done in one directory: that is not kept, and nothing of it is there to be taken back any
    // more.
    std::vector<Status> ClearAway(const HistoryMark& mark, const std::string& where) { return TakeBackIn(where, mark); }
    // How it has left what it has done since the mark: known also when the drive goes before the command ends.
    void Remember(const HistoryMark& mark);
    // The command has come to its end. A failure says that it could not be written down; then, as when it is not to
    // stay, all that it had done was taken back (what could not be is told by Remains).
    Status End(bool isToStay = true);
    const std::vector<Status>& Remains() const { return remains; }
    // Lets go what exceeds the limits.
    void Prune();

    // --- what was cut off in the middle: the next start takes it back
    std::vector<HistoryEntry> CutOff() const;
    // The failures; then it can be tried again, unless all of it is gone for good. Afterwards the entry says that it
    // was cut off. away: the directories (each with its backslash) in which it had changed something, and whose drives
    // are not there.
    std::vector<Status> TakeBackCutOff(const HistoryEntry& entry, const std::vector<std::string>& away = {});
    // Leaves the rest of it as it is.
    void GiveUpCutOff(const HistoryEntry& entry);

    // --- the way back
    // The oldest first.
    const std::vector<HistoryEntry>& Entries() const { return entries; }
    // The command whose turn it is to be taken back, or done again; nullptr when there is none.
    const HistoryEntry* NextUndo() const;
    const HistoryEntry* NextRedo() const;
    // All that can be done again, the next one first: what was taken back since the last new command.
    std::vector<const HistoryEntry*> RedoOrder() const;
    // Takes the next one back (or does it again). "" when it is done; otherwise nothing has changed, and this is the
    // reason.
    std::string Undo();
    std::string Redo();
    // Its records; empty when they cannot be read.
    Journal ReadJournalOf(const HistoryEntry& entry) const;
    // All that is kept and within reach goes, and the list with it, but for the entries that must stay.
    void Empty();
    // Of those that could go: they are what the limits are about.
    int CommandCount() const;
    std::uint64_t KeptBytes() const;
    // What it keeps is on a drive that is not there now.
    bool IsAway(const HistoryEntry& entry) const;
    // No one else knows where these things of the user's are.
    bool MustStay(const HistoryEntry& entry) const;

  private:
    std::string LogOf(int number) const;
    std::string DoneOf(int number) const;
    HistoryEntry NewEntry(const CommandTitle& title);
    void Start(HistoryEntry entry);
    // Of the running command, what is remembered on drives that are not there now.
    std::vector<LeftPlace> RememberedAway() const;
    // What the ended command has left, as an entry of the history.
    Status Keep();
    // others: files that are to be on the disk before it.
    Status WriteEntry(const HistoryEntry& entry, const std::vector<std::string>& others = {});
    std::vector<Status> TakeBackAll(const HistoryEntry& entry, const std::vector<Record>& records,
                                    const std::vector<std::string>& away = {});
    // How far it has been taken back.
    void DeleteProgress(int number);
    std::string Reverse(const HistoryEntry& entry);
    void DropRunning();
    std::vector<Status> TakeBackIn(const std::string& where, const HistoryMark& mark); // "": wherever it was
    std::vector<Status> TryTakingBack(const std::string& where, const HistoryMark& mark);
    // Where things of a command that was cut off may be kept.
    std::vector<std::string> KeptIn(const HistoryEntry& entry, const std::vector<Record>& records) const;
    bool EndCutOff(HistoryEntry ended); // false when it could not be written down
    void Drop(const HistoryEntry& entry);
    void GiveUpKept(HistoryEntry& entry, const std::string& why);
    void MakeRoom(const std::string& directory, std::uint64_t bytes);
    bool MayGo(const HistoryEntry& entry) const { return !MustStay(entry) && !IsAway(entry); }
    HistoryEntry* OldestKeeping(const std::function<bool(const HistoryEntry&)>& isWanted);

    FileSystem& disk;
    const Repack repack;
    JournaledFiles files;
    std::string directory;
    bool isLookedAt = false; // only
    KeptLocations locations;
    HistoryLimits limits;
    std::vector<HistoryEntry> entries; // by item
    int lastNumber = 0;
    HistoryEntry running;
    std::unique_ptr<CommandLog> log; // while a command runs
    std::unique_ptr<KeptPlaces> kept;
    std::vector<Status> remains;
    std::vector<LeftPlace> seen; // by LookAround, when the log had so many records
    std::optional<std::size_t> seenRecords;
    std::map<std::string, LeftPlace> remembered; // by folded path
};

} // namespace korvadex
