// The commands of the Tools menu that go over all packages of the Hangar or of the current category.
#include "app/program.h"
#include "package/file_primitives.h"
#include "package/name_list.h"
#include "package/presence.h"
#include "platform/windows_path.h"
#include "sim/gauges.h"
#include "sim/hangar_commands.h"
#include "sim/run_simulator.h"
#include "sim/unused_gauges.h"

#include <map>
#include <set>

namespace korvadex {

namespace {

// What a batch left as it was, each with the reason.
class LeftPackages {
  public:
    explicit LeftPackages(const std::vector<PackageInBatch>& packages) {
        for (const auto& package : packages)
            ++categories[FoldCase(package.name)];
    }
    // "Jets\Lear" where another category has a Lear too.
    void Add(const PackageInBatch& package, const std::string& reason) {
        const bool isOnlyOne = categories[FoldCase(package.name)] < 2;
        left.push_back({package, (isOnlyOne ? "" : package.category + "\\") + package.name + ": " + reason});
    }
    template<class Rule>
    void DropIf(Rule rule) {
        std::erase_if(left, [&](const Left& entry) { return rule(entry.package); });
    }
    std::size_t Count() const { return left.size(); }
    void Tell(UserDialogs& user, const std::string& text, const std::string& more = "") const {
        std::vector<std::string> names;
        for (const Left& entry : left)
            names.push_back(entry.text);
        if (!names.empty())
            user.Tell(text + " ...\r\n\r\n" + ListNames(names) + more, MessageIcon::Exclamation);
    }

  private:
    struct Left {
        PackageInBatch package;
        std::string text;
    };
    std::map<std::string, int> categories;
    std::vector<Left> left;
};

// The packages in an order in which a lender's turn comes when its borrowers have gone.
class BorrowersFirst {
  public:
    BorrowersFirst(CommandContext& command, const SimUsage& simUsage, std::vector<PackageInBatch> listed)
        : context(command), aircraft(command.files, command.locations), usage(simUsage), packages(std::move(listed)),
          isTaken(packages.size()) {
        for (std::size_t i = 0; i < packages.size(); ++i)
            if (const auto directory = Directory(packages[i]); !directory.empty())
                byDirectory[FoldCase(directory)].push_back(i);
    }

    std::vector<PackageInBatch> Take() {
        for (std::size_t i = 0; i < packages.size(); ++i)
            Take(i);
        return std::move(ordered);
    }

