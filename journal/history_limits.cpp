// The part of History that lets kept things go: the oldest first, by number, by size and where a volume is full.
#include "journal/history.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

constexpr const char* NoRoomReason = "What it had kept had to go, as there was no more room for it.";

} // namespace

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
