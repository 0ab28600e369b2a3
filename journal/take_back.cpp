#include "journal/take_back.h"

#include "journal/made_places.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <map>
#include <utility>

namespace korvadex {

namespace {

class Reversal {
  public:
    Reversal(const std::vector<Record>& changes, const TakeBackTools& withTools, bool wasCutOff)
        : records(changes), tools(withTools), files(withTools.files), isCutOff(wasCutOff) {}

    std::vector<Status> Run() {
        const auto note = [&](const Status& status) {
            if (!status)
                failures.push_back(status);
            return isCutOff || failures.empty();
        };
        Repack();
        if (!isCutOff && !failures.empty())
            return failures;
        FindThoseBack();
        for (const Record& lost : LostRecords())
            if (!note(BringBack(lost)))
                return failures;
        if (isCutOff)
            FindGone();
        for (std::size_t i = records.size(); i-- > 0;) {
            if (tools.done.contains(i) || IsGone(records[i]))
                continue;
            if (IsStuck(records[i])) {
                if (records[i].kind != RecordKind::DirectoryTime)
                    Leave(records[i]);
                continue;
            }
            const Status status = IsBackAlready(i) ? Status{} : Reverse(records[i]);
            if (status && tools.noteDone)
                tools.noteDone(i);
            if (!status && !IsGoneForGood(status))
                Leave(records[i]);
            if (!note(status))
                return failures;
        }
        for (const std::string& directory : scratch)
            static_cast<void>(files.RemoveDirectory(directory));
        GiveTimesBack();
        return failures;
    }

  private:
    bool IsThere(const std::string& path) const { return bool(files.Info(path)); }

    // Directories that were there when the command began and went by nothing that it has done: a drive is away, and
    // what is on it can only be taken back when it is there again.
    void FindGone() {
        for (const std::string& directory : tools.away) {
            gone.push_back(directory);
            failures.push_back({FileFault::NotFound, directory});
        }
        for (const Record& record : records) {
            const std::string directory = AddBackslash(record.path);
            if (record.kind != RecordKind::DirectoryTime || IsOwnPlace(record.path) || IsThere(record.path) ||
                IsBelowGone(directory))
                continue;
            const auto explains = [&](const Record& other) {
                return other.kind != RecordKind::DirectoryTime && other.kind != RecordKind::KeptFrom &&
                       other.kind != RecordKind::Attributes &&
                       (IsAtOrBelow(directory, AddBackslash(other.path)) ||
                        (!other.other.empty() && IsAtOrBelow(directory, AddBackslash(other.other))));
            };
            if (std::ranges::any_of(records, explains))
                continue;
            gone.push_back(directory);
            failures.push_back({FileFault::NotFound, record.path});
        }
    }

    bool IsBelowGone(const std::string& path) const {
        return std::ranges::any_of(gone, [&](const std::string& away) { return IsAtOrBelow(path, away); });
    }
    bool IsGone(const Record& record) const {
        return IsBelowGone(record.path) || IsBelowGone(record.other) || IsBelowGone(record.kept);
    }

    // From now on a place that was cleared may hold something of the user's, which no second try may clear.
    void KeepDone() {
        if (std::exchange(hasCleared, false) && tools.flushDone)
            tools.flushDone();
    }

    void Repack() {
        std::vector<std::string> paths;
        for (const Record& record : records)
            if (record.kind == RecordKind::Repacked)
                paths.push_back(record.path);
        if (!paths.empty())
            failures = tools.repack(paths);
        for (const Status& failure : failures)
            stuck.push_back(AddBackslash(failure.path));
    }

    // What could not be taken back, with all that the command had done before to what bears its names, or to what is in
    // it or around it: that is for another try.
    void Leave(const Record& record) {
        for (const std::string& path : {record.path, record.other})
            if (!path.empty())
                stuck.push_back(AddBackslash(path));
    }
    bool IsStuck(const Record& record) const {
        const auto isAt = [&](const std::string& path) {
            return !path.empty() && std::ranges::any_of(stuck, [&](const std::string& name) {
                return IsAtOrBelow(AddBackslash(path), name) || IsAtOrBelow(name, AddBackslash(path));
            });
        };
        return record.kind != RecordKind::KeptFrom && (isAt(record.path) || isAt(record.other));
    }

