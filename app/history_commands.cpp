// What was done to the collection lately: taken back, done again, or cut off.
#include "app/history_editor.h"
#include "app/program.h"
#include "app/unattended.h"
#include "archive/in_place.h"
#include "journal/take_back.h"
#include "package/archive_names.h"
#include "package/file_primitives.h"
#include "package/name_list.h"
#include "package/progress.h"
#include "platform/date_text.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

constexpr const char* UnansweredText = "The command was ended, as its question was not answered.";

constexpr const char* HistoryDirectory = "journal\\";

// "Install Jets\Lear" of 11/22/2026 9:30
std::string Describe(const HistoryEntry& entry) {
    const bool isReversal = entry.number != entry.item;
    const char* how = !isReversal ? "" : entry.state == EntryState::Undone ? "the undo of " : "the redo of ";
    return how + ("\"" + entry.title.Text() + "\"") + " (" + ShortDateTime(entry.time) + ")";
}

std::string ListFailures(const std::vector<Status>& failures) {
    std::vector<std::string> names;
    std::ranges::transform(failures, std::back_inserter(names), [](const Status& status) {
        return status.path + " (" +
               (IsGoneForGood(status) ? "it could not be kept, and is gone for good" : DescribeFault(status)) + ")";
    });
    return ListNames(names);
}

// What has become of a command of which nothing is to be tried again. whole: what to say when it is all.
std::string DescribeTakenBack(const std::vector<Status>& goneForGood, const char* whole) {
    if (goneForGood.empty())
        return whole;
    return "What it had changed has been taken back, but for the following ...\r\n\r\n" + ListFailures(goneForGood);
}

// Of a file of the program's own: the directory of the user's in which that lies.
std::string PlaceOf(const std::string& path) {
    const auto own = path.find("\\~kx~");
    return own == std::string::npos ? path : path.substr(0, own + 1);
}

bool HasChanged(const std::vector<Record>& records, const std::string& directory) {
    return std::ranges::any_of(records, [&](const Record& record) {
        return record.kind != RecordKind::DirectoryTime && record.kind != RecordKind::KeptFrom &&
               (IsAtOrBelow(record.path, directory) || IsAtOrBelow(record.other, directory) ||
                IsAtOrBelow(record.kept, directory));
    });
}

// "Jets\Lear" or "Jets"; "" when the path is neither a package's directory nor a category's.
std::string NameInHangar(const Locations& locations, const std::string& path) {
    if (!IsAtOrBelow(path, locations.HangarDir) || path.size() <= locations.HangarDir.size())
        return "";
    const std::string below = path.substr(locations.HangarDir.size());
    return std::ranges::count(below, '\\') <= 1 ? below : "";
}

} // namespace

void Program::OpenHistory() {
    const auto ask = [this](const std::string& question) {
        return unattended ? unattended->Refuse(question) : AskInTheMidst(question);
    };
    history.Files().mayDelete = [ask](const Status& why) {
        return ask("What goes now cannot be kept in " + why.path + " (" + DescribeFault(why) +
                   "), so that it could be taken back.  Shall it be deleted all the same?");
    };
    history.Files().mayGoOnWithoutLog = [ask](const Status& why) {
        return ask("What this command changes cannot be written down in " + why.path + " (" + DescribeFault(why) +
                   "), so that it could be taken back.  Do you want to go on all the same?");
    };
    history.SetLocations({settings.locations.HangarDir, settings.locations.StagingDir, settings.locations.MsfsDir});
    history.SetLimits(settings.historyLimits);
    const bool onlyLooks = runsFor == RunFor::Looking;
    history.Open(settings.AppDir + HistoryDirectory, onlyLooks);
    if (!onlyLooks)
        SettleCutOff();
}

// Who asks has files open: nothing may be thrown through that.
bool Program::AskInTheMidst(const std::string& question) {
    try {
        return user.AskYesNo(question, MessageIcon::Exclamation, Answer::No);
    } catch (const Asked&) {
        isUnanswered = true;
        return false;
    }
}

void Program::SettleCutOff() {
    std::vector<std::pair<HistoryEntry, Doubts>> wanted;
    for (const HistoryEntry& entry : history.CutOff())
        if (auto doubts = DoubtsOf(entry); MayTakeBack(entry, doubts))
            wanted.emplace_back(entry, std::move(doubts));
    // Cut off while it takes them back, it need not ask again.
    locks.Sign(false);
    for (const auto& [entry, doubts] : wanted)
        if (!looksOnly)
            TakeBackCutOff(entry, doubts);
}

Program::Doubts Program::DoubtsOf(const HistoryEntry& entry) const {
    Doubts doubts;
    const auto records = history.ReadJournalOf(entry).records;
    for (const TakenPlace& place : locks.Places())
        if (place.state != PlaceState::Known && HasChanged(records, place.directory))
            (place.state == PlaceState::Empty ? doubts.away : doubts.other).push_back(place.directory);
    return doubts;
}

