// The part of History that takes back what did not come to its end: a running command, or one that was cut off.
#include "journal/history.h"
#include "journal/history_names.h"
#include "journal/take_back.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <utility>

namespace korvadex {

namespace {

constexpr const char* CutOffReason = "It was cut off, and has been taken back.";
constexpr const char* LostReason = "It was cut off, and has been taken back but for what could not be kept.";
constexpr const char* RemainsReason = "Not all of it could be taken back.";

// What a command has done since a mark; numbers: of each record in its log.
struct Since {
    std::vector<Record> records;
    std::vector<std::size_t> numbers;

    // Times are given back last, but for those of directories that are not there under this name any more.
    bool IsGivenLast(std::size_t i) const {
        const auto hasBrought = [&](const Record& earlier) {
            return earlier.kind != RecordKind::DirectoryTime &&
                   IsAtOrBelow(AddBackslash(records[i].path), AddBackslash(earlier.path));
        };
        return records[i].kind == RecordKind::DirectoryTime &&
               std::none_of(records.begin(), records.begin() + static_cast<std::ptrdiff_t>(i), hasBrought);
    }
};

Since OfDirectory(const Since& since, const std::string& where) {
    Since wanted;
    for (std::size_t i = 0; i < since.records.size(); ++i)
        if (const Record& record = since.records[i];
            IsAtOrBelow(record.path, where) && record.kind != RecordKind::DirectoryTime) {
            wanted.records.push_back(record);
            wanted.numbers.push_back(since.numbers[i]);
        }
    return wanted;
}

} // namespace

std::vector<Status> History::TakeBackIn(const std::string& where, const HistoryMark& mark) {
    if (!log)
        return {};
    // Another program may have looked at a file just then.
    const auto failures = TryTakingBack(where, mark);
    return failures.empty() ? failures : TryTakingBack(where, mark);
}

std::vector<Status> History::TryTakingBack(const std::string& where, const HistoryMark& mark) {
    Since since{log->Records(mark.records), log->Numbers(mark.records)};
    auto known = mark.known;
    if (!where.empty()) {
        since = OfDirectory(since, where);
        known = files.Knows();
        known.made.Note(where, false);
    }
    KeptPlaces places(disk, locations, running.key);
    std::vector<std::string> leftovers;
    TakeBackTools tools = {.files = disk, .remove = {}, .repack = {}, .leavesOthers = true};
    tools.remove = [&](const std::string& path) {
        if (const auto info = disk.Info(path); info && info->kind == EntryKind::File)
            return DeleteOne(disk, path); // nobody has had it before
        const auto place = places.PlaceFor(path);
        if (place && !place->newDirectory.empty())
            leftovers.push_back(place->newDirectory);
        return place ? disk.Rename(path, place->path) : place.status();
    };
    tools.repack = [&](const std::vector<std::string>& paths) {
        return repack(files, paths, running.title.repacking == Repacking::Unpacks);
    };
    // What comes may be kept in the same directories.
    tools.noteDone = [&](std::size_t i) {
        if (!since.IsGivenLast(i) && since.records[i].kind != RecordKind::KeptFrom)
            log->Void(since.numbers[i]);
    };
    tools.flushDone = [&] { static_cast<void>(log->Flush()); };
    std::vector<Status> failures;
    files.Amend(known, [&] {
        failures = TakeBack(since.records, tools, true);
        for (std::size_t i = 0; i < since.records.size() && failures.empty(); ++i)
            if (since.IsGivenLast(i))
                log->Void(since.numbers[i]);
        // Safe before the next change: what that sets aside must not be taken for something of these.
        static_cast<void>(log->Flush());
        for (const std::string& leftover : leftovers)
            DeleteNumbered(disk, leftover);
        for (const std::string& own : places.Directories())
            if (!kept->Directories().contains(own))
                DeleteKept(disk, own);
    });
    return failures;
}

std::vector<Status> History::TakeBackAll(const HistoryEntry& entry, const std::vector<Record>& records,
                                         const std::vector<std::string>& away) {
    KeptPlaces places(disk, locations, entry.key);
    const auto remove = [&](const std::string& path) {
        const auto place = places.PlaceFor(path);
        if (place)
            return disk.Rename(path, place->path);
        const auto info = disk.Info(path);
        if (IsRunning() && place.fault() == FileFault::DiskFull && info && info->kind != EntryKind::Directory)
            return DeleteOne(disk, path); // nobody has had it before
        return Status{place.fault(), path, place.status().nativeCode};
    };
    const auto repackBack = [&](const std::vector<std::string>& paths) {
        return repack(files, paths, (entry.title.repacking == Repacking::Packs) == (entry.state == EntryState::Undone));
    };
    // What is taken back already must not be done again: what then stands in its place is the user's.
    TakeBackTools tools = {disk, remove, repackBack};
    std::string path;
    for (int turn = 1; path.empty() || disk.Info(path); ++turn) {
        path = directory + NameOfNumber(entry.number) + ".back" + std::to_string(turn);
        const auto text = ReadBytes(disk, path);
        if (const auto owner = text ? ReadEntry(*text) : std::nullopt; owner && owner->key == entry.key)
            for (const std::size_t done : ReadJournal(*text).voids)
                tools.done.insert(done);
    }
    CommandLog progress(disk, path, LineOf(entry));
    tools.noteDone = [&](std::size_t number) {
        static_cast<void>(progress.Append(Record{.kind = RecordKind::Void, .size = number}));
    };
    tools.flushDone = [&] { static_cast<void>(progress.Flush()); };
    tools.away = away;
    return TakeBack(records, tools, true);
}

void History::DeleteProgress(int number) {
    for (int turn = 1;; ++turn)
        if (!disk.Delete(directory + NameOfNumber(number) + ".back" + std::to_string(turn)))
            return;
}

// All of it is taken back: what it had made is of no use to anybody.
void History::DropRunning() {
    log->Close();
    if (!std::ranges::all_of(remains, IsGoneForGood)) // its things stay where they are kept
        return GiveUpCutOff(running);
    for (const std::string& location : locations)
        DeleteKept(disk, location + std::string(KeptDirectoryName) + "\\" + running.key + "\\");
    for (const std::string& keptIn : kept->Directories())
        DeleteKept(disk, keptIn);
    if (disk.Delete(LogOf(running.number)))
        DeleteProgress(running.number);
}

// --- what was cut off

std::vector<HistoryEntry> History::CutOff() const {
    std::vector<HistoryEntry> found;
    const auto listed = disk.List(directory);
    for (const DirectoryEntry& file : listed ? *listed : std::vector<DirectoryEntry>()) {
        const auto number = NumberInName(file.name, LogExtension);
        if (!number || disk.Info(DoneOf(*number)).fault() != FileFault::NotFound)
            continue;
        const auto text = ReadBytes(disk, directory + file.name);
        auto entry = text ? ReadEntry(*text) : std::nullopt;
        if (!entry) { // it had not begun, or begins just now
            if (text && !isLookedAt)
                static_cast<void>(disk.Delete(directory + file.name));
            continue;
        }
        entry->number = *number;
        found.push_back(std::move(*entry));
    }
    std::ranges::sort(found, std::ranges::greater(), &HistoryEntry::number);
    return found;
}

std::vector<Status> History::TakeBackCutOff(const HistoryEntry& entry, const std::vector<std::string>& away) {
    const auto text = ReadBytes(disk, LogOf(entry.number));
    if (!text)
        return {text.status()};
    const auto records = ReadJournal(*text).records;
    auto failures = TakeBackAll(entry, records, away);
    if (!std::ranges::all_of(failures, IsGoneForGood))
        return failures;
    HistoryEntry ended = entry;
    ended.state = EntryState::CutOff;
    ended.whyNot = failures.empty() ? CutOffReason : LostReason;
    ended.keptIn = KeptIn(entry, records);
    ended.keptBytes = SizeOf(disk, ended.keptIn);
    if (!EndCutOff(ended)) // on a full disk; what is written down of it would be taken back once more
        static_cast<void>(disk.Delete(LogOf(entry.number)));
    return failures;
}

// Its things may be the only ones that there are: the history names them, and never lets them go.
void History::GiveUpCutOff(const HistoryEntry& entry) {
    HistoryEntry ended = entry;
    ended.state = EntryState::Remains;
    ended.whyNot = RemainsReason;
    ended.keptIn = KeptIn(entry, ReadJournalOf(entry).records);
    for (const char* before = "  What was kept of it is in "; const std::string& keptIn : ended.keptIn)
        ended.whyNot += std::exchange(before, ", ") + keptIn;
    static_cast<void>(EndCutOff(ended));
}

std::vector<std::string> History::KeptIn(const HistoryEntry& entry, const std::vector<Record>& records) const {
    std::vector<std::string> found;
    for (const std::string& location : locations)
        if (const auto keptIn = location + std::string(KeptDirectoryName) + "\\" + entry.key + "\\";
            disk.Info(WithoutBackslash(keptIn)))
            found.push_back(keptIn);
    for (const Record& record : records)
        if (record.kind == RecordKind::KeptFrom)
            if (auto keptIn = ParentDirectory(record.kept); std::ranges::find(found, keptIn) == found.end())
                found.push_back(std::move(keptIn));
    return found;
}

bool History::EndCutOff(HistoryEntry ended) {
    ended.item = ended.number;
    if (!WriteEntry(ended))
        return false;
    DeleteProgress(ended.number);
    entries.push_back(std::move(ended));
    return true;
}

} // namespace korvadex
