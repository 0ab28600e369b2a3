// The queue of archives beside Staging: what waits in it, and how it is taken.
#include "app/program.h"
#include "package/file_primitives.h"
#include "package/name_list.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

constexpr std::string_view QueueFileName = "queue.txt", TakenFileName = "taken.txt";

} // namespace

void Program::OpenQueue() {
    takenBy.Open(history.Directory() + std::string(TakenFileName), looksOnly);
    const Status read = queue.Open(settings.AppDir + std::string(QueueFileName), looksOnly);
    if (!read)
        user.Tell("The queue of archives " + read.path + " could not be read (" + DescribeFault(read) +
                      ").  The file is left as it is, and what is added to the queue now is lost when Korvadex ends.",
                  MessageIcon::Exclamation);
}

void Program::KeepQueue(const Status& saved) {
    if (!saved)
        user.Tell("The queue of archives could not be saved in " + settings.AppDir + std::string(QueueFileName) + " (" +
                      DescribeFault(saved) +
                      ").  Korvadex tries again when the queue changes; until then it is lost "
                      "when Korvadex ends.",
                  MessageIcon::Exclamation);
}

void Program::Enqueue(const std::vector<QueuedArchive>& archives) {
    if (queue.Entries().empty())
        takenFromQueue = 0;
    const std::size_t before = queue.Entries().size();
    KeepQueue(queue.Add(archives));
    queue.LookAgain();
    const std::size_t added = queue.Entries().size() - before;
    ShowStatus(added == 1 ? LastPathComponent(queue.Entries().back().path) + " waits in the queue."
                          : std::to_string(added) + " archives were added to the queue.");
}

std::optional<QueuedArchive> Program::ArchiveAt(int row) const {
    const auto& entries = queue.Entries();
    return row >= 0 && row < std::ssize(entries) ? std::optional(entries[static_cast<std::size_t>(row)]) : std::nullopt;
}

void Program::OfferArchives(const std::vector<std::string>& paths) {
    bool isToTake = false;
    Run({"Process ZIP", ""}, [&] {
        EnsureStagingSide();
        if (!IsStagingReady())
            return;
        isToTake = AddOrEnqueue(LookForArchives(paths));
    });
    if (isToTake)
        TakeNextArchive();
}

std::vector<QueuedArchive> Program::LookForArchives(const std::vector<std::string>& paths) {
    FoundArchives found = FindArchives(files, settings.locations, paths);
    if (!found.unreadable.empty())
        user.Tell("The following directories could not be searched for archives ...\r\n\r\n" +
                      ListNames(found.unreadable) +
                      "\r\n\r\nPlease make sure that they are there and that you may read them, and try again.",
                  MessageIcon::Exclamation);
    else if (found.archives.empty())
        user.Tell("There is no zip archive in what you have chosen.", MessageIcon::Exclamation);
    return std::move(found.archives);
}

bool Program::AddOrEnqueue(const std::vector<QueuedArchive>& archives) {
    const bool isEmpty = StagingIsEmpty(files, settings.locations);
    if (archives.size() == 1 && isEmpty)
        AddAtOnce(archives.front());
    else if (!archives.empty())
        Enqueue(archives);
    return archives.size() > 1 && isEmpty;
}

void Program::ProcessArchiveDirectory() {
    std::string directory;
    Run({"Process ZIP", ""}, [&] {
        if (ArePlacesThere({Place::Staging}))
            directory = dialogs.ChooseArchiveDirectory(settings.LastZipPath);
    });
    if (!directory.empty())
        OfferArchives({directory});
}

bool Program::IsStagingFree() {
    const bool isFree = StagingIsEmpty(files, settings.locations);
    if (!isFree)
        user.Tell("Staging still contains files.  The next archive can be taken when they have been copied to the "
                  "Hangar, or removed from Staging.",
                  MessageIcon::Exclamation);
    return isFree;
}

void Program::TakeNextArchive() {
    TakeArchive(0);
}

void Program::TakeArchive(int row) {
    const auto wanted = ArchiveAt(row);
    Run({"Process ZIP", wanted ? LastPathComponent(wanted->path) : ""}, [&] {
        if (!wanted)
            return user.Tell(NoArchiveText);
        EnsureStagingSide();
        if (!IsStagingReady() || !IsStagingFree())
            return;
        ShowStatus(DescribeTurn(*wanted, 1));
        QueuedArchive archive = *wanted;
        const bool isAdded = AddArchive(archive);
        EndJournal();
        queue.LookAgain();
        if (isAdded && !StagingIsEmpty(files, settings.locations))
            return NoteInStaging(archive);
        if (archive.reason.empty()) // the user was told why
            archive.reason = files.Info(archive.path) ? NothingCameReason : GoneArchiveReason;
        KeepQueue(queue.PutLast({archive}));
    });
}

