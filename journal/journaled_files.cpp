#include "journal/journaled_files.h"

#include "platform/windows_path.h"

#include <algorithm>
#include <utility>

namespace korvadex {

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

// Of a place that something is to come to.
Status CheckFree(const FileSystem& disk, const std::string& path) {
    const auto info = disk.Info(path);
    if (info)
        return {FileFault::Exists, path};
    return info.fault() == FileFault::NotFound ? Status{} : info.status();
}

// By which it is known again.
void NoteInfo(Record& record, const Result<FileInfo>& info) {
    if (info && (record.kind == RecordKind::Renamed || info->kind == EntryKind::File)) {
        record.time = info->time;
        record.size = info->size;
    }
}

// Tells of what the disk does not take.
class WatchedFile : public OutputFile {
  public:
    WatchedFile(std::unique_ptr<OutputFile> realFile, std::function<Status(Status)> notice)
        : file(std::move(realFile)), note(std::move(notice)) {}

    Status Write(std::span<const std::byte> bytes) override { return note(file->Write(bytes)); }
    Status Flush() override { return note(file->Flush()); }
    Status Close(bool flush) override { return note(file->Close(flush)); }

  private:
    std::unique_ptr<OutputFile> file;
    std::function<Status(Status)> note;
};

} // namespace

void JournaledFiles::Begin(CommandLog& commandLog, KeptPlaces& keptPlaces, bool isRepackingCommand) {
    const Lock lock(mutex);
    log = &commandLog;
    kept = &keptPlaces;
    isRepacking = isRepackingCommand;
    isWithoutLog = false;
    hasAnnounced = false;
    deletionAnswer.reset();
    logAnswer.reset();
    trouble = {};
    for (const std::string& location : keptPlaces.Locations())
        NoteTime(WithoutBackslash(location));
}

void JournaledFiles::End() {
    const Lock lock(mutex);
    log = nullptr;
    kept = nullptr;
    made.Clear();
    timed.clear();
    unwrittenTimes.clear();
}

void JournaledFiles::Amend(const Known& before, const std::function<void()>& takeBack) {
    CommandLog* const running = std::exchange(log, nullptr);
    takeBack(); // without the lock: it may work in several threads
    const Lock lock(mutex);
    log = running;
    made = before.made;
    timed = before.timed;
    unwrittenTimes = before.unwrittenTimes;
    trouble = {};
}

// Where nothing may be written, nothing can be deleted either.
bool JournaledFiles::MayDelete(const Status& why) {
    if (why.fault == FileFault::ReadOnlyDisk)
        return false;
    if (!deletionAnswer)
        deletionAnswer = mayDelete && mayDelete(why);
    return *deletionAnswer;
}

bool JournaledFiles::MayGoOnWithoutLog(const Status& why) {
    if (!logAnswer)
        logAnswer = mayGoOnWithoutLog && mayGoOnWithoutLog(why);
    return *logAnswer;
}

Status JournaledFiles::Note(Status status) {
    const Lock lock(mutex);
    const bool isDisks = status.fault == FileFault::Failed || status.fault == FileFault::DiskFull ||
                         status.fault == FileFault::ReadOnlyDisk;
    if (log && isDisks && trouble)
        trouble = status;
    return status;
}

Result<std::size_t> JournaledFiles::Announce(const Record& record) {
    const auto numbers = Announce(std::span(&record, 1));
    return numbers ? Result<std::size_t>(numbers->front()) : numbers.status();
}

Result<std::vector<std::size_t>> JournaledFiles::Announce(std::span<const Record> records) {
    std::vector<std::size_t> numbers(records.size());
    if (isWithoutLog || records.empty())
        return numbers;
    const bool isFirst = !hasAnnounced;
    Status status = WriteTimes();
    for (std::size_t i = 0; i < records.size() && status; ++i) {
        const auto number = log->Append(records[i]);
        status = number.status();
        if (number)
            numbers[i] = *number;
    }
    if (status && (isFirst || std::ranges::any_of(records, [&](const Record& record) { return MustBeSafe(record); })))
        status = log->Flush();
    if (!status && isFirst && MayGoOnWithoutLog(status)) {
        isWithoutLog = true;
        log->Abandon();
        return numbers;
    }
    hasAnnounced = hasAnnounced || status;
    if (!status)
        return status;
    return numbers;
}