  private:
    void Take(std::size_t index) {
        if (isTaken[index])
            return;
        isTaken[index] = true;
        const std::string root = context.locations.MsfsDir + "aircraft\\";
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
    std::string Directory(const PackageInBatch& package) const { return aircraft.FindDirectory(package.name); }

    CommandContext& context;
    const SimAircraft aircraft;
    const SimUsage& usage;
    const std::vector<PackageInBatch> packages;
    std::vector<bool> isTaken;
    std::map<std::string, std::vector<std::size_t>> byDirectory; // of the simulator
    std::vector<PackageInBatch> ordered;
};

} // namespace

std::vector<PackageInBatch> Program::PackagesInBatch(bool isCategoryOnly) {
    TakeStock();
    std::vector<PackageInBatch> packages;
    for (const HangarCategory& category : hangar)
        if (!isCategoryOnly || category.name == SelectedCategory())
            for (const HangarPackage& listed : category.packages)
                packages.push_back({category.name, listed.name});
    return packages;
}

// Selects package after package, whatever the window shows of them, and goes back to what was selected before.
void Program::ForEachPackage(const std::vector<PackageInBatch>& packages,
                             const std::function<void(const PackageInBatch&)>& command) {
    const auto oldCategory = SelectedCategory(), oldPackage = CurrentPackageName(*this);
    const auto select = [&](const PackageInBatch& wanted) {
        if (SelectedCategory() != wanted.category) {
            view.categoryIndex = IndexOf(view.categories, wanted.category);
            FillPackages();
        }
        view.packageIndex = IndexOf(view.packages, wanted.name);
    };
    FillPackages(); // some may have come
    isBatch = true;
    for (const auto& each : packages) {
        select(each);
        form.ShowStatus(each.category + "\\" + each.name);
        command(each);
    }
    isBatch = false;
    view.packageIndex = -1;
    FillPackages(); // with the marks that they have now
    select({oldCategory, oldPackage});
    isHangarStale = true;
    LoadShownSide();
    ShowStatus("");
    ShowView();
}

// Why the batch leaves the selected package; "" when it is loaded for its command.
std::string Program::LoadForBatch(const PackageInBatch& selected, std::initializer_list<Place> places) {
    const auto directory = settings.locations.HangarDir + selected.category + "\\" + selected.name + "\\";
    auto gone = DescribeGone(files, settings.locations, places);
    if (gone.empty())
        gone = DescribeGonePackage(files, directory);
    if (gone.empty() && view.packageIndex < 0)
        gone = "it no longer seems to be in the Hangar";
    if (!gone.empty())
        return gone;
    const auto twins = LoadSelectedPackage();
    return twins.empty() ? "" : "it holds two files of one name, " + twins[0] + " and " + twins[1];
}

void Program::CompressEach(const std::string& question, bool compress) {
    EnsureHangarSide();
    const auto packages = PackagesInBatch(false);
    if (!ArePlacesThere({Place::Hangar}) || !user.AskYesNo(question))
        return;
    LeftPackages left(packages);
    state.BatchMode = true;
    state.notCompressed.clear();
    ForEachPackage(packages, [&](const PackageInBatch& selected) {
        if (const auto reason = LoadForBatch(selected, {Place::Hangar}); !reason.empty()) {
            left.Add(selected, reason);
            return;
        }
        if (!compress && !package.isCompressed)
            return;
        state.CommandCode = compress ? CompressShownPackage : DecompressShownPackage;
        RunHangarCommand(context, state, memory, package);
    });
    state.BatchMode = false;
    left.Tell(user, "The following packages were left as they are");
    TellCompressed(context, state.notCompressed);
}

void Program::CompressAll() {
    Run([&] {
        CompressEach(
            "Compress all packages in Hangar?  If you want to make sure all packages are compressed, select 'Yes'.  "
            "Packages that are already compressed will be skipped.  Note that this may take a while.  "
            "Please do not attempt to use Korvadex while compress process is running.",
            true);
    });
}

void Program::DecompressAll() {
    Run([&] {
        CompressEach("Decompress all packages in the Hangar?  "
                     "If you want to make sure all packages are decompressed, select 'Yes'.  "
                     "Packages that are already decompressed will be skipped.  Note that this may take a while.  "
                     "Please do not attempt to use Korvadex while compress process is running.",
                     false);
    });
}

void Program::UninstallEach(const std::string& question, bool isCategoryOnly) {
    EnsureHangarSide();
    const auto packages = PackagesInBatch(isCategoryOnly);
    if (!ArePlacesThere({Place::Hangar, Place::Simulator}) || !user.AskYesNo(question))
        return;
    const auto installedName = [&](const PackageInBatch& of) {
        return FindSimAircraftDirectory(files, settings.locations, of.name);
    };
    state.unseen.clear();
    // Asked for each package: a listing of all aircraft would be too much.
    const auto goneSimulator = [&] {
        return files.IsDirectory(settings.locations.MsfsDir + "aircraft")
                   ? ""
                   : DescribeGone(files, settings.locations, {Place::Simulator});
    };
    state.remainingGauges.clear();
    // Everything that is installed, so that who uses what is found out once for all of them.
    std::vector<std::string> names;
    for (const HangarCategory& category : hangar) {
        for (const HangarPackage& listed : category.packages)
            names.push_back(listed.name);
    }
    SimUsage usage(context, names);
    memory.usage = &usage;
    int removed = 0, skipped = 0;
    std::set<std::string> lenders; // as the simulator knows them
    LeftPackages left(packages);
    const auto remove = [&](const PackageInBatch& selected) {
        const auto name = installedName(selected);
        if (const auto gone = goneSimulator(); name.empty() && !gone.empty())
            return left.Add(selected, gone);
        if (name.empty() || lenders.contains(name)) {
            skipped += name.empty();
            return;
        }
        if (const auto reason = LoadForBatch(selected, {Place::Hangar}); !reason.empty())
            return left.Add(selected, reason);
        const auto directory = settings.locations.MsfsDir + "aircraft\\" + name + "\\";
        if (!MayBeDeleted(settings.locations, directory))
            return left.Add(selected, directory + " holds one of the directories in 'Locations'");
        state.keptPackages.clear();
        state.QuietMode = true;
        state.CommandCode = RemovePackageFromSim;
        RunHangarCommand(context, state, memory, package);
        state.QuietMode = false;
        if (const auto gone = goneSimulator(); !gone.empty())
            left.Add(selected, gone);
        else if (installedName(selected).empty())
            ++removed;
        else if (!state.keptPackages.empty())
            left.Add(selected, state.keptPackages.front().substr(selected.name.size() + 2)); // "Lear: ..."
        else
            lenders.insert(name);
    };
    ForEachPackage(BorrowersFirst(context, usage, packages).Take(), remove);
    memory.usage = nullptr;
    // Of two packages of one name the other one may have taken it out.
    left.DropIf([&](const PackageInBatch& of) { return goneSimulator().empty() && installedName(of).empty(); });
    left.Tell(user, "The following packages were kept",
              state.unseen.empty()
                  ? ""
                  : "\r\n\r\nThese could not be looked at, and may use what the packages have ...\r\n\r\n" +
                        state.unseen +
                        "\r\n\r\nPlease make sure that they can be read, or delete what nobody needs, and try again.");
    TellRemainingGauges(context, state.remainingGauges);
    user.Tell("Done.");
    std::string text = std::to_string(removed) + " removed, " + std::to_string(skipped) + " skipped (not installed), " +
                       std::to_string(lenders.size()) + " kept because of an alias";
    if (left.Count() > 0)
        text += ", " + std::to_string(left.Count()) + " kept for other reasons";
    ShowStatus(text + ".");
}

void Program::UninstallAll() {
    Run([&] {
        UninstallEach("Uninstall all packages from Hangar?  "
                      "If you want to make sure all packages are uninstalled, select 'Yes'.  "
                      "Please do not attempt to use Korvadex while this process is running.",
                      false);
    });
}

void Program::UninstallCategory() {
    Run([&] {
        UninstallEach("Uninstall all packages in current category from Hangar?  "
                      "Please do not attempt to use Korvadex while this process is running.",
                      true);
    });
}

void Program::ListUnusedGauges() {
    Run([&] { korvadex::ListUnusedGauges(context); });
}

void Program::RunSimulator() {
    Run([&] { korvadex::RunSimulator(context); });
}

} // namespace korvadex