bool Program::MayTakeBack(const HistoryEntry& entry, const Doubts& doubts) {
    const SubjectScope about(user, entry.title.subject);
    std::string others;
    for (const std::string& directory : doubts.other)
        others += (others.empty() ? "" : " and ") + directory;
    if (others.empty() ||
        user.AskYesNo("Korvadex was cut off in the middle of " + Describe(entry) +
                          ".  Another Korvadex seems to have worked in " + others +
                          " since, or it is not the same drive.  Shall what the command had changed be taken back all "
                          "the same?  (If not, it stays as it is now; what was kept remains in the directory "
                          "~kx~kept.)",
                      MessageIcon::Exclamation, Answer::No))
        return true;
    GiveUpCutOff(entry);
    return false;
}

void Program::GiveUpCutOff(const HistoryEntry& entry) {
    history.GiveUpCutOff(entry);
    keepsScratch = true;
}

void Program::TakeBackCutOff(const HistoryEntry& entry, Doubts doubts) {
    const SubjectScope about(user, entry.title.subject);
    for (bool isSame = true;;) {
        isSame = isSame && doubts.other.empty();
        const auto failures = history.TakeBackCutOff(entry, doubts.away);
        if (std::ranges::all_of(failures, IsGoneForGood)) {
            const auto outcome = DescribeTakenBack(
                failures, isSame ? "What it had changed so far has been taken back: everything is as it was before."
                                 : "What it had changed so far has been taken back, as far as it was still there.");
            user.Tell("Korvadex was cut off in the middle of " + Describe(entry) + ".  " + outcome,
                      failures.empty() ? MessageIcon::Information : MessageIcon::Exclamation);
            return;
        }
        if (!user.AskYesNo("Korvadex was cut off in the middle of " + Describe(entry) +
                               ".  The following of what it had changed could not be taken back ...\r\n\r\n" +
                               ListFailures(failures) +
                               "\r\n\r\nPlease close the program that uses them, or make sure that the drive is there "
                               "and that you may write there.  Do you want to try again?  (If not, it stays as it is "
                               "now; what was kept remains in the directory ~kx~kept.)",
                           MessageIcon::Exclamation))
            return GiveUpCutOff(entry);
        // A drive may be there by now, or another one.
        const auto others = locks.Take(settings.AppDir, settings.locations, true);
        keepsScratch = keepsScratch || !others.cutOff.empty();
        looksOnly = !others.atWork.empty();
        doubts = DoubtsOf(entry);
        if (looksOnly || !MayTakeBack(entry, doubts))
            return;
        locks.Sign(false);
    }
}

void Program::SetSubject(const std::string& subject) {
    history.SetSubject(subject);
    user.subject = subject;
}

bool Program::EndJournal() {
    const Status trouble = history.Trouble();
    bool isToStay = true;
    std::string why;
    if (!trouble && history.HasChanged()) {
        try {
            isToStay = !user.AskYesNo("The disk failed at " + PlaceOf(trouble.path) + " (" + DescribeFault(trouble) +
                                          ").  Shall everything that this command has changed be taken back?",
                                      MessageIcon::Exclamation);
        } catch (const Asked&) {
            isToStay = false;
            why = UnansweredText;
        }
    }
    const Status written = history.End(isToStay);
    if (!written)
        TellTakenBack("It could not be written down what this command changes, in " + written.path + " (" +
                      DescribeFault(written) + ").");
    else if (!isToStay)
        TellTakenBack(why);
    history.Prune();
    return isToStay && written;
}

// Half of it is of no use to anybody.
void Program::EndBroken(const std::exception& trouble) {
    const bool hasChanged = history.HasChanged();
    static_cast<void>(history.End(false));
    if (!hasStarted)
        throw;
    const std::string text = std::string("The command could not be finished (") + trouble.what() + ").";
    if (hasChanged)
        return TellTakenBack(text);
    isHangarStale = true;
    user.Tell(text, MessageIcon::Exclamation);
}

void Program::EndStopped(const Stopped& stop) {
    wasStopped = true;
    EndHalfDone("The command was stopped.", stop.stays, MessageIcon::None);
}

void Program::EndUnanswered() {
    isUnanswered = false;
    if (!hasStarted)
        throw ProgramEnd{};
    EndHalfDone(UnansweredText, "", MessageIcon::Exclamation);
}

void Program::EndHalfDone(const std::string& text, std::string stays, MessageIcon icon) {
    stopsAtStep = false;
    window.HideProgress();
    window.OfferStop(false);
    ShowStatus("");
    if (stays.empty() && history.Files().IsWithoutLog())
        stays = "What it has changed so far was not written down, and stays as it is.";
    if (!stays.empty()) {
        ShowChanges({.hangar = true, .simulator = true, .package = true});
        EndJournal();
        return user.Tell(text + "  " + stays, icon);
    }
    const bool hasChanged = history.HasChanged();
    static_cast<void>(history.End(false));
    if (hasChanged)
        return TellTakenBack(text);
    LoadShownSide(); // it may have been in the middle of that
    static_cast<void>(history.End());
    user.Tell(text + "  Nothing was changed.", icon);
}