// A power cut may lose the record and leave the change. What is below a directory that was made goes with that, and
// what was set aside is found again.
bool JournaledFiles::MustBeSafe(const Record& record) const {
    switch (record.kind) {
    case RecordKind::Created:
    case RecordKind::Placed:
    case RecordKind::MadeDirectory:
        return !made.IsMade(ParentDirectory(record.path));
    case RecordKind::Renamed:
    case RecordKind::RemovedDirectory:
    case RecordKind::Attributes:
    case RecordKind::Time:
        return true;
    default:
        return false;
    }
}

Status JournaledFiles::WriteTimes() {
    for (const Record& time : unwrittenTimes)
        if (const auto number = isWithoutLog ? Result<std::size_t>(0u) : log->Append(time); !number)
            return number.status();
    unwrittenTimes.clear();
    return {};
}

Status JournaledFiles::Make(const Record& record, const std::function<Status()>& change) {
    const auto number = Announce(record);
    if (!number)
        return number.status();
    const Status status = change();
    if (!status)
        TakeForVoid(*number, record, status);
    return status;
}

void JournaledFiles::TakeForVoid(std::size_t number, const Record& record, const Status& refusal) {
    log->Void(number);
    static_cast<void>(
        Note({refusal.fault, IsOwnPlace(record.path) && !record.other.empty() ? record.other : record.path,
              refusal.nativeCode}));
}

void JournaledFiles::NoteTimes(std::initializer_list<std::string> paths) {
    if (log)
        for (const std::string& path : paths)
            NoteTime(WithoutBackslash(ParentDirectory(path)));
}

void JournaledFiles::NoteTime(const std::string& directory) {
    if (made.IsMade(directory) || !timed.insert(FoldCase(directory)).second)
        return;
    if (const auto info = disk.Info(directory); info && info->kind == EntryKind::Directory)
        unwrittenTimes.push_back({.kind = RecordKind::DirectoryTime, .path = directory, .time = info->time});
}

Status JournaledFiles::Add(Record record, const std::function<Status()>& change) {
    if (const Status status = CheckFree(disk, record.path); !status)
        return status;
    NoteTimes({record.path});
    const Status status = Make(record, change);
    if (status)
        made.Note(record.path, true);
    return status;
}

Result<std::unique_ptr<OutputFile>> JournaledFiles::CreateNew(Path path) {
    const Lock lock(mutex);
    if (!log)
        return disk.CreateNew(path);
    std::unique_ptr<OutputFile> file;
    const auto create = [&] {
        auto created = disk.CreateNew(path);
        if (created)
            file = std::make_unique<WatchedFile>(std::move(*created), [this](Status status) { return Note(status); });
        return Note(created.status());
    };
    const Status status = IsUnwritten(path) ? create() : Add({.kind = RecordKind::Created, .path = path}, create);
    if (!status)
        return status;
    return file;
}

Status JournaledFiles::Copy(Path from, Path to) {
    {
        const Lock lock(mutex);
        if (!IsUnwritten(to)) {
            const auto source = disk.Info(from);
            if (!source)
                return source.status();
            return Add({.kind = RecordKind::Created, .path = to, .time = source->time, .size = source->size},
                       [&] { return disk.Copy(from, to); });
        }
    }
    return Note(disk.Copy(from, to));
}

Status JournaledFiles::CreateDirectory(Path path) {
    const Lock lock(mutex);
    if (IsUnwritten(path)) {
        NoteTimes({path}); // of the directory in which a scratch directory comes and goes
        return Note(disk.CreateDirectory(path));
    }
    return Add({.kind = RecordKind::MadeDirectory, .path = WithoutBackslash(path)},
               [&] { return disk.CreateDirectory(path); });
}

Status JournaledFiles::Link(Path from, Path to) {
    const Lock lock(mutex);
    if (IsUnwritten(to))
        return disk.Link(from, to);
    return Add({.kind = RecordKind::Created, .path = to}, [&] { return disk.Link(from, to); });
}

