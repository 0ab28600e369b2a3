#include "app/archive_queue.h"

#include "journal/record.h"
#include "package/archive_names.h"
#include "package/scratch.h"
#include "package/walk.h"
#include "platform/code_page.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <map>
#include <utility>

namespace korvadex {

namespace {

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t MaxFields = 3;

std::string KeyOf(const QueuedArchive& archive) {
    return FoldCase(archive.path + "\n" + archive.part);
}

QueuedArchive ReadArchive(std::string_view line) {
    auto fields = SplitFields(line);
    const bool isPath = fields[0].starts_with("\\\\") || IsDrivePath(fields[0]);
    const bool isKnownAsOdd = fields.size() == MaxFields && fields[2] == OddLineReason;
    if (!isKnownAsOdd && (!isPath || !IsValidUtf8(line) || fields.size() > MaxFields))
        return {std::string(line), "", OddLineReason};
    fields.resize(MaxFields);
    return {fields[0], fields[1], fields[2]};
}

} // namespace

FoundArchives FindArchives(const FileSystem& files, const Locations& locations, const std::vector<std::string>& paths) {
    FoundArchives found;
    for (const std::string& path : paths) {
        if (!files.IsDirectory(path)) {
            found.archives.push_back({path});
            continue;
        }
        const Tree tree = WalkTree(files, AddBackslash(path), WalkFor::Search);
        found.unreadable.insert(found.unreadable.end(), tree.unreadable.begin(), tree.unreadable.end());
        for (const FileEntry& file : tree.files)
            if (file.info.kind == EntryKind::File && IsArchiveName(file.key) && locations.RootOf(file.path).empty())
                found.archives.push_back({file.path});
    }
    return found;
}

Status ArchiveQueue::Open(const std::string& path, bool isToBeRead) {
    file = path;
    isReadOnly = isToBeRead;
    unread = {};
    entries.clear();
    const auto text = ReadBytes(files, file);
    if (!text) {
        unread = text.fault() == FileFault::NotFound ? Status{} : text.status();
        return unread;
    }
    std::string_view bytes = *text;
    if (bytes.starts_with(ByteOrderMark))
        bytes.remove_prefix(ByteOrderMark.size());
    std::vector<QueuedArchive> read;
    ForEachLine(bytes, [&](std::string_view line, std::string_view) {
        if (!Trim(line).empty())
            read.push_back(ReadArchive(line));
    });
    entries = NewOf(read);
    LookAgain();
    return {};
}

bool ArchiveQueue::LookAgain() {
    bool hasChanged = false;
    for (QueuedArchive& entry : entries) {
        const bool isThere = bool(files.Info(entry.path)), wasGone = entry.reason == GoneArchiveReason;
        if (isThere == wasGone && (isThere || entry.reason.empty())) {
            entry.reason = isThere ? "" : GoneArchiveReason;
            hasChanged = true;
        }
    }
    return hasChanged;
}

Status ArchiveQueue::Add(const std::vector<QueuedArchive>& archives) {
    auto added = NewOf(archives);
    std::ranges::move(added, std::back_inserter(entries));
    return Save();
}

Status ArchiveQueue::AddFirst(const std::vector<QueuedArchive>& archives) {
    auto added = NewOf(archives);
    std::ranges::move(entries, std::back_inserter(added));
    entries = std::move(added);
    return Save();
}

Status ArchiveQueue::Remove(std::vector<QueuedArchive> archives) {
    for (const QueuedArchive& archive : archives)
        if (const auto found = Find(archive); found != entries.end())
            entries.erase(found);
    return Save();
}

Status ArchiveQueue::PutLast(std::vector<QueuedArchive> archives) {
    for (const QueuedArchive& archive : archives)
        if (const auto found = Find(archive); found != entries.end()) {
            found->reason = archive.reason;
            std::rotate(found, found + 1, entries.end());
        }
    return Save();
}

Status ArchiveQueue::SetReasons(std::vector<QueuedArchive> archives) {
    for (const QueuedArchive& archive : archives)
        if (const auto found = Find(archive); found != entries.end())
            found->reason = archive.reason;
    return Save();
}

bool ArchiveQueue::Holds(const QueuedArchive& archive) const {
    const auto isExact = [&](const QueuedArchive& entry) {
        return entry.path == archive.path && entry.part == archive.part;
    };
    return std::ranges::any_of(entries, isExact) ||
           std::ranges::any_of(entries, [&](const QueuedArchive& entry) { return IsSame(entry, archive); });
}

std::vector<QueuedArchive>::iterator ArchiveQueue::Find(const QueuedArchive& archive) {
    const auto exact = std::ranges::find_if(
        entries, [&](const QueuedArchive& entry) { return entry.path == archive.path && entry.part == archive.part; });
    if (exact != entries.end())
        return exact;
    return std::ranges::find_if(entries, [&](const QueuedArchive& entry) { return IsSame(entry, archive); });
}

// Where the host tells names of another case apart there may be two archives.
bool ArchiveQueue::IsSame(const QueuedArchive& a, const QueuedArchive& b) const {
    if (KeyOf(a) != KeyOf(b))
        return false;
    const auto one = files.Info(a.path), other = files.Info(b.path);
    return a.path == b.path || !one || !other || *one == *other;
}

std::vector<QueuedArchive> ArchiveQueue::NewOf(const std::vector<QueuedArchive>& archives) {
    std::multimap<std::string, QueuedArchive> known;
    for (const QueuedArchive& entry : entries)
        known.emplace(KeyOf(entry), entry);
    std::vector<QueuedArchive> added;
    for (const QueuedArchive& archive : archives) {
        const auto [from, to] = known.equal_range(KeyOf(archive));
        if (std::any_of(from, to, [&](const auto& entry) { return IsSame(entry.second, archive); }))
            continue;
        known.emplace(KeyOf(archive), archive);
        added.push_back(archive);
    }
    return added;
}

Status ArchiveQueue::Save() const {
    if (!unread || isReadOnly || file.empty())
        return unread;
    std::string text;
    for (const QueuedArchive& entry : entries) {
        text += JoinFields({entry.path, entry.part, entry.reason});
        text.insert(text.size() - 1, 1, '\r'); // for people who look at it
    }
    if (text.empty())
        return files.Info(file).fault() == FileFault::NotFound ? Status{} : files.Delete(file);
    if (const auto kept = ReadBytes(files, file); kept && *kept == text)
        return {};
    return RewriteBytes(files, {}, file, text);
}

} // namespace korvadex