    // What lies in a directory of kept things and whose record the disk has lost.
    std::vector<Record> LostRecords() const {
        std::set<std::string> known;
        for (const Record& record : records)
            known.insert(FoldCase(record.kept));
        std::vector<Record> lost;
        for (const Record& record : records) {
            if (record.kind != RecordKind::KeptFrom)
                continue;
            const auto entries = files.List(record.kept);
            for (const DirectoryEntry& entry : entries ? *entries : std::vector<DirectoryEntry>())
                if (const std::string kept = AddBackslash(record.kept) + entry.name; !known.contains(FoldCase(kept)))
                    lost.push_back({.kind = RecordKind::SetAside, .path = record.path + entry.name, .kept = kept});
        }
        return lost;
    }

    // What an earlier attempt has brought back, of which it could not make a note.
    void FindThoseBack() {
        if (isCutOff)
            for (std::size_t i = 0; i < records.size(); ++i)
                if (records[i].kind == RecordKind::SetAside && !IsThere(records[i].kept) &&
                    IsThere(WithoutBackslash(ParentDirectory(records[i].kept)))) // its drive is not away
                    broughtBack.emplace(FoldCase(records[i].path), i);
    }

    // Something was made in the place of what had been set aside, or in it: what is there now is the old one.
    bool IsBackAlready(std::size_t number) const {
        const Record& record = records[number];
        if (record.kind != RecordKind::Created && record.kind != RecordKind::Placed &&
            record.kind != RecordKind::MadeDirectory)
            return false;
        for (auto path = record.path; path.size() > 3; path = WithoutBackslash(ParentDirectory(path)))
            if (const auto back = broughtBack.find(FoldCase(path)); back != broughtBack.end() && back->second < number)
                return true;
        return false;
    }

    Status Reverse(const Record& record) {
        switch (record.kind) {
        case RecordKind::Created:
        case RecordKind::Placed:
            return RemoveMade(record);
        case RecordKind::MadeDirectory:
            return RemoveDirectory(record.path);
        case RecordKind::RemovedDirectory:
            return MakeDirectory(record);
        case RecordKind::Renamed:
            return RenameBack(record);
        case RecordKind::Replaced:
            return ReplaceBack(record);
        case RecordKind::SetAside:
            return BringBack(record);
        case RecordKind::Attributes:
        case RecordKind::Time:
            return GiveAttributesBack(record);
        case RecordKind::DirectoryTime: // the directory may get another name by what comes next
            GiveTimeBack(record);
            return {};
        case RecordKind::Deleted: // unless it was not done
            if (!IsThere(record.path) || (!record.other.empty() && !IsThere(record.other)))
                return {FileFault::NotKept, record.path};
            break;
        case RecordKind::Repacked:
        case RecordKind::KeptFrom:
        case RecordKind::Void:
            break;
        }
        return {};
    }

    Status RemoveMade(const Record& record) {
        const auto info = files.Info(record.path);
        if (!info)
            return info.fault() == FileFault::NotFound ? Status{} : info.status();
        const bool isAnother = info->kind == EntryKind::Directory ||
                               (record.time != FileTime{} && (info->time != record.time || info->size != record.size));
        if (isCutOff && isAnother && !record.other.empty() && IsThere(record.other))
            return {}; // it was not done, and what is there came later
        hasCleared = true;
        return tools.remove(record.path);
    }

    Status RemoveDirectory(const std::string& path) {
        const Status status = files.RemoveDirectory(path);
        if (status.fault == FileFault::NotEmpty && isCutOff) // by things whose records a power cut has lost
            return tools.leavesOthers ? status : tools.remove(path);
        return status.fault == FileFault::NotFound || status.fault == FileFault::NotEmpty ? Status{} : status;
    }

    Status MakeDirectory(const Record& record) {
        Status status = IsThere(record.path) ? Status{} : files.CreateDirectory(record.path);
        if (status)
            status = files.SetAttributes(record.path, record.attributes);
        removedTimes.push_back(record);
        return status;
    }

