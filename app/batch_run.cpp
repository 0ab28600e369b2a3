#include "app/batch_run.h"

#include "package/file_primitives.h"
#include "package/load_package.h"
#include "platform/windows_path.h"

#include <map>
#include <utility>

namespace korvadex {

namespace {

std::string KeyOfName(std::string_view name) {
    return FoldCase(SpacesToUnderscores(name));
}

class LendersOrder {
  public:
    LendersOrder(CommandContext& context, const std::vector<PackageRef>& listed)
        : packages(listed), lenders(listed.size()), isTaken(listed.size()) {
        for (std::size_t i = 0; i < packages.size(); ++i) {
            byName[KeyOfName(packages[i].name)].push_back(i);
            LoadedPackage package;
            if (!packages[i].category.empty())
                static_cast<void>(LoadPackage(context, packages[i], package, ChoiceQuestion::AsItIs));
            for (const std::string& alias : {package.PackagePanelAlias, package.PackageSoundAlias})
                lenders[i].push_back(KeyOfName(alias.substr(0, alias.find('\\'))));
        }
    }

    std::vector<PackageRef> Take() {
        for (std::size_t i = 0; i < packages.size(); ++i)
            Take(i);
        return std::move(ordered);
    }

  private:
    void Take(std::size_t index) {
        if (isTaken[index])
            return;
        isTaken[index] = true;
        for (const std::string& name : lenders[index])
            if (const auto found = byName.find(name); found != byName.end())
                for (const std::size_t lender : found->second)
                    Take(lender);
        ordered.push_back(packages[index]);
    }

    const std::vector<PackageRef>& packages;
    std::vector<std::vector<std::string>> lenders; // the names whose panel or sound each uses
    std::vector<bool> isTaken;
    std::map<std::string, std::vector<std::size_t>> byName;
    std::vector<PackageRef> ordered;
};

} // namespace

std::string LoadForBatch(CommandContext& context, const PackageRef& ref, LoadedPackage& package) {
    auto gone = DescribeGone(context.files, context.locations, {Place::Hangar});
    if (gone.empty())
        gone = DescribeGonePackage(context.files, ref.Directory(context.locations));
    if (!gone.empty())
        return gone;
    const auto twins = LoadPackage(context, ref, package).twins;
    return twins.empty() ? "" : "it holds two files of one name, " + twins[0] + " and " + twins[1];
}

std::vector<PackageRef> LendersFirst(CommandContext& context, const std::vector<PackageRef>& packages) {
    return LendersOrder(context, packages).Take();
}

BatchRun::BatchRun(const CommandContext& command, History& journal, BatchProgress& shownIn, UnattendedUser& user,
                   std::vector<Place> needed)
    : context{command.files, command.launcher, command.locations, command.limits, user, shownIn}, history(journal),
      progress(shownIn), unattended(user), places(std::move(needed)) {}

void BatchRun::LoadEach(const std::vector<PackageRef>& packages, const Deed& deed) {
    TakeEach(packages, [&](CommandContext& each, const PackageRef& ref) {
        LoadedPackage package;
        if (const std::string reason = LoadForBatch(each, ref, package); !reason.empty()) {
            unattended.notes.push_back(reason);
            return false;
        }
        return deed(each, package);
    });
}

void BatchRun::TakeEach(const std::vector<PackageRef>& packages, const NamedDeed& deed) {
    for (const PackageRef& package : packages)
        TakeOne(package, deed);
}

void BatchRun::TakeOne(PackageRef package, const NamingDeed& deed) {
    if (!isCutShort && !progress.Next(package))
        CutShort(StoppedReason);
    if (isCutShort)
        turns.push_back({std::move(package), false, {why}, false});
    else
        Take(std::move(package), deed);
}

void BatchRun::CutShort(const std::string& reason) {
    if (!std::exchange(isCutShort, true))
        why = reason;
}

void BatchRun::Take(PackageRef package, const NamingDeed& deed) {
    const HistoryMark mark = history.Mark();
    auto& notes = unattended.notes;
    notes.clear();
    unattended.hasAsked = false;
    unattended.subject = package.Text();
    progress.notes = &notes;
    bool isDone = false;
    if (const std::string hindrance = DescribeHindrance(package); !hindrance.empty())
        notes.push_back(hindrance);
    else
        try {
            isDone = deed(context, package);
        } catch (const Asked&) {      // is among the notes
        } catch (const ProgramEnd&) { // the same: a single command would end the program for the safety of this package
        }
    progress.notes = nullptr;
    const Status trouble = history.IsRunning() ? history.Trouble() : Status{};
    isDone = isDone && !unattended.hasAsked && trouble;
    if (!isDone)
        for (const Status& failure : history.TakeBackTo(mark))
            notes.push_back("Not all that it had changed could be taken back: " + failure.path + " (" +
                            DescribeFault(failure) + ").");
    if (isDone) {
        history.Remember(mark);
        if (afterDone)
            afterDone();
    }
    if (!trouble) {
        CutShort("The disk had failed before its turn (" + DescribeFault(trouble) + ").");
        if (notes.empty())
            notes.push_back("The disk failed at " + trouble.path + " (" + DescribeFault(trouble) + ").");
    }
    turns.push_back({package, isDone, std::move(notes)});
    notes.clear();
}

std::string BatchRun::DescribeHindrance(const PackageRef& package) const {
    for (const Place place : places)
        if (auto gone = DescribeGone(context.files, context.locations, {place}); !gone.empty())
            return gone + GoneAdvice();
    // Without a category it names no directory of a package.
    return package.category.empty() ? "It no longer seems to be in the Hangar." : "";
}

} // namespace korvadex