void Program::NoteInStaging(const QueuedArchive& archive) {
    NoteTaken({archive});
    archivesInStaging.push_back(archive);
    ++takenFromQueue;
    ShowStatus(DescribeTurn(archive, 0));
}

void Program::AddAtOnce(QueuedArchive archive) {
    if (AddArchive(archive) && !archive.part.empty() && EndJournal()) // it came into the queue with the others
        NoteInStaging(archive);
}

// "2 of 30: Skerrow v2.zip"; ahead: how many of those that wait still are taken then.
std::string Program::DescribeTurn(const QueuedArchive& archive, int ahead) const {
    const auto total = static_cast<std::size_t>(takenFromQueue) + queue.Entries().size();
    return std::to_string(takenFromQueue + ahead) + " of " + std::to_string(total) + ": " +
           LastPathComponent(archive.path);
}

// The command that has just ended has taken them: with it they come back.
void Program::NoteTaken(const std::vector<QueuedArchive>& archives) {
    std::vector<QueuedArchive> waited; // others come from a shell
    std::ranges::copy_if(archives, std::back_inserter(waited), [&](const auto& each) { return queue.Holds(each); });
    const HistoryEntry* entry = history.NextUndo();
    if (entry && entry->item == history.Item() && !waited.empty())
        if (const Status noted = takenBy.Note(*entry, waited, history.Entries()); !noted)
            user.Tell("Which archives this command has taken could not be written down in " + noted.path + " (" +
                          DescribeFault(noted) +
                          ").  When it is taken back after a restart, please choose the archives again.",
                      MessageIcon::Exclamation);
    KeepQueue(queue.Remove(archives));
}

void Program::QueueFollows(const HistoryEntry& entry, bool isUndo) {
    const auto archives = takenBy.By(entry);
    if (archives.empty())
        return;
    KeepQueue(isUndo ? queue.AddFirst(archives) : queue.Remove(archives));
    const int count = static_cast<int>(archives.size());
    takenFromQueue = std::max(0, takenFromQueue + (isUndo ? -count : count));
}

void Program::SkipArchive() {
    bool isCleared = false;
    Run({"Clear Staging", ""}, [&] {
        const auto skipped = archivesInStaging; // forgotten with what is in Staging
        if (skipped.empty()) {
            if (const auto first = ArchiveAt(0))
                KeepQueue(queue.PutLast({*first}));
            return;
        }
        EnsureStagingSide();
        if (!IsStagingReady())
            return;
        SetSubject(view.packageName);
        EraseStaging();
        if (!StagingIsEmpty(files, settings.locations))
            return;
        takenFromQueue = std::max(0, takenFromQueue - static_cast<int>(skipped.size()));
        KeepQueue(queue.Add(skipped)); // first: a cut after the end of the command would leave them nowhere
        isCleared = EndJournal();
    });
    if (isCleared)
        TakeNextArchive();
}

void Program::RemoveFromQueue(const std::vector<int>& rows) {
    std::vector<QueuedArchive> chosen;
    for (const int row : rows)
        if (const auto archive = ArchiveAt(row))
            chosen.push_back(*archive);
    if (chosen.empty())
        return;
    Run({"Remove from queue", ""}, [&] {
        if (chosen.size() > 1 && !user.AskYesNo("Do you want to remove these " + std::to_string(chosen.size()) +
                                                " archives from the queue?  The archives themselves stay where they "
                                                "are."))
            return;
        KeepQueue(queue.Remove(chosen));
        ShowStatus(chosen.size() == 1 ? LastPathComponent(chosen.front().path) + " was removed from the queue."
                                      : std::to_string(chosen.size()) + " archives were removed from the queue.");
    });
}

void Program::AddArchiveToStaging(int row) {
    const auto wanted = ArchiveAt(row);
    if (!wanted)
        return;
    Run({"Process ZIP", LastPathComponent(wanted->path)}, [&] {
        EnsureStagingSide();
        QueuedArchive archive = *wanted;
        if (!IsStagingReady() || !MayAddToStaging() || !AddArchive(archive))
            return;
        if (!EndJournal())
            return;
        NoteTaken({archive});
        archivesInStaging.push_back(archive);
    });
}

} // namespace korvadex
