// The commands for many packages that were chosen in a list.
#include "app/batch.h"
#include "app/batch_report.h"
#include "app/commands.h"
#include "app/program.h"
#include "package/file_primitives.h"
#include "package/name_list.h"
#include "platform/windows_path.h"
#include "sim/categories.h"
#include "sim/gauge_check.h"
#include "sim/gauges.h"
#include "sim/hangar_compression.h"
#include "sim/hangar_package.h"
#include "sim/install.h"

#include <algorithm>
#include <set>

namespace korvadex {

namespace {

std::string ListPackages(const std::vector<PackageRef>& packages) {
    std::vector<std::string> names;
    std::ranges::transform(packages, std::back_inserter(names), &PackageRef::Text);
    return ListNames(names);
}

// Who there uses what of these packages.
ConfigUsage UsageInHangar(CommandContext& context, const std::vector<PackageRef>& packages) {
    std::vector<std::string> names;
    std::ranges::transform(packages, std::back_inserter(names), &PackageRef::name);
    return ConfigUsage(context, context.locations.HangarDir, names);
}

} // namespace

Program::Packages Program::Resolved(const Packages& packages) {
    Packages resolved;
    std::set<std::string> known;
    for (PackageRef wanted : packages) {
        for (const HangarCategory& category : selection.Hangar())
            for (const HangarPackage& listed : category.packages)
                if (wanted.category.empty() &&
                    EqualNoCase(SpacesToUnderscores(listed.name), SpacesToUnderscores(wanted.name)))
                    wanted = {category.name, listed.name};
        if (!wanted.IsNone() && known.insert(FoldCase(wanted.Text())).second)
            resolved.push_back(wanted);
    }
    return resolved;
}

bool Program::RunForOne(const Packages& packages, const std::function<void()>& single) {
    const Packages resolved = Resolved(packages);
    if (resolved.size() > 1)
        return false;
    if (resolved.empty())
        return true;
    const PackageRef& wanted = resolved.front();
    bool isShown = false;
    Run([&] {
        isShown = (view.HangarSideShown && package.ref == wanted) || SelectPackage(wanted);
        if (!isShown)
            user.Tell("The package you've selected no longer seems to be in the Hangar.", MessageIcon::Exclamation);
    });
    if (isShown && !isEnded)
        single();
    return true;
}

std::vector<Turn> Program::GoThrough(std::size_t count, const std::vector<Place>& places,
                                     const std::function<void(BatchRun&)>& work) {
    UnattendedUser nobody(user.IsAskedInBatches() ? &user : nullptr);
    BatchProgress progress(*this, window, count, [this] { return WantsToStop(); });
    BatchRun batch(context, history, progress, nobody, places);
    struct Unattended {
        UnattendedUser*& user;
        ~Unattended() { user = nullptr; }
    } scope{unattended = &nobody};
    work(batch);
    return std::move(batch.turns);
}

void Program::RunEach(EachCommand command, Packages packages,
                      const std::function<void(BatchRun&, const Packages&)>& work) {
    packages = Resolved(packages);
    command.title.subject = Counted(packages.size());
    const std::string caption = command.title.Text();
    if (command.onlyLooks)
        command.title.name.clear();
    Run(command.title, [&] {
        EnsureHangarSide();
        if (!command.question.empty() &&
            !user.AskYesNo(command.question + "\r\n\r\n" + ListPackages(packages), MessageIcon::None, Answer::No))
            return;
        std::vector<Turn> turns =
            GoThrough(packages.size(), command.places, [&](BatchRun& batch) { work(batch, packages); });
        if (!EndJournal())
            for (Turn& turn : turns)
                if (turn.isDone)
                    turn = {turn.package, false, {"It was taken back with all the others."}};
        if (!command.category.empty()) {
            PackageRef selected = selection.Package();
            for (Turn& turn : turns)
                if (turn.isDone) {
                    const PackageRef moved{command.category, turn.package.name};
                    FollowInHangar(turn.package.Text(), moved.Text());
                    FollowName(selected, turn.package.Text(), moved.Text());
                    turn.package = moved;
                }
            ReadCategories(selected);
        }
        if (!command.onlyLooks) {
            ForgetGoneLenders();
            ShowChanges({.hangar = true, .simulator = true, .package = true});
        }
        const std::string headline = CountDone(command.done, turns);
        ShowStatus(headline);
        fileList.Show(BuildReport(caption, headline, command.done, turns, files, settings.locations));
        TellReport(user, headline, "The others were left as they were.", turns);
    });
}

void Program::InstallEach(const Packages& packages) {
    if (RunForOne(packages, [this] { InstallPackage(); }))
        return;
    RunEach({.title = {.name = "Install"}, .done = "installed", .places = {Place::Simulator, Place::Hangar}}, packages,
            [&](BatchRun& batch, const Packages& chosen) {
                batch.LoadEach(LendersFirst(batch.context, chosen),
                               [](CommandContext& each, const LoadedPackage& loaded) {
                                   return InstallIntoSim(each, loaded).simulator;
                               });
            });
}

void Program::RemoveEach(const Packages& packages) {
    if (RunForOne(packages, [this] { RemovePackageFromSim(); }))
        return;
    RunEach({.title = {.name = "Remove from MSFS"},
             .done = "removed from MSFS",
             .places = {Place::Simulator, Place::Hangar},
             .question = "Are you sure you want to remove these packages from the Flight Simulator directory?"},
            packages, [&](BatchRun& batch, const Packages& chosen) {
                TakeStock();
                SimUsage usage = UsageOf(batch.context, selection.Hangar());
                std::string removed;
                batch.afterDone = [&] {
                    if (!removed.empty())
                        usage.Forget(removed);
                };
                batch.TakeEach(BorrowersFirst(batch.context, usage, chosen),
                               [&](CommandContext& each, const PackageRef& ref) {
                                   const BatchRemoval removal = RemoveInBatch(each, usage, ref);
                                   removed = removal.outcome.removed;
                                   if (removal.isNotInstalled)
                                       each.user.Tell("This package is not currently installed in Flight Simulator.");
                                   for (const std::string& reason : {removal.reason, removal.outcome.unseen})
                                       if (!reason.empty())
                                           each.user.Tell(reason);
                                   TellRemainingGauges(each, removal.outcome.remainingGauges);
                                   return removal.isRemoved;
                               });
            });
}

void Program::CheckGaugesOfEach(const Packages& packages) {
    if (RunForOne(packages, [this] { CheckPackageGauges(); }))
        return;
    RunEach({.title = {.name = "Check gauges of"},
             .done = "checked",
             .places = {Place::Simulator, Place::Hangar},
             .onlyLooks = true},
            packages, [&](BatchRun& batch, const Packages& chosen) {
                batch.TakeEach(chosen, [](CommandContext& each, const PackageRef& ref) {
                    return CheckInstalledGauges(each, ref);
                });
            });
}

void Program::CheckReferencesOfEach(const Packages& packages) {
    if (RunForOne(packages, [this] { CheckPackageReferences(); }))
        return;
    RunEach({.title = {.name = "Check aliases to"}, .done = "checked", .places = {Place::Hangar}, .onlyLooks = true},
            packages, [&](BatchRun& batch, const Packages& chosen) {
                const ConfigUsage usage = UsageInHangar(batch.context, chosen);
                batch.TakeEach(chosen, [&](CommandContext& each, const PackageRef& ref) {
                    return CheckReferences(each, ref, &usage);
                });
            });
}

void Program::CompressPackagesOf(const Packages& packages, bool compress) {
    RunEach({.title = {compress ? "Compress" : "Decompress", "", compress ? Repacking::Packs : Repacking::Unpacks},
             .done = compress ? "compressed" : "decompressed",
             .places = {Place::Hangar}},
            packages, [&](BatchRun& batch, const Packages& chosen) {
                Compression compression(batch.context, compress, DirectoriesOf(chosen, settings.locations));
                batch.LoadEach(chosen, [&](CommandContext& each, const LoadedPackage& loaded) {
                    const auto failures = CompressInHangar(each, loaded, compression);
                    if (failures)
                        TellCompressed(each, *failures);
                    return !failures || failures->empty();
                });
            });
}

void Program::CompressEach(const Packages& packages) {
    if (!RunForOne(packages, [this] { CompressShownPackage(); }))
        CompressPackagesOf(packages, true);
}

void Program::DecompressEach(const Packages& packages) {
    if (!RunForOne(packages, [this] { DecompressShownPackage(); }))
        CompressPackagesOf(packages, false);
}

void Program::MoveEach(const Packages& packages, const std::string& category) {
    if (RunForOne(packages, [&] { MoveToCategory(category); }))
        return;
    RunEach(
        {.title = {.name = "Move"}, .done = "moved to " + category, .places = {Place::Hangar}, .category = category},
        packages, [&](BatchRun& batch, const Packages& chosen) {
            batch.TakeEach(chosen, [&](CommandContext& each, const PackageRef& ref) {
                if (ref.category == category)
                    each.user.Tell("It is in that category already.");
                return korvadex::MoveToCategory(each, ref, category).renamed.has_value();
            });
        });
}

void Program::DeleteEach(const Packages& packages) {
    if (RunForOne(packages, [this] { RemovePackageFromHangar(); }))
        return;
    RunEach({.title = {.name = "Remove from Hangar"},
             .done = "removed from the Hangar",
             .places = {Place::Simulator, Place::Hangar},
             .question = "Are you sure you want to remove these packages from the hangar?"},
            packages, [&](BatchRun& batch, const Packages& chosen) {
                Packages order = LendersFirst(batch.context, chosen);
                std::ranges::reverse(order);
                ConfigUsage usage = UsageInHangar(batch.context, chosen);
                std::string removed;
                batch.afterDone = [&] { usage.Forget(removed); };
                batch.LoadEach(order, [&](CommandContext& each, const LoadedPackage& loaded) {
                    removed = loaded.path;
                    return RemoveFromHangar(each, loaded, {}, &usage).renamed.has_value();
                });
            });
}

bool Program::CanWorkOn(const PackageCommand& command, const Packages& packages) const {
    const SimAircraft simAircraft(files, settings.locations);
    unsigned present = 0;
    for (const PackageRef& each : packages)
        present |= simAircraft.Holds(each.name) ? NeedsInstalled : NeedsNotInstalled;
    return (command.needs & ~present) == 0;
}

void Program::RenameOne(const Packages& packages) {
    RunForOne(packages, [this] { RenamePackage(); });
}

void Program::StopAfterThis() {
    if (!isRunning || isStopWanted)
        return;
    isStopWanted = true;
    ShowStatus(CanStop() ? "The command is being stopped ..."
                         : view.status + "  -  the last one, as you have stopped the command");
}

} // namespace korvadex
