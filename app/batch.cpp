#include "app/batch.h"

#include "app/batch_run.h"
#include "package/file_primitives.h"
#include "package/name_list.h"
#include "package/presence.h"
#include "platform/windows_path.h"
#include "sim/hangar_compression.h"

#include <algorithm>
#include <map>
#include <set>

namespace korvadex {

namespace {

// The packages in an order in which a lender's turn comes when its borrowers have gone.
class BorrowersOrder {
  public:
    BorrowersOrder(CommandContext& command, const SimUsage& simUsage, std::vector<PackageRef> listed)
        : context(command), aircraft(command.files, command.locations), usage(simUsage), packages(std::move(listed)),
          isTaken(packages.size()) {
        for (std::size_t i = 0; i < packages.size(); ++i)
            if (const auto directory = Directory(packages[i]); !directory.empty())
                byDirectory[FoldCase(directory)].push_back(i);
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
        const std::string root = context.locations.Aircraft();
        const std::string directory = root + Directory(packages[index]) + "\\";
        for (const char* kind : {"panel", "sound"}) {
            for (const auto& config : usage.FindUsers(packages[index].name, kind, directory).paths) {
                if (!IsAtOrBelow(config, root))
                    continue;
                const std::string below = config.substr(root.size());
                for (const std::size_t borrower : byDirectory[FoldCase(below.substr(0, below.find('\\')))])
                    Take(borrower);
            }
        }
        ordered.push_back(packages[index]);
    }
    std::string Directory(const PackageRef& package) const { return aircraft.FindDirectory(package.name); }

    CommandContext& context;
    const SimAircraft aircraft;
    const SimUsage& usage;
    const std::vector<PackageRef> packages;
    std::vector<bool> isTaken;
    std::map<std::string, std::vector<std::size_t>> byDirectory; // of the simulator
    std::vector<PackageRef> ordered;
};

// Asked for each package: a listing of all aircraft would be too much.
std::string InstalledName(const CommandContext& context, const PackageRef& ref) {
    return FindSimAircraftDirectory(context.files, context.locations, ref.name);
}

std::string DescribeGoneSimulator(const CommandContext& context) {
    return context.files.IsDirectory(context.locations.MsfsDir + "aircraft")
               ? ""
               : DescribeGone(context.files, context.locations, {Place::Simulator});
}

// Removals that know of each other.
class Uninstall {
  public:
    Uninstall(CommandContext& command, SimUsage& simUsage) : context(command), usage(simUsage) {}

    void Remove(const PackageRef& ref) {
        const std::string name = InstalledName(context, ref);
        if (lenders.contains(name)) // of two packages of one name
            return;
        BatchRemoval removal = RemoveInBatch(context, usage, ref);
        if (!removal.outcome.removed.empty())
            usage.Forget(removal.outcome.removed);
        std::ranges::move(removal.outcome.remainingGauges, std::back_inserter(summary.remainingGauges));
        if (!removal.outcome.unseen.empty())
            summary.unseen = removal.outcome.unseen;
        if (removal.isNotInstalled)
            ++summary.notInstalled;
        else if (removal.isRemoved)
            ++summary.removed;
        else if (!removal.reason.empty())
            Leave(ref, removal.reason);
        else
            lenders.insert(name);
    }
    void Leave(const PackageRef& ref, const std::string& reason) { summary.left.push_back({ref, reason}); }

    UninstallSummary Finish() {
        // Of two packages of one name the other one may have taken it out.
        std::erase_if(summary.left, [&](const LeftPackage& left) {
            return DescribeGoneSimulator(context).empty() && InstalledName(context, left.package).empty();
        });
        summary.lenders = static_cast<int>(lenders.size());
        return std::move(summary);
    }

  private:
    CommandContext& context;
    SimUsage& usage;
    std::set<std::string> lenders; // as the simulator knows them
    UninstallSummary summary;
};

} // namespace

CompressionSummary CompressPackages(CommandContext& context, BatchProgress& progress,
                                    const std::vector<PackageRef>& packages, bool compress) {
    CompressionSummary summary;
    Compression compression(context, compress, DirectoriesOf(packages, context.locations));
    for (const PackageRef& ref : packages) {
        LoadedPackage package;
        if (!progress.Next(ref)) {
            summary.left.push_back({ref, StoppedReason});
            continue;
        }
        if (const std::string reason = LoadForBatch(context, ref, package); !reason.empty()) {
            summary.left.push_back({ref, reason});
            continue;
        }
        if (!compress && !package.isCompressed)
            continue;
        if (auto failures = CompressInHangar(context, package, compression))
            std::ranges::move(*failures, std::back_inserter(summary.failures));
    }
    return summary;
}

SimUsage UsageOf(CommandContext& context, const HangarListing& hangar) {
    // Everything that is installed, so that who uses what is found out once for all of them.
    std::vector<std::string> names;
    for (const HangarCategory& category : hangar) {
        for (const HangarPackage& listed : category.packages)
            names.push_back(listed.name);
    }
    return SimUsage(context, names);
}

std::vector<PackageRef> BorrowersFirst(CommandContext& context, const SimUsage& usage,
                                       const std::vector<PackageRef>& packages) {
    return BorrowersOrder(context, usage, packages).Take();
}

BatchRemoval RemoveInBatch(CommandContext& context, const SimUsage& usage, const PackageRef& ref) {
    const std::string name = InstalledName(context, ref);
    if (name.empty()) {
        const std::string gone = DescribeGoneSimulator(context);
        return {.isNotInstalled = gone.empty(), .reason = gone};
    }
    LoadedPackage package;
    if (const std::string reason = LoadForBatch(context, ref, package); !reason.empty())
        return {.reason = reason};
    const std::string directory = context.locations.Aircraft() + name + "\\";
    if (!MayBeDeleted(context.locations, directory))
        return {.reason = directory + " holds one of the directories in 'Locations'"};
    const bool QuietMode = true;
    BatchRemoval removal{.outcome = RemoveFromSim(context, package, &usage, QuietMode)};
    removal.reason = DescribeGoneSimulator(context);
    removal.isRemoved = removal.reason.empty() && InstalledName(context, ref).empty();
    if (!removal.isRemoved && removal.reason.empty())
        removal.reason = removal.outcome.kept;
    return removal;
}

UninstallSummary UninstallPackages(CommandContext& context, BatchProgress& progress,
                                   const std::vector<PackageRef>& packages, const HangarListing& hangar) {
    SimUsage usage = UsageOf(context, hangar);
    Uninstall uninstall(context, usage);
    for (const PackageRef& ref : BorrowersFirst(context, usage, packages)) {
        if (progress.Next(ref))
            uninstall.Remove(ref);
        else
            uninstall.Leave(ref, StoppedReason);
    }
    return uninstall.Finish();
}

void TellLeft(UserDialogs& user, const std::string& text, const std::vector<LeftPackage>& left,
              const std::vector<PackageRef>& packages, const std::string& more) {
    std::map<std::string, int> categories; // how many have a package of the name
    for (const PackageRef& package : packages)
        ++categories[FoldCase(package.name)];
    std::vector<std::string> names;
    for (const LeftPackage& each : left) {
        const bool isOnlyOne = categories[FoldCase(each.package.name)] < 2;
        names.push_back((isOnlyOne ? each.package.name : each.package.Text()) + ": " + each.reason);
    }
    if (!names.empty())
        user.Tell(text + " ...\r\n\r\n" + ListNames(names) + more, MessageIcon::Exclamation);
}

} // namespace korvadex
