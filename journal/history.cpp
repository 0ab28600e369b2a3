#include "journal/history.h"

#include "journal/history_names.h"
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
    return directory + NameOfNumber(number) + std::string(LogExtension);
}

std::string History::DoneOf(int number) const {
    return directory + NameOfNumber(number) + std::string(DoneExtension);
}

void History::Open(const std::string& historyDirectory, bool onlyLooks) {
    directory = historyDirectory;
    isLookedAt = onlyLooks;
    entries.clear();
    lastNumber = 0;
    const auto listed = disk.List(directory);
    if (!listed)
        return;
    std::map<int, HistoryEntry> byItem;
    std::vector<HistoryEntry> outdated;
    for (const DirectoryEntry& file : *listed) {
        if (EndsWithNoCase(file.name, NewExtension) && !onlyLooks)
            static_cast<void>(disk.Delete(directory + file.name));
        if (const auto number = NumberInName(file.name, LogExtension))
            lastNumber = std::max(lastNumber, *number);
        const auto number = NumberInName(file.name, DoneExtension);
        if (!number)
            continue;
        lastNumber = std::max(lastNumber, *number);
        const auto text = ReadBytes(disk, directory + file.name);
        auto entry = text ? ReadEntry(*text) : std::nullopt;
        if (!entry)
            continue; // its log alone would be taken for a command that was cut off
        entry->number = *number;
        if (disk.Info(LogOf(*number)).fault() == FileFault::NotFound && !MustStay(*entry)) {
            if (!onlyLooks)
                Drop(*entry); // to the end
            continue;
        }
        if (auto [known, isNew] = byItem.try_emplace(entry->item, *entry); !isNew) {
            outdated.push_back(known->second); // taken back or done again since
            known->second = *entry;
        }
    }
    if (!onlyLooks)
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
    if (!entry.keptIn.empty() && SizeOf(disk, entry.keptIn) != entry.keptBytes)
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

} // namespace korvadex
