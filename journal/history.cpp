#include "journal/history.h"

#include "journal/left_state.h"
#include "journal/take_back.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <random>
#include <utility>

namespace korvadex {

namespace {

constexpr std::string_view LogExtension = ".log", DoneExtension = ".done", NewExtension = ".new";
constexpr const char* CutOffReason = "It was cut off, and has been taken back.";
constexpr const char* LostReason = "It was cut off, and has been taken back but for what could not be kept.";
constexpr const char* RemainsReason = "Not all of it could be taken back.";
constexpr const char* NoRoomReason = "What it had kept had to go, as there was no more room for it.";

FileTime Now() {
    return std::chrono::time_point_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now());
}

std::string NewKey() {
    std::random_device random;
    std::string key;
    for (int i = 0; i < 3; ++i)
        key += std::to_string(random());
    return key;
}

// "000012"
std::string NameOf(int number) {
    const std::string digits = std::to_string(number);
    return std::string(digits.size() < 6 ? 6 - digits.size() : 0, '0') + digits;
}

// Of the name of a file, "000012.log" with ".log".
std::optional<int> NumberIn(const std::string& name, std::string_view extension) {
    if (!EndsWithNoCase(name, extension))
        return std::nullopt;
    const auto number = NumberOf(std::string_view(name).substr(0, name.size() - extension.size()));
    return number && *number > 0 && *number < 1'000'000'000 ? std::optional(static_cast<int>(*number)) : std::nullopt;
}

std::uint64_t BytesIn(const FileSystem& files, const std::vector<std::string>& directories) {
    std::uint64_t sum = 0;
    for (const std::string& directory : directories)
        sum += SizeOf(files, WithoutBackslash(directory)).bytes;
    return sum;
}

// The records changed nothing that is still to be seen.
bool IsWithoutEffect(const FileSystem& files, const std::vector<Record>& records) {
    return std::ranges::all_of(records, [&](const Record& record) {
        switch (record.kind) {
        case RecordKind::Created:
        case RecordKind::Placed:
        case RecordKind::MadeDirectory:
            return files.Info(record.path).fault() == FileFault::NotFound;
        case RecordKind::DirectoryTime:
        case RecordKind::KeptFrom:
            return true;
        default:
            return false;
        }
    });
}

} // namespace

History::History(FileSystem& realDisk, Repack repackFiles)
    : disk(realDisk), repack(std::move(repackFiles)), files(realDisk) {
    files.giveUpKept = [this](const std::string& where, std::uint64_t bytes) { MakeRoom(where, bytes); };
}

std::string History::LogOf(int number) const {
    return directory + NameOf(number) + std::string(LogExtension);
}

std::string History::DoneOf(int number) const {
    return directory + NameOf(number) + std::string(DoneExtension);
}

void History::Open(const std::string& historyDirectory) {
    directory = historyDirectory;
    entries.clear();
    lastNumber = 0;
    const auto listed = disk.List(directory);
    if (!listed)
        return;
    std::map<int, HistoryEntry> byItem;
    std::vector<HistoryEntry> outdated;
    for (const DirectoryEntry& file : *listed) {
        if (EndsWithNoCase(file.name, NewExtension))
            static_cast<void>(disk.Delete(directory + file.name));
        if (const auto number = NumberIn(file.name, LogExtension))
            lastNumber = std::max(lastNumber, *number);
        const auto number = NumberIn(file.name, DoneExtension);
        if (!number)
            continue;
        lastNumber = std::max(lastNumber, *number);
        const auto text = ReadBytes(disk, directory + file.name);
        auto entry = text ? ReadEntry(*text) : std::nullopt;
        if (!entry)
            continue; // its log alone would be taken for a command that was cut off
        entry->number = *number;
        if (disk.Info(LogOf(*number)).fault() == FileFault::NotFound && !MustStay(*entry)) {
            Drop(*entry); // to the end
            continue;
        }
        if (auto [known, isNew] = byItem.try_emplace(entry->item, *entry); !isNew) {
            outdated.push_back(known->second); // taken back or done again since
            known->second = *entry;
        }
    }
    for (const HistoryEntry& entry : outdated)
        Drop(entry);
    for (auto& [item, entry] : byItem)
        entries.push_back(std::move(entry));
}

