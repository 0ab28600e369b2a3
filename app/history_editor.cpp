#include "app/history_editor.h"

#include "package/meg.h"
#include "platform/date_text.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <set>

namespace korvadex {

namespace {

std::string StateText(EntryState state, bool isForGood) {
    switch (state) {
    case EntryState::Done:
        return isForGood ? "Cannot be taken back" : "";
    case EntryState::Undone:
        return isForGood ? "Taken back for good" : "Taken back";
    case EntryState::CutOff:
        return "Cut off";
    case EntryState::Remains:
        break;
    }
    return "Taken back in part";
}

} // namespace

const HistoryEntry& HistoryEditor::EntryAt(int row) const {
    return history.Entries().at(history.Entries().size() - 1 - static_cast<std::size_t>(row));
}

std::vector<HistoryRow> HistoryEditor::Rows() const {
    std::vector<HistoryRow> rows;
    for (int row = 0; row < std::ssize(history.Entries()); ++row) {
        const HistoryEntry& entry = EntryAt(row);
        const bool isOutdone = entry.state == EntryState::Undone && entry.whyNot.empty() && RedosTo(row) == 0;
        const std::string reason = isOutdone ? "Another command has come since it was taken back." : entry.whyNot;
        rows.push_back({ShortDateTime(entry.time), entry.title.name, entry.title.subject,
                        entry.files > 0 ? std::to_string(entry.files) : "",
                        entry.files > 0 ? SizeText(entry.bytes) : "", StateText(entry.state, !reason.empty()), reason});
    }
    return rows;
}

std::vector<FileChange> HistoryEditor::FilesOf(int row) const {
    const HistoryEntry& entry = EntryAt(row);
    return ListFileChanges(files, history.ReadJournalOf(entry), entry.state == EntryState::Undone);
}

int HistoryEditor::UndosTo(int row) const {
    if (EntryAt(row).state != EntryState::Done)
        return 0;
    int count = 0;
    for (int at = 0; at <= row; ++at)
        count += EntryAt(at).state == EntryState::Done ? 1 : 0;
    return count;
}

int HistoryEditor::RedosTo(int row) const {
    const auto order = history.RedoOrder();
    const auto found = std::ranges::find(order, &EntryAt(row));
    return found == order.end() ? 0 : static_cast<int>(found - order.begin()) + 1;
}

void HistoryEditor::TakeBackTo(int row) {
    ReverseTo(row, UndosTo(row), true);
}

void HistoryEditor::DoAgainTo(int row) {
    ReverseTo(row, RedosTo(row), false);
}

void HistoryEditor::ReverseTo(int row, int count, bool isUndo) {
    const HistoryEntry& entry = EntryAt(row);
    const std::string number = std::to_string(count),
                      last = "\"" + entry.title.Text() + "\" (" + ShortDateTime(entry.time) + ")";
    if (count > 1 &&
        !user.AskYesNo(isUndo ? "Do you want to take back the last " + number + " commands, down to " + last + "?"
                              : "Do you want to do " + number + " commands again, up to " + last + "?",
                       MessageIcon::Exclamation))
        return;
    for (int i = 0; i < count; ++i)
        if (!reverse(isUndo ? history.NextUndo() : history.NextRedo(), isUndo))
            return;
}

void HistoryEditor::Empty() {
    std::string text = "Do you want to empty the history?  What is kept (" + SizeText(history.KeptBytes()) +
                       ") will be deleted, and none of the commands in the list can be taken back or done again any "
                       "more.  The Hangar, Staging and the simulator stay as they are.";
    if (const std::string away = NameKept(true); !away.empty())
        text += "\r\n\r\nWhat is kept in " + away + " stays there, as it cannot be reached now.";
    if (std::ranges::any_of(history.Entries(), [&](auto& entry) { return history.MustStay(entry); }))
        text += "\r\n\r\nWhat could not be taken back of a command that was cut off stays where it is kept, and the "
                "list goes on to name it.";
    if (user.AskYesNo(text, MessageIcon::Exclamation, Answer::No))
        history.Empty();
}

void HistoryEditor::SetLimits(const HistoryLimits& limits) {
    if (limits == settings.historyLimits)
        return;
    const bool isLess = history.CommandCount() > limits.commands || history.KeptBytes() > limits.bytes;
    if (isLess && !user.AskYesNo("There is more in the history than that: the oldest commands cannot be taken back "
                                 "any more, and what is kept of them will be deleted.  Do you want that?",
                                 MessageIcon::Exclamation, Answer::No))
        return;
    settings.historyLimits = limits;
    history.SetLimits(limits);
    history.Prune();
}

std::string HistoryEditor::NameKept(bool isAway) const {
    std::set<std::string> directories;
    for (const HistoryEntry& entry : history.Entries())
        if (entry.state != EntryState::Remains && history.IsAway(entry) == isAway)
            for (const std::string& keptIn : entry.keptIn)
                directories.insert(ParentDirectory(keptIn));
    std::string text;
    for (const std::string& directory : directories)
        text += (text.empty() ? "" : ", ") + directory;
    return text;
}

std::string HistoryEditor::DescribeKept() const {
    const std::string here = NameKept(false), away = NameKept(true);
    return "Kept at the moment: " + SizeText(history.KeptBytes()) + (here.empty() ? "" : " in " + here) +
           (away.empty() ? "" : ".  More is in " + away + ", which cannot be reached now") +
           ".  The list itself is in " + history.Directory() + ".";
}

} // namespace korvadex