Status JournaledFiles::Rename(Path from, Path to) {
    const Replacement rename{.from = from, .to = to};
    return RenameAll(std::span(&rename, 1)).front();
}

std::vector<Status> JournaledFiles::RenameAll(std::span<const Replacement> renames) {
    const Lock lock(mutex);
    if (!log)
        return disk.RenameAll(renames);
    std::vector<Status> outcomes(renames.size());
    std::vector<std::optional<std::size_t>> positions(renames.size());
    std::vector<Record> records;
    for (std::size_t i = 0; i < renames.size(); ++i) {
        auto record = RecordOfRename(renames[i].from, renames[i].to);
        outcomes[i] = record.status();
        if (!record || !*record)
            continue;
        positions[i] = records.size();
        records.push_back(std::move(**record));
    }
    const auto numbers = Announce(records);
    for (std::size_t i = 0; i < renames.size(); ++i) {
        if (outcomes[i] && positions[i])
            outcomes[i] = numbers.status();
        if (!outcomes[i])
            continue;
        const auto& [from, to, seen] = renames[i];
        outcomes[i] = disk.Rename(from, to);
        if (outcomes[i])
            made.NoteRenamed(from, to);
        else if (positions[i])
            TakeForVoid((*numbers)[*positions[i]], records[*positions[i]], outcomes[i]);
        else
            static_cast<void>(Note(outcomes[i]));
    }
    log->VoidRoundTrip();
    return outcomes;
}

Result<std::optional<Record>> JournaledFiles::RecordOfRename(Path from, Path to) {
    const bool wasMade = made.IsMade(from);
    if (wasMade && IsOwnPlace(from) && IsOwnPlace(to))
        return std::optional<Record>();
    Record record{
        .kind = RecordKind::Renamed, .path = WithoutBackslash(to), .other = disk.StoredPath(WithoutBackslash(from))};
    if (!EqualNoCase(record.path, record.other))
        if (const Status status = CheckFree(disk, record.path); !status)
            return status;
    NoteTimes({record.path, record.other});
    if (wasMade && IsOwnPlace(from))
        record.kind = RecordKind::Placed;
    NoteInfo(record, disk.Info(from));
    return std::optional(std::move(record));
}

Status JournaledFiles::Replace(Path from, Path to) {
    const Replacement replacement{.from = from, .to = to};
    return ReplaceAll(std::span(&replacement, 1)).front();
}

std::vector<Status> JournaledFiles::ReplaceAll(std::span<const Replacement> replacements) {
    const Lock lock(mutex);
    if (!log)
        return disk.ReplaceAll(replacements);
    std::vector<Exchange> exchanges;
    for (const Replacement& replacement : replacements) {
        Exchange& exchange = exchanges.emplace_back(Exchange{replacement});
        Prepare(exchange);
    }
    if (const Status flushed = isWithoutLog ? Status{} : log->Flush(); !flushed)
        for (Exchange& exchange : exchanges)
            exchange.status = exchange.status ? flushed : exchange.status;

    std::vector<Replacement> ready;
    for (Exchange& exchange : exchanges) {
        if (!exchange.status || exchange.record.kept.empty())
            continue;
        exchange.isLinked = bool(disk.Link(exchange.replacement.to, exchange.record.kept));
        if (exchange.isLinked)
            continue;
        // Without a second name for it there is a moment without the file; the log knows where it is then.
        exchange.status = disk.CheckUnchanged(exchange.replacement);
        if (exchange.status)
            exchange.status = disk.Rename(exchange.replacement.to, exchange.record.kept);
        exchange.isAside = bool(exchange.status);
        exchange.replacement.seen.reset();
    }
    for (const Exchange& exchange : exchanges)
        if (exchange.status)
            ready.push_back(exchange.replacement);
    const auto outcomes = disk.ReplaceAll(ready);
    auto outcome = outcomes.begin();
    std::vector<Status> statuses;
    for (Exchange& exchange : exchanges) {
        if (exchange.status)
            exchange.status = *outcome++;
        Finish(exchange);
        statuses.push_back(exchange.status);
    }
    return statuses;
}