// --- a command at work

HistoryEntry History::NewEntry(const CommandTitle& title) {
    const int number = ++lastNumber;
    return {.number = number, .item = number, .title = title, .time = Now(), .key = NewKey()};
}

void History::Begin(const CommandTitle& title) {
    Start(NewEntry(title));
}

void History::SetSubject(const std::string& subject) {
    running.title.subject = subject;
    if (log)
        log->SetHeading(LineOf(running));
}

void History::Start(HistoryEntry entry) {
    if (IsRunning()) // an exception has left it so
        static_cast<void>(End());
    running = std::move(entry);
    log = std::make_unique<CommandLog>(disk, LogOf(running.number), LineOf(running));
    kept = std::make_unique<KeptPlaces>(disk, locations, running.key);
    seenRecords.reset();
    remembered.clear();
    files.Begin(*log, *kept, running.title.repacking != Repacking::None);
}

bool History::HasChanged() const {
    return log && (!IsWithoutEffect(disk, log->Records()) || !RememberedAway().empty());
}

void History::Remember(const HistoryMark& mark) {
    if (log)
        for (LeftPlace& place : LookAtPlaces(disk, log->Records(mark.records)))
            remembered.insert_or_assign(FoldCase(place.path), std::move(place));
}

std::vector<LeftPlace> History::RememberedAway() const {
    std::vector<LeftPlace> places;
    for (const std::string& location : locations)
        if (!location.empty() && !disk.IsDirectory(WithoutBackslash(location)))
            for (const auto& [key, place] : remembered)
                if (IsAtOrBelow(place.path, location))
                    places.push_back(place);
    return places;
}

void History::LookAround() {
    if (!log || log->IsEmpty())
        return;
    seen = LookAtPlaces(disk, log->Records());
    seenRecords = log->Count();
}

HistoryMark History::Mark() const {
    return {log ? log->Count() : 0, files.Knows()};
}

