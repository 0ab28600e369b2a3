#include "journal/left_state.h"

#include "journal/made_places.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <map>
#include <set>

namespace korvadex {

namespace {

class Places {
  public:
    explicit Places(const FileSystem& fileSystem) : files(fileSystem) {}

    void Add(const std::string& path, bool isOwn) {
        if (path.empty() || IsOwnPlace(path) || !seen.insert(FoldCase(path)).second)
            return;
        const auto info = files.Info(path);
        if (!info) {
            found.push_back({.path = path});
            return;
        }
        Note(path, *info, isOwn);
    }

    std::vector<LeftPlace> Take() { return std::move(found); }

  private:
    void Note(const std::string& path, const FileInfo& info, bool isOwn) {
        isOwn = isOwn && info.kind == EntryKind::Directory;
        found.push_back({path, info, isOwn});
        if (!isOwn)
            return;
        if (const auto entries = files.List(path))
            for (const DirectoryEntry& entry : *entries)
                if (const std::string below = AddBackslash(path) + entry.name;
                    !IsOwnName(entry.name) && seen.insert(FoldCase(below)).second)
                    Note(below, entry.info, !entry.isMountPoint);
    }

    const FileSystem& files;
    std::set<std::string> seen;
    std::vector<LeftPlace> found;
};

class Obstacles {
  public:
    Obstacles(const FileSystem& fileSystem, const Journal& left) : files(fileSystem), journal(left) {
        for (const LeftPlace& place : journal.left)
            (place.info ? present : absent).insert(FoldCase(place.path));
    }

    std::string Find() const {
        for (const Record& record : journal.records)
            if (std::string reason = OfRecord(record); !reason.empty())
                return reason;
        for (const LeftPlace& place : journal.left)
            if (std::string reason = OfPlace(place); !reason.empty())
                return reason;
        return "";
    }

  private:
    std::string OfRecord(const Record& record) const {
        if (record.kind == RecordKind::Deleted)
            return record.path + " could not be kept.";
        const bool isKept = record.kind == RecordKind::SetAside || record.kind == RecordKind::Replaced;
        if (isKept && !files.Info(record.kept))
            return "What was kept of " + record.path + " is no longer in " + ParentDirectory(record.kept) + ".";
        if (record.kind == RecordKind::SetAside || record.kind == RecordKind::RemovedDirectory)
            return OfParent(record.path);
        return record.kind == RecordKind::Renamed ? OfParent(record.other) : "";
    }

    // Where something is to come back there has to be a directory, or one that comes back itself.
    std::string OfParent(const std::string& path) const {
        for (std::string parent = WithoutBackslash(ParentDirectory(path)); !parent.empty();
             parent = WithoutBackslash(ParentDirectory(parent)))
            if (IsOwnPlace(parent) || absent.contains(FoldCase(parent)))
                return "";
        const std::string directory = ParentDirectory(path);
        return files.IsDirectory(directory) ? "" : "The directory " + directory + " is no longer there.";
    }

    std::string OfPlace(const LeftPlace& left) const {
        const auto now = files.Info(left.path);
        if (!now && now.fault() != FileFault::NotFound)
            return left.path + " cannot be read (" + DescribeFault(now.status()) + ").";
        if (!left.info)
            return now ? left.path + " is there again." : "";
        if (!now)
            return left.path + " is no longer there.";
        const bool isFile = left.info->kind == EntryKind::File;
        if (now->kind != left.info->kind || (isFile && (now->size != left.info->size || now->time != left.info->time)))
            return left.path + " was changed since.";
        return left.isOwn ? OfContents(left.path) : "";
    }

    std::string OfContents(const std::string& directory) const {
        const auto entries = files.List(directory);
        if (!entries)
            return directory + " cannot be read (" + DescribeFault(entries.status()) + ").";
        for (const DirectoryEntry& entry : *entries) {
            const std::string path = AddBackslash(directory) + entry.name;
            const bool isManagers = entry.info.kind == EntryKind::File && IsFileManagersFile(entry.name);
            if (!isManagers && !IsOwnName(entry.name) && !present.contains(FoldCase(path)))
                return path + " has come since.";
        }
        return "";
    }

    const FileSystem& files;
    const Journal& journal;
    std::set<std::string> present, absent;
};

} // namespace

std::vector<LeftPlace> LookAtPlaces(const FileSystem& files, const std::vector<Record>& records) {
    Places places(files);
    const auto isOwn = [](const Record& record) {
        return record.kind == RecordKind::Placed || record.kind == RecordKind::MadeDirectory ||
               (record.kind == RecordKind::Renamed && IsKeptPlace(record.other)); // it came back
    };
    for (const Record& record : records)
        if (isOwn(record)) // also where something else had that name before
            places.Add(record.path, true);
    for (const Record& record : records)
        if (record.kind != RecordKind::KeptFrom && record.kind != RecordKind::DirectoryTime) {
            places.Add(record.path, false);
            places.Add(record.other, false);
        }
    return places.Take();
}

std::vector<LeftPlace> WithoutOthers(std::vector<LeftPlace> now, const std::vector<LeftPlace>& before,
                                     const std::vector<Record>& later) {
    std::map<std::string, bool> wasThere;
    for (const LeftPlace& place : before)
        wasThere[FoldCase(place.path)] = place.info.has_value();
    std::set<std::string> changed;
    for (const Record& record : later)
        changed.insert({FoldCase(record.path), FoldCase(record.other)});
    const auto isCommands = [&](std::string path) {
        for (; !path.empty(); path = WithoutBackslash(ParentDirectory(path)))
            if (changed.contains(path))
                return true;
        return false;
    };
    std::erase_if(now, [&](LeftPlace& place) {
        const std::string key = FoldCase(place.path);
        const auto known = wasThere.find(key);
        if (!place.info || isCommands(key) || (known != wasThere.end() && known->second))
            return false;
        place.info.reset();
        return known == wasThere.end();
    });
    return now;
}

std::string FindObstacle(const FileSystem& files, const Journal& journal) {
    return Obstacles(files, journal).Find();
}

} // namespace korvadex
