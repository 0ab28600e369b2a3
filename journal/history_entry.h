// One command of the history.
#pragma once

#include "journal/record.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

// What is in each file stays the same and only takes more or less room: nothing of it is kept, as it can be done the
// other way round.
enum class Repacking { None, Packs, Unpacks };

// What to call a command: "Undo Install Pellmoor P12".
struct CommandTitle {
    std::string name = {}, subject = {};
    Repacking repacking = Repacking::None;

    // "Install Pellmoor P12"
    std::string Text() const { return subject.empty() ? name : name + " " + subject; }
    bool operator==(const CommandTitle&) const = default;
};

enum class EntryState {
    Done,
    Undone,
    CutOff, // in the middle of its work, and taken back at the next start
    Remains // the same, but not all of it could be taken back: keptIn names what is the user's, and stays
};

struct HistoryEntry {
    int number = 0; // of its last change: done, undone or redone
    int item = 0;   // its number when it was done first: the order of the history
    CommandTitle title;
    EntryState state = EntryState::Done;
    FileTime time = {};                   // when it was done first
    std::string key = {};                 // the name of its directories of kept things, as no other command has it
    std::uint64_t files = 0, bytes = 0;   // that it has brought, taken away or changed
    std::uint64_t keptBytes = 0;          // that it keeps
    std::string whyNot = {};              // why it cannot be taken back or done again; "" when it can
    std::vector<std::string> keptIn = {}; // the directories with what it keeps

    bool operator==(const HistoryEntry&) const = default;
};

// One line, with its end.
std::string LineOf(const HistoryEntry& entry);
// None when the first line of the text is not one.
std::optional<HistoryEntry> ReadEntry(std::string_view text);

} // namespace korvadex
