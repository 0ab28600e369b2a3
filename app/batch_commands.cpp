// The commands of the Tools menu that go over all packages of the Hangar or of the current category.
#include "app/batch.h"
#include "app/batch_report.h"
#include "app/program.h"
#include "package/presence.h"
#include "sim/gauges.h"
#include "sim/hangar_compression.h"

#include <algorithm>

namespace korvadex {

namespace {

constexpr const char* StoppedText = "The command was stopped.  What it had done until then stays.";

bool IsCutShort(const std::vector<LeftPackage>& left) {
    return std::ranges::find(left, StoppedReason, &LeftPackage::reason) != left.end();
}

} // namespace

std::vector<PackageRef> Program::PackagesInBatch(bool isCategoryOnly) {
    TakeStock();
    std::vector<PackageRef> packages;
    for (const HangarCategory& category : selection.Hangar())
        if (!isCategoryOnly || category.name == selection.Category())
            for (const HangarPackage& listed : category.packages)
                packages.push_back({category.name, listed.name});
    return packages;
}

void Program::ShowLeft(const std::string& headline, const std::string& done, const std::vector<LeftPackage>& left) {
    std::vector<Turn> turns;
    for (const LeftPackage& each : left)
        turns.push_back({each.package, false, {each.reason}});
    if (!turns.empty())
        fileList.Show(BuildReport(history.Title().Text(), headline, done, turns, files, settings.locations));
}

void Program::CompressWhole(const std::string& question, bool compress) {
    EnsureHangarSide();
    const auto packages = PackagesInBatch(false);
    if (!ArePlacesThere({Place::Hangar}) || !user.AskYesNo(question))
        return;
    CompressionSummary summary;
    {
        BatchProgress progress(*this, window, packages.size(), [this] { return WantsToStop(); });
        CommandContext each{files, launcher, settings.locations, settings.limits, user, progress};
        summary = CompressPackages(each, progress, packages, compress);
    }
    ShowChanges({.hangar = true, .package = true});
    ShowStatus("");
    ShowLeft(Counted(summary.left.size()) + " left as they are.", compress ? "compressed" : "decompressed",
             summary.left);
    TellLeft(user, "The following packages were left as they are", summary.left, packages);
    if (IsCutShort(summary.left) && summary.failures.empty())
        user.Tell(StoppedText);
    else
        TellCompressed(context, summary.failures);
}

void Program::CompressAll() {
    Run({"Compress all", "", Repacking::Packs}, [&] {
        CompressWhole(
            "Compress all packages in Hangar?  If you want to make sure all packages are compressed, select 'Yes'.  "
            "Packages that are already compressed will be skipped.  Note that this may take a while.  "
            "Please do not attempt to use Korvadex while compress process is running.",
            true);
    });
}

void Program::DecompressAll() {
    Run({"Decompress all", "", Repacking::Unpacks}, [&] {
        CompressWhole("Decompress all packages in the Hangar?  "
                      "If you want to make sure all packages are decompressed, select 'Yes'.  "
                      "Packages that are already decompressed will be skipped.  Note that this may take a while.  "
                      "Please do not attempt to use Korvadex while compress process is running.",
                      false);
    });
}

void Program::UninstallWhole(const std::string& question, bool isCategoryOnly) {
    EnsureHangarSide();
    const auto packages = PackagesInBatch(isCategoryOnly);
    if (!ArePlacesThere({Place::Hangar, Place::Simulator}) || !user.AskYesNo(question))
        return;
    UninstallSummary summary;
    {
        BatchProgress progress(*this, window, packages.size(), [this] { return WantsToStop(); });
        CommandContext each{files, launcher, settings.locations, settings.limits, user, progress};
        summary = UninstallPackages(each, progress, packages, selection.Hangar());
    }
    ShowChanges({.hangar = true, .simulator = true, .package = true});
    ShowStatus("");
    std::string text = std::to_string(summary.removed) + " removed, " + std::to_string(summary.notInstalled) +
                       " skipped (not installed), " + std::to_string(summary.lenders) + " kept because of an alias";
    if (!summary.left.empty())
        text += ", " + std::to_string(summary.left.size()) + " kept for other reasons";
    ShowLeft(text + ".", "removed", summary.left);
    TellLeft(user, "The following packages were kept", summary.left, packages,
             summary.unseen.empty()
                 ? ""
                 : "\r\n\r\nThese could not be looked at, and may use what the packages have ...\r\n\r\n" +
                       summary.unseen +
                       "\r\n\r\nPlease make sure that they can be read, or delete what nobody needs, and try again.");
    TellRemainingGauges(context, summary.remainingGauges);
    user.Tell(IsCutShort(summary.left) ? StoppedText : "Done.");
    ShowStatus(text + ".");
}

void Program::UninstallAll() {
    Run({"Uninstall all", ""}, [&] {
        UninstallWhole("Uninstall all packages from Hangar?  "
                       "If you want to make sure all packages are uninstalled, select 'Yes'.  "
                       "Please do not attempt to use Korvadex while this process is running.",
                       false);
    });
}

void Program::UninstallCategory() {
    Run({"Uninstall category", selection.Category()}, [&] {
        UninstallWhole("Uninstall all packages in current category from Hangar?  "
                       "Please do not attempt to use Korvadex while this process is running.",
                       true);
    });
}

} // namespace korvadex
