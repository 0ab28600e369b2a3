#include "sim/install.h"

#include "package/file_primitives.h"
#include "platform/windows_path.h"
#include "sim/alias_users.h"
#include "sim/copy_package.h"
#include "sim/gauges.h"

namespace korvadex {

namespace {

bool IsInSim(const CommandContext& context, const std::string& alias) {
    return !FindSimAircraftDirectory(context.files, context.locations, alias).empty();
}

// What else there is to say when a package is told to be installed before itself.
std::string OwnAliasHint(const std::string& name, const std::string& alias, const std::string& kind) {
    if (!EqualNoCase(SpacesToUnderscores(alias), SpacesToUnderscores(name + "\\" + kind)))
        return "";
    return "\r\n\r\nThe alias leads to this package itself.  Please use 'Restore old " + kind +
           "' or correct the alias line in its " + kind + ".cfg file.";
}

// An alias names the package as the Hangar does; its directory in the simulator may have "_" where that has
// blanks.
void FollowAlias(CommandContext& context, const std::string& alias, const std::string& configFile) {
    if (alias.empty())
        return;
    const std::string installed = FindSimAircraftDirectory(context.files, context.locations, alias);
    if (installed.empty() || installed == alias)
        return;
    const Status status = RewriteAliasLine(context, installed, configFile);
    if (!status)
        context.user.Tell("The alias line of " + configFile + " could not be changed to " + installed +
                              ".\r\n\r\n" + "The reason: " + DescribeFault(status.fault) +
                              ".  Please change it with an editor.",
                          MessageIcon::Exclamation);
}

} // namespace

void InstallIntoSim(CommandContext& context, const LoadedPackage& package) {
    const std::string name = CurrentPackageName(context.window);
    if (IsInSim(context, name)) {
        context.user.Tell("This package is already installed in Flight Simulator.", MessageIcon::Information);
        return;
    }
    if (!package.PackagePanelAlias.empty() && !IsInSim(context, package.PackagePanelAlias)) {
        context.user.Tell(
            "This package uses a panel via alias (" + package.PackagePanelAlias +
                ") which is not installed in MSFS.  Please install the package that contains this panel "
                "first." +
                OwnAliasHint(name, package.PackagePanelAlias, "panel"),
            MessageIcon::Information);
        return;
    }
    if (!package.PackageSoundAlias.empty() && !IsInSim(context, package.PackageSoundAlias)) {
        context.user.Tell(
            "This package uses a sound configuration via alias (" + package.PackageSoundAlias +
                ") which is not installed in MSFS.  Please install the package that contains this sound "
                "configuration first." +
                OwnAliasHint(name, package.PackageSoundAlias, "sound"),
            MessageIcon::Information);
        return;
    }
    std::string destination = context.locations.MsfsDir + "aircraft\\" + name;
    if (!CopyPackageTo(context, package, destination))
        return;
    context.window.RefreshPackageList();

    const std::string sound = GetInstalledFile(context.files, context.locations, name, "\\sound\\sound.cfg");
    if (!sound.empty())
        FollowAlias(context, package.PackageSoundAlias, sound);
    const std::string panel = GetInstalledFile(context.files, context.locations, name, "\\panel\\panel.cfg");
    if (panel.empty()) {
        context.user.Tell("Done.");
    } else {
        FollowAlias(context, package.PackagePanelAlias, panel);
        std::vector<std::string> usedGauges;
        context.user.ShowInstallStatus(InstallStatusText(name, CrossCheckPanel(context, panel, usedGauges)));
    }
    context.window.RefreshPackageDisplay();
}

} // namespace korvadex
