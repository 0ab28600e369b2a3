// The commands of the Tools menu that go over all packages of the Hangar or of the current category.
#include "app/program.h"
#include "package/file_primitives.h"
#include "package/name_list.h"
#include "sim/gauges.h"
#include "sim/hangar_commands.h"
#include "sim/run_simulator.h"
#include "sim/unused_gauges.h"

namespace korvadex {

// Selects package after package by its place in the full lists, whatever the window shows of them, and goes back to
// what was selected before.
void Program::ForEachPackage(bool isCategoryOnly, const std::function<void()>& command) {
    const int oldCategory = view.categoryIndex, oldPackage = view.packageIndex;
    const auto select = [&](int category) {
        view.categoryIndex = category;
        view.packageIndex = -1;
        FillPackages();
    };
    isBatch = true;
    const int first = isCategoryOnly ? oldCategory : 0;
    const int end = isCategoryOnly ? oldCategory + 1 : static_cast<int>(view.categories.size());
    for (int category = first; category >= 0 && category < end; ++category) {
        select(category);
        for (int index = 0; index < static_cast<int>(view.packages.size()); ++index) {
            view.packageIndex = index;
            form.ShowStatus(SelectedCategory() + "\\" + CurrentPackageName(*this));
            command();
        }
    }
    isBatch = false;
    select(oldCategory);
    if (oldPackage < static_cast<int>(view.packages.size()))
        view.packageIndex = oldPackage;
    isHangarStale = true;
    LoadShownSide();
    ShowStatus("");
    ShowView();
}

void Program::CompressEach(const std::string& question, bool compress) {
    EnsureHangarSide();
    if (!user.AskYesNo(question))
        return;
    state.BatchMode = true;
    ForEachPackage(false, [&] {
        LoadSelectedPackage();
        if (package.isCompressed == compress)
            return;
        state.CommandCode = compress ? CompressShownPackage : DecompressShownPackage;
        RunHangarCommand(context, state, memory, package);
    });
    state.BatchMode = false;
    user.Tell("Done.");
}

void Program::CompressAll() {
    Run([&] {
        CompressEach(
            "Compress all packages in Hangar?  If you want to make sure all packages are compressed, "
            "select 'Yes'.  Packages that are already compressed will be skipped.  Note that this "
            "may take a while.  Please do not attempt to use Korvadex while compress process is "
            "running.",
            true);
    });
}

void Program::DecompressAll() {
    Run([&] {
        CompressEach("Decompress all packages in the Hangar?  If you want to make sure all packages are "
                     "decompressed, select 'Yes'.  Packages that are already decompressed will be skipped.  "
                     "Note that this may take a while.  Please do not attempt to use Korvadex while compress "
                     "process is running.",
                     false);
    });
}

void Program::UninstallEach(const std::string& question, bool isCategoryOnly) {
    EnsureHangarSide();
    if (!user.AskYesNo(question))
        return;
    int removed = 0, skipped = 0, keptForAlias = 0;
    const auto isInstalled = [&] {
        return !FindSimAircraftDirectory(files, settings.locations, CurrentPackageName(*this)).empty();
    };
    state.keptPackages.clear();
    state.remainingGauges.clear();
    // Everything that is installed, so that who uses what is found out once for all of them.
    std::vector<std::string> names;
    TakeStock();
    for (const HangarCategory& category : hangar) {
        for (const HangarPackage& listed : category.packages)
            names.push_back(listed.name);
    }
    SimUsage usage(context, names);
    memory.usage = &usage;
    ForEachPackage(isCategoryOnly, [&] {
        if (!isInstalled()) {
            ++skipped;
            return;
        }
        LoadSelectedPackage();
        const std::size_t keptBefore = state.keptPackages.size();
        state.QuietMode = true;
        state.CommandCode = RemovePackageFromSim;
        RunHangarCommand(context, state, memory, package);
        state.QuietMode = false;
        if (!isInstalled())
            ++removed;
        else if (state.keptPackages.size() == keptBefore)
            ++keptForAlias;
    });
    memory.usage = nullptr;
    if (!state.keptPackages.empty())
        user.Tell("The following packages were kept ...\r\n\r\n" + ListNames(state.keptPackages),
                  MessageIcon::Exclamation);
    TellRemainingGauges(context, state.remainingGauges);
    user.Tell("Done.");
    std::string text = std::to_string(removed) + " removed, " + std::to_string(skipped) +
                       " skipped (not installed), " + std::to_string(keptForAlias) +
                       " kept because of an alias";
    if (!state.keptPackages.empty())
        text += ", " + std::to_string(state.keptPackages.size()) + " kept for other reasons";
    ShowStatus(text + ".");
}

void Program::UninstallAll() {
    Run([&] {
        UninstallEach("Uninstall all packages from Hangar?  If you want to make sure all packages are "
                      "uninstalled, select 'Yes'.  Please do not attempt to use Korvadex while this process "
                      "is running.",
                      false);
    });
}

void Program::UninstallCategory() {
    Run([&] {
        UninstallEach("Uninstall all packages in current category from Hangar?  Please do not attempt to use "
                      "Korvadex while this process is running.",
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
