// Archives, and aircraft of the simulator, that need no question: taken into the Hangar one after the other.
#include "app/batch_report.h"
#include "app/program.h"
#include "app/unattended.h"
#include "archive/process_zip.h"
#include "package/aircraft_cfg.h"
#include "package/config_readers.h"
#include "package/file_primitives.h"
#include "package/package_name.h"
#include "platform/windows_path.h"
#include "sim/categories.h"
#include "sim/copy_check.h"
#include "sim/copy_package.h"
#include "sim/copy_plan.h"
#include "sim/gauge_check.h"
#include "sim/import.h"

#include <algorithm>

namespace korvadex {

namespace {

std::string JoinLines(const std::vector<std::string>& notes) {
    std::string text;
    for (const std::string& note : notes)
        text += (text.empty() ? "" : "\r\n") + note;
    return text;
}

constexpr const char* SeveralAircraftReason =
    "More than one aircraft configuration file (aircraft.cfg) was detected in it.";

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

void Program::TakeIntoHangar(const CommandTitle& title, const std::vector<std::string>& names,
                             const std::function<bool(CommandContext&, std::size_t, PackageRef&)>& take,
                             const std::function<void(std::vector<Turn>)>& show) {
    Run(title, [&] {
        if (names.empty())
            return user.Tell(NoArchiveText);
        if (!ArePlacesThere({Place::Staging, Place::Hangar, Place::Simulator}) || !IsStagingFree())
            return;
        RefreshSelection();
        const HistoryMark mark = history.Mark();
        const std::string category = AskCategoryForAll();
        if (category.empty())
            return;
        if (history.Files().IsWithoutLog()) // what is left could not be as it was
            return user.Tell("What this command changes cannot be written down.  Nothing was taken into the Hangar.",
                             MessageIcon::Exclamation);
        auto turns = GoThrough(names.size(), {Place::Staging, Place::Hangar, Place::Simulator}, [&](BatchRun& batch) {
            for (std::size_t i = 0; i < names.size(); ++i) {
                if (!StagingIsEmpty(files, settings.locations))
                    batch.CutShort("Staging contained files before its turn.");
                batch.TakeOne({category, names[i]},
                              [&](CommandContext& each, PackageRef& made) { return take(each, i, made); });
            }
        });
        if (std::ranges::none_of(turns, &Turn::isDone)) { // nobody needs a new category
            static_cast<void>(history.TakeBackTo(mark));
            RefreshSelection();
        }
        const bool isKept = EndJournal();
        for (std::size_t i = 0; i < turns.size(); ++i) {
            Turn& turn = turns[i];
            if (turn.isDone && !isKept)
                turn = {turn.package, false, {"It was taken back with all the others."}};
            turn.title = turn.isDone ? turn.package.name + "  (" + names[i] + ")" : names[i];
        }
        show(std::move(turns));
    });
}

void Program::TakeEachArchive(const std::vector<QueuedArchive>& archives, const char* ofTheOthers) {
    const CommandTitle title{"Take", Counted(archives.size(), "archive")};
    std::vector<std::string> names;
    for (const QueuedArchive& archive : archives)
        names.push_back(LastPathComponent(archive.path));
    const auto take = [&](CommandContext& each, std::size_t number, PackageRef& made) {
        return TakeUnattended(each, archives[number], made) && unattended->notes.empty();
    };
    TakeIntoHangar(title, names, take, [&](std::vector<Turn> turns) {
        std::vector<QueuedArchive> taken, left;
        for (std::size_t i = 0; i < turns.size(); ++i)
            if (const auto& [path, part, reason] = archives[i]; turns[i].isDone)
                taken.push_back(archives[i]);
            else if (turns[i].wasReached)
                left.push_back({path, part, files.Info(path) ? JoinLines(turns[i].notes) : GoneArchiveReason});
        KeepQueue(queue.SetReasons(left));
        NoteTaken(taken);
        takenFromQueue += static_cast<int>(taken.size());
        ShowTaken(title.Text(), "archive", std::move(turns), ofTheOthers);
    });
}

void Program::TakeAllArchives() {
    const auto waiting = queue.Entries();
    TakeEachArchive(waiting, "The others stay in the queue.");
}

void Program::TakeArchives(const std::vector<std::string>& paths) {
    std::vector<QueuedArchive> found;
    Run([&] { found = LookForArchives(paths); });
    if (!found.empty())
        TakeEachArchive(found, "The others were left where they are.");
}

std::vector<std::string> Program::ImportableAircraft() {
    return korvadex::ImportableAircraft(context);
}

void Program::ImportEach(const std::vector<std::string>& aircraft) {
    const CommandTitle title{"Import", aircraft.size() == 1 ? aircraft.front() : Counted(aircraft.size())};
    const auto take = [&](CommandContext& each, std::size_t number, PackageRef& made) {
        return ImportUnattended(each, aircraft[number], made);
    };
    TakeIntoHangar(title, aircraft, take, [&](std::vector<Turn> turns) {
        ShowTaken(title.Text(), "package", std::move(turns), "The others were left as they were.");
    });
}

bool Program::TakeUnattended(CommandContext& each, const QueuedArchive& archive, PackageRef& made) {
    if (!StagingIsEmpty(files, settings.locations)) {
        each.user.Tell("Staging contained files before its turn.");
        return false;
    }
    const HistoryMark mark = history.Mark();
    const auto unpacked = ProcessZipFile(each, unzip, settings.LastZipPath, archive.path);
    if (!unpacked || unattended->hasAsked || !unattended->notes.empty())
        return false;
    QueuedArchive taken{archive.path, archive.part};
    const std::string caption = taken.part.empty() ? "" : KeepOneAircraft(each, *unpacked, taken);
    if (!taken.reason.empty()) {
        each.user.Tell(taken.reason);
        return false;
    }
    return CopyStagedUnattended(each, {mark, unpacked->contents.directory, caption, ""}, made);
}

bool Program::ImportUnattended(CommandContext& each, const std::string& aircraft, PackageRef& made) {
    const HistoryMark mark = history.Mark();
    if (!ImportIntoEmptyStaging(each, aircraft) || unattended->hasAsked || !unattended->notes.empty())
        return false;
    if (HasSeveralAircraftCfg(each)) {
        each.user.Tell(SeveralAircraftReason);
        return false;
    }
    LoadedPackage loaded;
    LoadStaging(each, loaded); // to one panel, whose gauges come then
    if (unattended->hasAsked)
        return false;
    RunImportGaugeStep(each, aircraft);
    const Locations& places = settings.locations;
    return CopyStagedUnattended(each, {mark, places.StagingDir, "", places.Aircraft() + aircraft}, made);
}

bool Program::CopyStagedUnattended(CommandContext& each, const Staged& staged, PackageRef& made) {
    const auto leave = [&](const std::string& why) {
        each.user.Tell(why);
        return false;
    };
    const std::size_t before = unattended->notes.size();
    const auto hasNotes = [&] { return unattended->hasAsked || unattended->notes.size() > before; };
    if (HasSeveralAircraftCfg(each))
        return leave(SeveralAircraftReason);
    LoadedPackage loaded;
    LoadStaging(each, loaded);
    if (hasNotes())
        return false;
    if (loaded.isChoiceOpen)
        return leave(DescribeOpenChoice(loaded));
    if (std::ranges::all_of(loaded.tree.files, IsProgramFile))
        return leave("There is nothing in it to copy to the Hangar.");
    if (!std::ranges::all_of(loaded.tree.files,
                             [&](const FileEntry& file) { return IsAtOrBelow(file.path, staged.directory); }))
        return leave("The Staging directory has changed while it was unpacked.  It was not copied.");
    if (!CheckCopySource(each, loaded))
        return false;
    made.name = CleanPackageName(ReadImportName(files, settings.locations));
    if (made.name.empty())
        made.name = CleanPackageName(NameForArchive(loaded, staged.caption));
    if (!CanCopyToHangar(each, loaded, made, staged.ownDirectory))
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
    const auto failures = history.ClearAway(staged.mark, settings.locations.StagingDir);
    if (!failures.empty())
        return leave("The file " + failures.front().path + " could not be deleted from Staging (" +
                     DescribeFault(failures.front()) + ").");
    return true;
}

void Program::ShowTaken(const std::string& caption, const std::string& what, std::vector<Turn> turns,
                        const char* ofTheOthers) {
    std::optional<PackageRef> last;
    for (Turn& turn : turns)
        if (turn.isDone)
            last = turn.package;
        else
            turn.package = {};
    const std::string headline = CountDone("taken into the Hangar", turns, what);
    ShowChanges({.hangar = true, .package = !view.HangarSideShown, .renamed = last});
    ShowStatus(headline);
    fileList.Show(BuildReport(caption, headline, "taken into the Hangar", turns, files, settings.locations));
    TellReport(user, headline, ofTheOthers, turns);
}

} // namespace korvadex
