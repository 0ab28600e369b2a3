// The commands of the Tools menu that go over all packages of the Hangar or of the current category.
#include "app/batch.h"
#include "app/program.h"
#include "package/presence.h"
#include "sim/gauges.h"
#include "sim/hangar_compression.h"

namespace korvadex {

std::vector<PackageRef> Program::PackagesInBatch(bool isCategoryOnly) {
    TakeStock();
    std::vector<PackageRef> packages;
    for (const HangarCategory& category : selection.Hangar())
        if (!isCategoryOnly || category.name == selection.Category())
            for (const HangarPackage& listed : category.packages)
                packages.push_back({category.name, listed.name});
    return packages;
}

void Program::CompressEach(const std::string& question, bool compress) {
    EnsureHangarSide();
    const auto packages = PackagesInBatch(false);
    if (!ArePlacesThere({Place::Hangar}) || !user.AskYesNo(question))
        return;
    const auto summary = CompressPackages(context, packages, compress);
    ShowChanges({.hangar = true, .package = true});
    ShowStatus("");
    TellLeft(user, "The following packages were left as they are", summary.left, packages);
    TellCompressed(context, summary.failures);
}

void Program::CompressAll() {
    Run({"Compress all", "", Repacking::Packs}, [&] {
        CompressEach(
            "Compress all packages in Hangar?  If you want to make sure all packages are compressed, select 'Yes'.  "
            "Packages that are already compressed will be skipped.  Note that this may take a while.  "
            "Please do not attempt to use Korvadex while compress process is running.",
            true);
    });
}

void Program::DecompressAll() {
    Run({"Decompress all", "", Repacking::Unpacks}, [&] {
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
    const auto summary = UninstallPackages(context, packages, selection.Hangar());
    ShowChanges({.hangar = true, .simulator = true, .package = true});
    ShowStatus("");
    TellLeft(user, "The following packages were kept", summary.left, packages,
             summary.unseen.empty()
                 ? ""
                 : "\r\n\r\nThese could not be looked at, and may use what the packages have ...\r\n\r\n" +
                       summary.unseen +
                       "\r\n\r\nPlease make sure that they can be read, or delete what nobody needs, and try again.");
    TellRemainingGauges(context, summary.remainingGauges);
    user.Tell("Done.");
    std::string text = std::to_string(summary.removed) + " removed, " + std::to_string(summary.notInstalled) +
                       " skipped (not installed), " + std::to_string(summary.lenders) + " kept because of an alias";
    if (!summary.left.empty())
        text += ", " + std::to_string(summary.left.size()) + " kept for other reasons";
    ShowStatus(text + ".");
}

void Program::UninstallAll() {
    Run({"Uninstall all", ""}, [&] {
        UninstallEach("Uninstall all packages from Hangar?  "
                      "If you want to make sure all packages are uninstalled, select 'Yes'.  "
                      "Please do not attempt to use Korvadex while this process is running.",
                      false);
    });
}

void Program::UninstallCategory() {
    Run({"Uninstall category", selection.Category()}, [&] {
        UninstallEach("Uninstall all packages in current category from Hangar?  "
                      "Please do not attempt to use Korvadex while this process is running.",
                      true);
    });
}

} // namespace korvadex
