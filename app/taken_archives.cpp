#include "app/taken_archives.h"

#include "package/scratch.h"
#include "platform/text_file.h"

#include <algorithm>

namespace korvadex {

namespace {

constexpr std::size_t Fields = 5; // item, time, path, part, reason

auto KeyOf(const HistoryEntry& entry) {
    return std::pair(std::to_string(entry.item), TextOf(entry.time));
}

} // namespace

void TakenArchives::Open(const std::string& path, bool isToBeRead) {
    file = path;
    isReadOnly = isToBeRead;
    taken.clear();
    const auto text = ReadBytes(files, file);
    unread = text || text.fault() == FileFault::NotFound ? Status{} : text.status();
    ForEachLine(text ? std::string_view(*text) : "", [&](std::string_view line, std::string_view) {
        if (const auto fields = SplitFields(line); fields.size() == Fields)
            taken[{fields[0], fields[1]}].push_back({fields[2], fields[3], fields[4]});
    });
}

Status TakenArchives::Note(const HistoryEntry& entry, const std::vector<QueuedArchive>& archives,
                           const std::vector<HistoryEntry>& history) {
    std::erase_if(taken, [&](const auto& known) {
        return std::ranges::none_of(history, [&](const HistoryEntry& kept) { return KeyOf(kept) == known.first; });
    });
    taken[KeyOf(entry)] = archives;
    return Save();
}

std::vector<QueuedArchive> TakenArchives::By(const HistoryEntry& entry) const {
    const auto found = taken.find(KeyOf(entry));
    return found == taken.end() ? std::vector<QueuedArchive>() : found->second;
}

Status TakenArchives::Save() const {
    if (isReadOnly)
        return {};
    if (!unread)
        return unread;
    std::string text;
    for (const auto& [key, archives] : taken)
        for (const auto& [path, part, reason] : archives)
            text += JoinFields({key.first, key.second, path, part, reason});
    return RewriteBytes(files, {}, file, text);
}

} // namespace korvadex