void JournaledFiles::Prepare(Exchange& exchange) {
    const auto& [from, to, seen] = exchange.replacement;
    if (IsUnwritten(to) && made.IsMade(to))
        return;
    const bool isNew = disk.Info(to).fault() == FileFault::NotFound;
    const bool comesFromScratch = IsOwnPlace(from) && made.IsMade(from);
    Record& record = exchange.record;
    const std::string stored = disk.StoredPath(to);
    record = {.kind = RecordKind::Replaced, .path = stored, .other = from};
    NoteTimes({to, from});
    if (isNew || made.IsMade(to)) {
        if (!isNew && comesFromScratch)
            return; // what is replaced is the command's own
        record.kind = isNew && comesFromScratch ? RecordKind::Placed : RecordKind::Renamed;
    } else if (isRepacking && comesFromScratch && seen) {
        record = {.kind = RecordKind::Repacked, .path = stored};
    } else if (exchange.status) {
        auto place = kept->PlaceFor(stored);
        if (place) {
            record.kept = place->path;
            if (!place->newDirectory.empty())
                exchange.status =
                    Announce({.kind = RecordKind::KeptFrom, .path = ParentDirectory(to), .kept = place->newDirectory})
                        .status();
        } else if (!MayDelete(place.status())) {
            exchange.status = place.status();
        } else {
            record = {.kind = RecordKind::Deleted, .path = stored, .other = from};
        }
    }
    if (!exchange.status)
        return;
    if (record.kind == RecordKind::Renamed)
        NoteInfo(record, disk.Info(from));
    const auto number = Announce(record);
    exchange.status = number.status();
    if (number)
        exchange.number = *number;
}

void JournaledFiles::Finish(Exchange& exchange) {
    const auto& [from, to, seen] = exchange.replacement;
    if (exchange.status) {
        made.NoteRenamed(from, to);
        return;
    }
    exchange.status.path = to;
    static_cast<void>(Note(exchange.status));
    if (exchange.isLinked)
        static_cast<void>(disk.Delete(exchange.record.kept));
    if (exchange.isAside)
        if (const Status back = disk.Rename(exchange.record.kept, to); !back) {
            trouble = trouble ? back : trouble; // the record stands: it says where the file is
            return;
        }
    if (exchange.number)
        log->Void(*exchange.number);
}

std::vector<Status> JournaledFiles::Flush(std::span<const std::string> paths) {
    const Lock lock(mutex);
    if (log && !isWithoutLog && !log->IsEmpty())
        if (const Status flushed = log->Flush(); !flushed)
            return std::vector<Status>(paths.size(), flushed);
    auto outcomes = disk.Flush(paths);
    for (const Status& outcome : outcomes)
        static_cast<void>(Note(outcome));
    return outcomes;
}

Status JournaledFiles::Delete(Path path) {
    const Lock lock(mutex);
    if (!log || made.IsMade(path)) {
        const Status status = Note(disk.Delete(path));
        if (log && status)
            NoteFree(path);
        return status;
    }
    const auto info = disk.Info(path);
    if (!info)
        return info.status();
    if (info->kind == EntryKind::Directory || info->readOnly)
        return disk.Delete(path); // which refuses it
    return TakeAway(disk.StoredPath(path));
}

Status JournaledFiles::SetAside(Path path) {
    const Lock lock(mutex);
    if (!log || made.IsMade(path))
        return {FileFault::NotKept, path};
    const auto info = disk.Info(path);
    return info ? TakeAway(disk.StoredPath(WithoutBackslash(path))) : info.status();
}

Status JournaledFiles::SetScratchAside(Path directory) {
    const Lock lock(mutex);
    return TakeAway(WithoutBackslash(directory));
}

