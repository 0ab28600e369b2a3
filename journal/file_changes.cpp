#include "journal/file_changes.h"

#include "journal/made_places.h"
#include "platform/windows_path.h"

#include <map>
#include <set>

namespace korvadex {

namespace {

bool IsIn(const std::string& path, const std::string& place) {
    return StartsWithNoCase(AddBackslash(path), AddBackslash(place));
}

class Changes {
  public:
    Changes(const FileSystem& fileSystem, const Journal& ofCommand) : files(fileSystem), journal(ofCommand) {
        for (const LeftPlace& place : journal.left)
            if (place.info)
                left.emplace(FoldCase(place.path), &place);
    }

    std::vector<FileChange> List() {
        for (const Record& record : journal.records)
            Add(record);
        std::vector<FileChange> list;
        for (auto at = changes.begin(); at != changes.end(); ++at) {
            const auto next = std::next(at);
            const bool isInNext =
                at->first.ends_with('\\') && next != changes.end() && next->first.starts_with(at->first);
            if (!isInNext) // a directory is seen by what is in it
                list.push_back(std::move(at->second));
        }
        return list;
    }

  private:
    void Add(const Record& record) {
        switch (record.kind) {
        case RecordKind::Created:
        case RecordKind::Placed:
        case RecordKind::MadeDirectory:
            return NoteCome(record.path);
        case RecordKind::RemovedDirectory:
            return Note(ChangeKind::Went, AddBackslash(record.path));
        case RecordKind::Renamed:
            return NoteRenamed(record);
        case RecordKind::SetAside:
            return IsOwnPlace(record.path) ? void() : NoteAll(ChangeKind::Went, record.path, record.kept);
        case RecordKind::Deleted:
            return Note(ChangeKind::Went, record.path);
        case RecordKind::Replaced:
        case RecordKind::Attributes:
        case RecordKind::Time:
        case RecordKind::Repacked:
            return Note(ChangeKind::Changed, record.path);
        case RecordKind::DirectoryTime:
        case RecordKind::KeptFrom:
        case RecordKind::Void:
            return;
        }
    }

    void Note(ChangeKind kind, const std::string& path) {
        if (path.empty() || IsOwnPlace(path))
            return;
        const auto [at, isFirst] = changes.try_emplace(FoldCase(path), FileChange{kind, path});
        FileChange& change = at->second;
        if (isFirst)
            return;
        if (kind == ChangeKind::Went && change.kind == ChangeKind::Renamed) {
            const std::string before = change.path;
            changes.erase(at);
            Note(kind, before);
        } else if (kind == ChangeKind::Went && change.kind == ChangeKind::Came) {
            changes.erase(at);
        } else if (kind == ChangeKind::Came && change.kind == ChangeKind::Went) {
            change.kind = ChangeKind::Changed;
        } else if (kind == ChangeKind::Went) {
            change.kind = kind;
        }
    }

    // As the command has left it, with all in it.
    void NoteCome(const std::string& path) {
        const std::string key = FoldCase(WithoutBackslash(path)), below = key + "\\";
        made.insert(key);
        const auto itself = left.find(key);
        if (itself == left.end())
            return journal.left.empty() ? Note(ChangeKind::Came, path) : void();
        const bool isDirectory = itself->second->info->kind == EntryKind::Directory;
        if (isDirectory && !itself->second->isOwn) // it took the place of another one
            return NoteAll(ChangeKind::Came, path, path);
        Note(ChangeKind::Came, isDirectory ? AddBackslash(path) : path);
        for (auto at = left.lower_bound(below); at != left.end() && at->first.starts_with(below); ++at) {
            const LeftPlace& place = *at->second;
            Note(ChangeKind::Came, place.info->kind == EntryKind::Directory ? AddBackslash(place.path) : place.path);
        }
    }

    // What lies at `from` now, under the name that it has in the collection.
    void NoteAll(ChangeKind kind, const std::string& path, const std::string& from) {
        const auto info = files.Info(from);
        if (!info || info->kind != EntryKind::Directory)
            return Note(kind, path);
        Note(kind, AddBackslash(path));
        if (const auto entries = files.List(from))
            for (const DirectoryEntry& entry : *entries) {
                const std::string below = AddBackslash(path) + entry.name;
                if (entry.info.kind != EntryKind::Directory)
                    Note(kind, below);
                else if (!entry.isMountPoint)
                    NoteAll(kind, below, AddBackslash(from) + entry.name);
            }
    }

    void NoteRenamed(const Record& record) {
        const std::string from = Original(record.other);
        if (IsOwnPlace(record.path)) { // on its way
            onTheWay[record.path] = from;
            for (const Record& aside : journal.records)
                if (aside.kind == RecordKind::SetAside && IsIn(aside.path, record.path))
                    NoteAll(ChangeKind::Went, Original(aside.path), aside.kept);
        } else if (IsOwnPlace(from)) {
            NoteAll(ChangeKind::Came, record.path, record.path);
        } else {
            Rename(from, record.path);
        }
    }

    void Rename(const std::string& from, const std::string& to) {
        if (from == to)
            return;
        if (made.contains(FoldCase(from))) {
            changes.erase(FoldCase(from));
            return Note(ChangeKind::Came, to);
        }
        const std::string end = files.IsDirectory(to) || files.IsDirectory(from) ? "\\" : "";
        FileChange renamed = {ChangeKind::Renamed, from + end, to + end};
        if (const auto before = changes.find(FoldCase(from + end));
            before != changes.end() && before->second.kind == ChangeKind::Renamed) {
            renamed.path = before->second.path;
            changes.erase(before);
        }
        changes.insert_or_assign(FoldCase(to + end), std::move(renamed));
    }

    // What is in a scratch directory by the name that it had before.
    std::string Original(const std::string& path) const {
        for (const auto& [scratch, original] : onTheWay)
            if (IsIn(path, scratch))
                return original + path.substr(scratch.size());
        return path;
    }

    const FileSystem& files;
    const Journal& journal;
    std::map<std::string, const LeftPlace*> left; // by the folded path
    std::map<std::string, FileChange> changes;    // by the folded path, what was renamed by its new one
    std::set<std::string> made;                   // folded paths, that also of what has gone again
    std::map<std::string, std::string> onTheWay;  // what is in scratch, and where it was
};

} // namespace

std::vector<FileChange> ListFileChanges(const FileSystem& files, const Journal& journal, bool isReversed) {
    auto changes = Changes(files, journal).List();
    for (FileChange& change : changes)
        if (isReversed && change.kind == ChangeKind::Renamed)
            std::swap(change.path, change.newPath);
        else if (isReversed && change.kind != ChangeKind::Changed)
            change.kind = change.kind == ChangeKind::Came ? ChangeKind::Went : ChangeKind::Came;
    return changes;
}

} // namespace korvadex