std::vector<Status> History::TakeBackIn(const std::string& where, const HistoryMark& mark) {
    if (!log)
        return {};
    const auto takeBack = [&] {
        auto records = log->Records(mark.records);
        auto numbers = log->Numbers(mark.records);
        auto known = mark.known;
        if (!where.empty()) {
            std::vector<std::size_t> wanted;
            for (std::size_t i = 0; i < records.size(); ++i)
                if (IsAtOrBelow(records[i].path, where) && records[i].kind != RecordKind::DirectoryTime)
                    wanted.push_back(i);
            for (std::size_t i = 0; i < wanted.size(); ++i) {
                records[i] = records[wanted[i]];
                numbers[i] = numbers[wanted[i]];
            }
            records.resize(wanted.size());
            numbers.resize(wanted.size());
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
        // Times are given back last, but for those of directories that are not there under this name any more.
        const auto isTime = [&](std::size_t i) {
            const auto hasBrought = [&](const Record& earlier) {
                return earlier.kind != RecordKind::DirectoryTime &&
                       IsAtOrBelow(AddBackslash(records[i].path), AddBackslash(earlier.path));
            };
            return records[i].kind == RecordKind::DirectoryTime &&
                   std::none_of(records.begin(), records.begin() + static_cast<std::ptrdiff_t>(i), hasBrought);
        };
        // What comes may be kept in the same directories.
        tools.noteDone = [&](std::size_t i) {
            if (!isTime(i) && records[i].kind != RecordKind::KeptFrom)
                log->Void(numbers[i]);
        };
        tools.flushDone = [&] { static_cast<void>(log->Flush()); };
        std::vector<Status> failures;
        files.Amend(known, [&] {
            failures = TakeBack(records, tools, true);
            for (std::size_t i = 0; i < records.size() && failures.empty(); ++i)
                if (isTime(i))
                    log->Void(numbers[i]);
            // Safe before the next change: what that sets aside must not be taken for something of these.
            static_cast<void>(log->Flush());
            for (const std::string& leftover : leftovers)
                DeleteNumbered(disk, leftover);
            for (const std::string& own : places.Directories())
                if (!kept->Directories().contains(own))
                    DeleteKept(disk, own);
        });
        return failures;
    };
    // Another program may have looked at a file just then.
    const auto failures = takeBack();
    return failures.empty() ? failures : takeBack();
}

Status History::End(bool isToStay) {
    remains.clear();
    files.End();
    if (!log || log->IsEmpty()) { // it changed nothing, or the user knows that it cannot be taken back
        for (const std::string& keptIn : kept ? kept->Directories() : std::set<std::string>())
            DeleteKept(disk, keptIn);
        log.reset();
        kept.reset();
        return {};
    }
    const auto records = log->Records();
    Status status = log->Flush();
    if (!status || !isToStay || !HasChanged()) {
        remains = TakeBackAll(running, records);
        DropRunning();
    } else {
        status = Keep();
        if (!status) {
            remains = TakeBackAll(running, records);
            DropRunning();
        }
    }
    log.reset();
    kept.reset();
    return status;
}

Status History::Keep() {
    auto left = LookAtPlaces(disk, log->Records());
    if (seenRecords)
        left = WithoutOthers(std::move(left), seen, log->Records(*seenRecords));
    for (LeftPlace& place : RememberedAway()) {
        std::erase_if(left, [&](const LeftPlace& other) { return EqualNoCase(other.path, place.path); });
        left.push_back(std::move(place));
    }
    Status status = log->Append(left);
    log->Close();
    if (!status)
        return status;
    running.keptIn.assign(kept->Directories().begin(), kept->Directories().end());
    KeptSize size;
    for (const std::string& keptIn : running.keptIn) {
        const auto more = SizeOf(disk, WithoutBackslash(keptIn));
        size.files += more.files;
        size.bytes += more.bytes;
    }
    running.keptBytes = size.bytes;
    if (running.number == running.item) { // an undo is about the files of its command
        for (const LeftPlace& place : left)
            if (place.info && place.info->kind != EntryKind::Directory) {
                ++size.files;
                size.bytes += place.info->size;
            }
        for (const Record& record : log->Records()) // one file, kept and left
            size.files -= record.kind == RecordKind::Replaced && size.files > 0 ? 1 : 0;
        running.files = size.files;
        running.bytes = size.bytes;
    }
    status = WriteEntry(running, {log->Path()});
    if (!status) {
        static_cast<void>(disk.Delete(DoneOf(running.number)));
        return status;
    }
    const auto at = std::ranges::find(entries, running.item, &HistoryEntry::item);
    if (at == entries.end()) {
        entries.push_back(running);
    } else {
        const HistoryEntry before = *at;
        *at = running;
        Drop(before);
    }
    return {};
}

Status History::WriteEntry(const HistoryEntry& entry, const std::vector<std::string>& others) {
    const std::string path = DoneOf(entry.number), made = path + std::string(NewExtension);
    static_cast<void>(disk.Delete(made));
    auto file = disk.CreateNew(made);
    if (!file)
        return file.status();
    const std::string line = LineOf(entry);
    Status status = WriteAll(**file, std::as_bytes(std::span(line)));
    const Status closed = (*file)->Close(false);
    status = status ? closed : status;
    std::vector<std::string> written = others;
    written.push_back(made);
    for (const Status& flushed : status ? disk.Flush(written) : std::vector<Status>())
        status = status ? flushed : status;
    if (status)
        status = disk.Info(path) ? disk.Replace(made, path) : disk.Rename(made, path);
    if (status)
        status = disk.Flush(std::vector{WithoutBackslash(directory)}).front();
    return status;
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
        path = directory + NameOf(entry.number) + ".back" + std::to_string(turn);
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
        if (!disk.Delete(directory + NameOf(number) + ".back" + std::to_string(turn)))
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
        const auto number = NumberIn(file.name, LogExtension);
        if (!number || disk.Info(DoneOf(*number)).fault() != FileFault::NotFound)
            continue;
        const auto text = ReadBytes(disk, directory + file.name);
        auto entry = text ? ReadEntry(*text) : std::nullopt;
        if (!entry) { // it had not begun
            if (text)
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
    ended.keptBytes = BytesIn(disk, ended.keptIn);
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

// --- the way back

const HistoryEntry* History::NextUndo() const {
    const auto done = std::find_if(entries.rbegin(), entries.rend(),
                                   [](const HistoryEntry& entry) { return entry.state == EntryState::Done; });
    return done == entries.rend() ? nullptr : &*done;
}

const HistoryEntry* History::NextRedo() const {
    const auto order = RedoOrder();
    return order.empty() ? nullptr : order.front();
}

std::vector<const HistoryEntry*> History::RedoOrder() const {
    int lastNew = 0;
    for (const HistoryEntry& entry : entries)
        if (entry.state == EntryState::Done || entry.state == EntryState::Undone)
            lastNew = std::max(lastNew, entry.item);
    std::vector<const HistoryEntry*> order;
    for (const HistoryEntry& entry : entries)
        if (entry.state == EntryState::Undone && entry.number > lastNew)
            order.push_back(&entry);
    std::ranges::sort(order, std::ranges::greater(), &HistoryEntry::number);
    return order;
}

std::string History::Undo() {
    const HistoryEntry* next = NextUndo();
    return next ? Reverse(HistoryEntry(*next)) : "There is nothing to be taken back.";
}

std::string History::Redo() {
    const HistoryEntry* next = NextRedo();
    return next ? Reverse(HistoryEntry(*next)) : "There is nothing to be done again.";
}

std::string History::Reverse(const HistoryEntry& entry) {
    remains.clear();
    if (!entry.whyNot.empty())
        return entry.whyNot;
    const auto text = ReadBytes(disk, LogOf(entry.number));
    if (!text)
        return text.status().path + " (" + DescribeFault(text.status()) + ")";
    const Journal journal = ReadJournal(*text);
    if (journal.records.empty())
        return LogOf(entry.number) + " is damaged.";
    if (!entry.keptIn.empty() && BytesIn(disk, entry.keptIn) != entry.keptBytes)
        return "What was kept of it in " + entry.keptIn.front() + " is not as it was.";
    if (auto obstacle = FindObstacle(disk, journal); !obstacle.empty())
        return obstacle;
    HistoryEntry reversal = NewEntry(entry.title);
    reversal.item = entry.item;
    reversal.time = entry.time;
    reversal.files = entry.files;
    reversal.bytes = entry.bytes;
    reversal.state = entry.state == EntryState::Done ? EntryState::Undone : EntryState::Done;
    Start(std::move(reversal));
    const auto remove = [&](const std::string& path) { return files.SetAside(path); };
    const auto repackBack = [&](const std::vector<std::string>& paths) {
        return repack(files, paths, (entry.title.repacking == Repacking::Packs) == (entry.state == EntryState::Undone));
    };
    const auto mayGoOnWithoutLog = std::exchange(files.mayGoOnWithoutLog, {});
    const auto failures = TakeBack(journal.records, {files, remove, repackBack}, false);
    files.mayGoOnWithoutLog = mayGoOnWithoutLog;
    const Status written = End(failures.empty());
    const Status& failure = failures.empty() ? written : failures.front();
    // There was nothing to be taken back: it must not stand before those that came earlier.
    if (const auto same = std::ranges::find(entries, entry.number, &HistoryEntry::number);
        failure && same != entries.end()) {
        entries.erase(same);
        Drop(entry);
    }
    return failure ? "" : failure.path + " (" + DescribeFault(failure) + ")";
}

Journal History::ReadJournalOf(const HistoryEntry& entry) const {
    const auto text = ReadBytes(disk, LogOf(entry.number));
    return text ? ReadJournal(*text) : Journal();
}

// --- what is kept

std::uint64_t History::KeptBytes() const {
    std::uint64_t sum = 0;
    for (const HistoryEntry& entry : entries)
        sum += MayGo(entry) ? entry.keptBytes : 0;
    return sum;
}

int History::CommandCount() const {
    return static_cast<int>(std::ranges::count_if(entries, [&](const HistoryEntry& entry) { return MayGo(entry); }));
}

bool History::IsAway(const HistoryEntry& entry) const {
    return std::ranges::any_of(entry.keptIn, [&](const std::string& keptIn) {
        return !disk.IsDirectory(ParentDirectory(ParentDirectory(keptIn)));
    });
}

bool History::MustStay(const HistoryEntry& entry) const {
    const auto isEmpty = [&](const std::string& keptIn) { return HoldsNothing(disk, keptIn); };
    return entry.state == EntryState::Remains && (IsAway(entry) || !std::ranges::all_of(entry.keptIn, isEmpty));
}

void History::Drop(const HistoryEntry& entry) {
    // Without its log it cannot be taken back any more, by what is only half there. A log alone would be taken for a
    // command that was cut off.
    if (const Status status = disk.Delete(LogOf(entry.number)); !status && status.fault != FileFault::NotFound)
        return;
    for (const std::string& keptIn : entry.keptIn)
        DeleteKept(disk, keptIn);
    static_cast<void>(disk.Flush(std::vector{WithoutBackslash(directory)}));
    static_cast<void>(disk.Delete(DoneOf(entry.number)));
}

void History::GiveUpKept(HistoryEntry& entry, const std::string& why) {
    HistoryEntry without = entry;
    without.whyNot = why;
    without.keptBytes = 0;
    without.keptIn.clear();
    if (!WriteEntry(without))
        return;
    for (const std::string& keptIn : entry.keptIn)
        DeleteKept(disk, keptIn);
    entry = without;
}

HistoryEntry* History::OldestKeeping(const std::function<bool(const HistoryEntry&)>& isWanted) {
    const auto found =
        std::ranges::find_if(entries, [&](const HistoryEntry& entry) { // not of the one that is being taken back
            return entry.keptBytes > 0 && (!log || entry.item != running.item) && isWanted(entry);
        });
    return found == entries.end() ? nullptr : &*found;
}

void History::Prune() {
    std::uint64_t bytes = 0;
    for (const HistoryEntry& entry : entries)
        bytes += entry.keptBytes;
    if (std::ssize(entries) <= limits.commands && bytes <= limits.bytes)
        return; // without asking for a drive that may be away
    for (int count = CommandCount(); count > std::max(limits.commands, 1); --count) {
        const auto oldest = std::ranges::find_if(entries, [&](const HistoryEntry& entry) { return MayGo(entry); });
        Drop(*oldest);
        entries.erase(oldest);
    }
    while (KeptBytes() > limits.bytes) {
        HistoryEntry* oldest =
            OldestKeeping([&](const HistoryEntry& entry) { return &entry != &entries.back() && MayGo(entry); });
        if (!oldest)
            return;
        GiveUpKept(*oldest, NoRoomReason);
        if (oldest->keptBytes > 0)
            return; // it could not be written down
    }
}

void History::MakeRoom(const std::string& where, std::uint64_t bytes) {
    const auto isThere = [&](const HistoryEntry& entry) {
        return std::ranges::any_of(entry.keptIn, [&](const std::string& keptIn) {
            return disk.Info(WithoutBackslash(keptIn)) && disk.SameVolume(keptIn, where);
        });
    };
    for (auto space = disk.FreeSpace(where); space && *space < bytes; space = disk.FreeSpace(where)) {
        HistoryEntry* oldest = OldestKeeping(isThere);
        if (!oldest)
            return;
        GiveUpKept(*oldest, NoRoomReason);
        if (oldest->keptBytes > 0)
            return;
    }
}

void History::Empty() {
    std::erase_if(entries, [&](const HistoryEntry& entry) {
        if (MustStay(entry))
            return false;
        Drop(entry);
        return true;
    });
}

} // namespace korvadex