    Status RenameBack(const Record& record) {
        const std::string &from = record.path, &to = record.other;
        if (!EqualNoCase(from, to)) {
            if (!IsThere(from))
                return {};
            if (const auto there = files.Info(to)) // it itself, when it was not renamed yet
                return there->time == record.time && there->size == record.size ? Status{}
                                                                                : Status{FileFault::Exists, to};
        }
        if (IsKeptPlace(to) && !isCutOff)
            return tools.remove(from);
        KeepDone();
        hasCleared = true;
        if (const Status status = EnsureScratch(ParentDirectory(to)); !status)
            return status;
        const Status status = files.Rename(from, to);
        return status.fault == FileFault::NotFound ? Status{} : status;
    }

    Status EnsureScratch(const std::string& directory) {
        if (!IsOwnPlace(directory) || IsThere(WithoutBackslash(directory)))
            return {};
        if (const Status status = EnsureScratch(ParentDirectory(directory)); !status)
            return status;
        scratch.insert(scratch.begin(), WithoutBackslash(directory));
        return files.CreateDirectory(WithoutBackslash(directory));
    }

    Status ReplaceBack(const Record& record) {
        if (!IsThere(record.kept))
            return NotKept(record);
        if (IsThere(record.path)) {
            const bool comesFromScratch = IsOwnPlace(record.other);
            if ((comesFromScratch || IsThere(record.other)) && IsSame(record.path, record.kept))
                return {}; // it was not done yet: what is kept is a second name of it
            const Status status =
                comesFromScratch ? tools.remove(record.path) : files.Rename(record.path, record.other);
            if (!status)
                return status;
        }
        KeepDone();
        return files.Rename(record.kept, record.path);
    }

    // A command that was cut off may not have come to it.
    Status NotKept(const Record& record) const {
        return isCutOff ? Status{} : Status{FileFault::NotFound, record.kept};
    }

    bool IsSame(const std::string& a, const std::string& b) const {
        const auto infoA = files.Info(a), infoB = files.Info(b);
        return infoA && infoB && *infoA == *infoB && SameBytes(files, a, b);
    }

    Status BringBack(const Record& record) {
        if (!IsThere(record.kept))
            return NotKept(record);
        if (IsThere(record.path)) // the first name of a file that was to be replaced, or somebody else's
            return IsSame(record.path, record.kept) ? Status{} : Status{FileFault::Exists, record.path};
        KeepDone();
        if (const Status status = EnsureScratch(ParentDirectory(record.path)); !status)
            return status;
        return files.Rename(record.kept, record.path);
    }

    Status GiveAttributesBack(const Record& record) {
        const auto attributes = files.Attributes(record.path);
        if (record.kind == RecordKind::Attributes && attributes && *attributes != record.attributes)
            if (const Status status = files.SetAttributes(record.path, record.attributes); !status)
                return status;
        const auto info = files.Info(record.path);
        return info && info->time != record.time ? files.SetTime(record.path, record.time) : Status{};
    }

    // Bringing back what was in them has changed them.
    void GiveTimesBack() {
        std::vector<Record> times = removedTimes;
        std::ranges::copy_if(records, std::back_inserter(times),
                             [](const Record& record) { return record.kind == RecordKind::DirectoryTime; });
        std::erase_if(times, [&](const Record& record) { return IsGone(record); });
        for (const Record& record : times)
            GiveTimeBack(record);
    }

    // Of a directory; where it cannot be had, that is no failure.
    void GiveTimeBack(const Record& record) {
        if (IsThere(record.path) && !files.SetTime(record.path, record.time))
            static_cast<void>(files.SetTime(record.path, record.time)); // another program may have looked at it
    }

    const std::vector<Record>& records;
    const TakeBackTools& tools;
    FileSystem& files;
    const bool isCutOff;
    std::map<std::string, std::size_t> broughtBack; // records of what was set aside, by the folded path
    std::vector<Status> failures;
    std::vector<std::string> gone;  // each with its backslash
    bool hasCleared = false;        // since tools.flushDone
    std::vector<std::string> stuck; // each with a backslash
    std::vector<Record> removedTimes;
    std::vector<std::string> scratch; // made for what came back through it, the innermost first
};

} // namespace

std::vector<Status> TakeBack(const std::vector<Record>& records, const TakeBackTools& tools, bool isCutOff) {
    return Reversal(records, tools, isCutOff).Run();
}

} // namespace korvadex
