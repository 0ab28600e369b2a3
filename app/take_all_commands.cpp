// The archives of the queue that need no question, taken into the Hangar one after the other.
#include "app/batch_report.h"
#include "app/program.h"
#include "app/unattended.h"
#include "archive/process_zip.h"
#include "package/config_readers.h"
#include "package/file_primitives.h"
#include "package/package_name.h"
#include "platform/windows_path.h"
#include "sim/categories.h"
#include "sim/copy_check.h"
#include "sim/copy_package.h"
#include "sim/copy_plan.h"

#include <algorithm>

namespace korvadex {

namespace {

std::string JoinLines(const std::vector<std::string>& notes) {
    std::string text;
    for (const std::string& note : notes)
        text += (text.empty() ? "" : "\r\n") + note;
    return text;
}

} // namespace

std::string Program::AskCategoryForAll() {
    for (std::string preset = selection.Category();;) {
        const auto chosen = dialogs.ChooseCategory("The category of the Hangar for all packages that are made (another "
                                                   "name makes a new one):",
                                                   selection.Categories(), preset);
        if (!chosen)
            return "";
        for (const std::string& category : selection.Categories())
            if (EqualNoCase(category, *chosen))
                return category;
        const std::string name = CleanPackageName(*chosen);
        const std::string problem = DescribeBadCategoryName(context, name);
        if (problem.empty()) {
            const bool isMade = MakeCategory(context, name);
            RefreshSelection();
            return isMade ? name : "";
        }
        user.Tell(problem, MessageIcon::Exclamation);
        preset = *chosen;
    }
}

void Program::TakeAllArchives() {
    const std::vector<QueuedArchive> waiting = queue.Entries();
    const CommandTitle title{"Take", Counted(waiting.size(), "archive")};
    Run(title, [&] {
        if (waiting.empty())
            return user.Tell(NoArchiveText);
        if (!ArePlacesThere({Place::Staging, Place::Hangar, Place::Simulator}) || !IsStagingFree())
            return;
        RefreshSelection();
        const std::string category = AskCategoryForAll();
        if (category.empty())
            return;
        if (history.Files().IsWithoutLog()) // what is left could not be as it was
            return user.Tell("What this command changes cannot be written down.  No archive was taken.",
                             MessageIcon::Exclamation);
        auto turns = GoThrough(waiting.size(), {Place::Staging, Place::Hangar, Place::Simulator}, [&](BatchRun& batch) {
            for (const QueuedArchive& archive : waiting) {
                if (!StagingIsEmpty(files, settings.locations))
                    batch.CutShort("Staging contained files before its turn.");
                batch.TakeOne({category, LastPathComponent(archive.path)}, [&](CommandContext& each, PackageRef& made) {
                    return TakeUnattended(each, archive, made) && unattended->notes.empty();
                });
            }
        });
        ShowTaken(title.Text(), waiting, EndJournal(), std::move(turns));
    });
}

bool Program::TakeUnattended(CommandContext& each, const QueuedArchive& archive, PackageRef& made) {
    const auto leave = [&](const std::string& why) {
        each.user.Tell(why);
        return false;
    };
    if (!StagingIsEmpty(files, settings.locations))
        return leave("Staging contained files before its turn.");
    const HistoryMark mark = history.Mark();
    const auto hasNotes = [&] { return unattended->hasAsked || !unattended->notes.empty(); };
    const auto unpacked = ProcessZipFile(each, unzip, settings.LastZipPath, archive.path);
    if (!unpacked || hasNotes())
        return false;
    QueuedArchive taken{archive.path, archive.part};
    const std::string caption = taken.part.empty() ? "" : KeepOneAircraft(each, *unpacked, taken);
    if (!taken.reason.empty())
        return leave(taken.reason);
    if (HasSeveralAircraftCfg(each))
        return leave("More than one aircraft configuration file (aircraft.cfg) was detected in it.");
    LoadedPackage loaded;
    LoadStaging(each, loaded);
    if (hasNotes())
        return false;
    if (std::ranges::all_of(loaded.tree.files, IsProgramFile))
        return leave("There is nothing in it to copy to the Hangar.");
    if (!std::ranges::all_of(loaded.tree.files, [&](const FileEntry& file) {
            return IsAtOrBelow(file.path, unpacked->contents.directory);
        }))
        return leave("The Staging directory has changed while it was unpacked.  It was not copied.");
    if (!CheckCopySource(each, loaded))
        return false;
    made.name = CleanPackageName(ReadImportName(files, settings.locations));
    if (made.name.empty())
        made.name = CleanPackageName(NameForArchive(loaded, caption));
    if (!CanCopyToHangar(each, loaded, made))
        return false;
    const auto copy = CopyPackageTo(each, loaded, CopyRoot::Hangar, made.Text());
    if (!copy)
        return false;
    if (HasChangedOnDisk(files, loaded))
        return leave("The Staging directory has changed since the package was copied.  It was not cleared.");
    if (const auto missing = FirstNotCopied(each, loaded, CopyRoot::Hangar, *copy); !missing.empty())
        return leave("The new package is not complete any more: it lacks " + missing + ".");
    if (!history.Trouble())
        return false;
    // What others have put there stays.
    const auto failures = history.ClearAway(mark, settings.locations.StagingDir);
    if (!failures.empty())
        return leave("The file " + failures.front().path + " could not be deleted from Staging (" +
                     DescribeFault(failures.front()) + ").");
    return true;
}

void Program::ShowTaken(const std::string& caption, const std::vector<QueuedArchive>& waiting, bool isKept,
                        std::vector<Turn> turns) {
    std::vector<QueuedArchive> taken, left;
    std::optional<PackageRef> last;
    for (std::size_t i = 0; i < turns.size(); ++i) {
        Turn& turn = turns[i];
        const std::string archive = LastPathComponent(waiting[i].path);
        if (turn.isDone && !isKept)
            turn = {turn.package, false, {"It was taken back with all the others."}};
        turn.title = turn.isDone ? turn.package.name + "  (" + archive + ")" : archive;
        if (turn.isDone) {
            taken.push_back(waiting[i]);
            last = turn.package;
            continue;
        }
        turn.package = {};
        if (turn.wasReached)
            left.push_back({waiting[i].path, waiting[i].part,
                            files.Info(waiting[i].path) ? JoinLines(turn.notes) : GoneArchiveReason});
    }
    KeepQueue(queue.SetReasons(left));
    NoteTaken(taken);
    takenFromQueue += static_cast<int>(taken.size());
    const std::string headline = CountDone("taken into the Hangar", turns, "archive");
    ShowChanges({.hangar = true, .package = !view.HangarSideShown, .renamed = last});
    ShowStatus(headline);
    fileList.Show(BuildReport(caption, headline, "taken into the Hangar", turns, files, settings.locations));
    if (taken.size() == turns.size())
        user.Tell("Done.");
    else
        user.Tell(headline + "\r\n\r\nThe others stay in the queue.  The list shows the reasons.",
                  MessageIcon::Exclamation);
}

} // namespace korvadex