Status JournaledFiles::TakeAway(Path path) {
    NoteTimes({path});
    const auto place = kept->PlaceFor(path);
    if (!place)
        return DeleteForGood(path, place.status());
    if (!place->newDirectory.empty()) {
        const auto number =
            Announce({.kind = RecordKind::KeptFrom, .path = ParentDirectory(path), .kept = place->newDirectory});
        if (!number)
            return number.status();
        // From now on all that goes into this directory is found again, even when the record of it is lost.
        if (const Status flushed = isWithoutLog ? Status{} : log->Flush(); !flushed)
            return flushed;
    }
    const Status status = Make({.kind = RecordKind::SetAside, .path = path, .kept = place->path},
                               [&] { return disk.Rename(path, place->path); });
    if (status.fault == FileFault::OtherVolume) // as it turns out
        return DeleteForGood(path, status);
    if (status)
        NoteFree(path);
    return status ? status : Status{status.fault, path, status.nativeCode};
}

// Of a directory nothing has happened then: its files are tried one by one.
Status JournaledFiles::DeleteForGood(Path path, const Status& why) {
    const Status refusal = {why.fault, path, why.nativeCode};
    if (const auto info = disk.Info(path); info && info->kind == EntryKind::Directory)
        return why.fault == FileFault::OtherVolume || MayDelete(why) ? Status{FileFault::NotKept, path} : Note(refusal);
    if (!MayDelete(why))
        return Note(refusal);
    const Status status = Make({.kind = RecordKind::Deleted, .path = path}, [&] { return disk.Delete(path); });
    if (status)
        NoteFree(path);
    return status;
}

// What somebody else puts there is not the command's.
void JournaledFiles::NoteFree(Path path) {
    made.Note(path, IsOwnPlace(path));
}

Status JournaledFiles::RemoveDirectory(Path path) {
    const Lock lock(mutex);
    if (!log || IsUnwritten(path) || made.IsMade(path))
        return Note(disk.RemoveDirectory(path));
    const auto info = disk.Info(path);
    const auto attributes = disk.Attributes(path);
    if (!info || info->kind != EntryKind::Directory || !attributes)
        return disk.RemoveDirectory(path);
    if (const auto entries = disk.List(path); entries && !entries->empty())
        return {FileFault::NotEmpty, path};
    NoteTimes({path});
    const Status status = Make({.kind = RecordKind::RemovedDirectory,
                                .path = disk.StoredPath(WithoutBackslash(path)),
                                .attributes = *attributes,
                                .time = info->time},
                               [&] { return disk.RemoveDirectory(path); });
    if (status)
        NoteFree(path);
    return status;
}

Status JournaledFiles::ChangeAttributes(RecordKind kind, Path path, const std::function<Status()>& change) {
    const Lock lock(mutex);
    if (!log || made.IsMade(path))
        return Note(change());
    const auto info = disk.Info(path);
    const auto attributes = disk.Attributes(path);
    if (!info || !attributes)
        return change();
    if (info->kind == EntryKind::Directory)
        NoteTime(WithoutBackslash(path));
    if (info->kind == EntryKind::Directory && kind == RecordKind::Time) {
        const Status status = WriteTimes();
        return status ? change() : status;
    }
    return Make({.kind = kind, .path = path, .attributes = *attributes, .time = info->time}, change);
}

Status JournaledFiles::ClearAttributes(Path path) {
    return ChangeAttributes(RecordKind::Attributes, path, [&] { return disk.ClearAttributes(path); });
}

Status JournaledFiles::SetReadOnly(Path path, bool readOnly) {
    return ChangeAttributes(RecordKind::Attributes, path, [&] { return disk.SetReadOnly(path, readOnly); });
}

Status JournaledFiles::SetAttributes(Path path, const std::string& attributes) {
    return ChangeAttributes(RecordKind::Attributes, path, [&] { return disk.SetAttributes(path, attributes); });
}

Status JournaledFiles::SetTime(Path path, FileTime time) {
    return ChangeAttributes(RecordKind::Time, path, [&] { return disk.SetTime(path, time); });
}

Status JournaledFiles::CopyAttributes(Path from, Path to) {
    return ChangeAttributes(RecordKind::Attributes, to, [&] { return disk.CopyAttributes(from, to); });
}

Result<std::uint64_t> JournaledFiles::MakeRoom(Path directory, std::uint64_t bytes) {
    auto space = disk.FreeSpace(directory);
    if (space && *space < bytes && giveUpKept) {
        giveUpKept(directory, bytes);
        space = disk.FreeSpace(directory);
    }
    return space;
}

} // namespace korvadex