void Program::TellTakenBack(const std::string& why) {
    const std::string reason = why.empty() ? "" : why + "  ";
    const auto& remains = history.Remains();
    if (std::ranges::all_of(remains, IsGoneForGood))
        user.Tell(reason + DescribeTakenBack(
                               remains, "Everything that it had changed has been taken back: all is as it was before."),
                  MessageIcon::Exclamation);
    else
        user.Tell(reason + "The following of what it had changed could not be taken back ...\r\n\r\n" +
                      ListFailures(remains) + "\r\n\r\nWhat was kept of it is in the directory ~kx~kept.",
                  MessageIcon::Exclamation);
    FollowBack();
    ShowChanges({.hangar = true, .simulator = true, .package = true});
    static_cast<void>(history.End()); // of what that has settled
}

void Program::UndoLast() {
    Run([&] {
        if (MayChange())
            Reverse(history.NextUndo(), true);
    });
}

void Program::RedoLast() {
    Run([&] {
        if (MayChange())
            Reverse(history.NextRedo(), false);
    });
}

bool Program::Reverse(const HistoryEntry* entry, bool isUndo) {
    if (!entry) {
        ShowStatus(isUndo ? "There is nothing to be taken back." : "There is nothing to be done again.");
        return false;
    }
    const HistoryEntry reversed = *entry; // the history is another one afterwards
    const CommandTitle& title = reversed.title;
    const std::vector<Record> records = history.ReadJournalOf(*entry).records;
    const SubjectScope about(user, title.subject);
    const auto reason = isUndo ? history.Undo() : history.Redo();
    if (!reason.empty()) {
        const auto text =
            "\"" + title.Text() + "\" cannot be " + (isUndo ? "taken back" : "done again") + ".\r\n\r\n" + reason;
        if (history.Remains().empty())
            user.Tell(text + "\r\n\r\nNothing was changed.", MessageIcon::Exclamation);
        else
            TellTakenBack(text);
        return false;
    }
    QueueFollows(reversed, isUndo);
    ShowReversed(title, records);
    ShowStatus((isUndo ? "Taken back: " : "Done again: ") + title.Text());
    return true;
}

void Program::ShowHistory() {
    Run([&] {
        if (runsFor != RunFor::Looking && !MayChange())
            return;
        HistoryEditor editor(history, files, user, settings, [this](const HistoryEntry* entry, bool isUndo) {
            const bool isDone = Reverse(entry, isUndo);
            EndJournal(); // of what showing it has settled
            return isDone;
        });
        dialogs.ShowHistory(editor);
        if (settings != settings.kept)
            KeepSettings();
    });
}

void Program::ShowHistoryTexts() {
    const auto textOf = [](const HistoryEntry* entry) { return entry ? entry->title.Text() : ""; };
    view.undoText = textOf(history.NextUndo());
    view.redoText = textOf(history.NextRedo());
}

void Program::ForgetGoneLenders() {
    for (PackageRef* lender : {&held.HeldPanelAlias, &held.HeldSoundAlias})
        if (files.Info(WithoutBackslash(lender->Directory(settings.locations))).fault() == FileFault::NotFound)
            *lender = {};
}

// All may have changed. The package that it was about is shown, where it is there, and Staging comes back with the name
// that it had.
void Program::ShowReversed(const CommandTitle& title, const std::vector<Record>& takenBack) {
    PackageRef about = PackageRefOf(title.subject), selected = selection.Package();
    for (auto record = takenBack.rbegin(); record != takenBack.rend(); ++record) {
        const auto from = NameInHangar(settings.locations, record->path),
                   to = NameInHangar(settings.locations, record->other);
        if (record->kind != RecordKind::Renamed || from.empty() || to.empty())
            continue;
        FollowInHangar(from, to);
        FollowName(about, from, to);
        FollowName(selected, from, to);
    }
    ForgetGoneLenders();
    ReadCategories(selected);
    const bool isOfCategory =
        about.category.empty() && HasSubdirectory(files, settings.locations.HangarDir, about.name);
    if (title.name == ChoiceTitle) // shown, Staging would be sorted out again at once
        ShowHangarSide(true);
    else if (view.HangarSideShown && !isOfCategory)
        selection.Select(about);
    const bool wasEmpty = view.isStagingEmpty;
    ShowChanges({.hangar = true, .simulator = true, .package = true});
    if (wasEmpty && !view.isStagingEmpty)
        ProposeName(IsArchiveName(title.subject) ? NameForArchive(package) : about.name);
    history.Prune();
}

std::vector<Status> Program::RepackFiles(const std::vector<std::string>& paths, bool packs) {
    std::vector<std::string> wanted;
    std::ranges::copy_if(paths, std::back_inserter(wanted), [&](const std::string& path) {
        return files.Info(path) && (ReadPackedMember(files, path) != std::nullopt) != packs;
    });
    if (wanted.empty())
        return {};
    std::vector<Status> failures;
    for (const FileFailure& failure :
         packs ? ZipFilesInPlace(context, wanted, [] {}) : UnzipFilesInPlace(context, wanted, [] {}))
        failures.push_back({FileFault::Failed, failure.path});
    return failures;
}

} // namespace korvadex
