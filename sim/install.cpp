#include "sim/install.h"

#include "package/file_primitives.h"
#include "platform/windows_path.h"
#include "sim/alias_users.h"
#include "sim/copy_package.h"
#include "sim/gauge_check.h"

namespace korvadex {

namespace {

// What an alias or a package's name stands for below the simulator's aircraft directory, whatever of its blanks are
// written as "_" there; "" when it is not there.
std::string FindInSim(const CommandContext& context, const std::string& alias) {
    const std::string found = FindSimAircraftDirectory(context.files, context.locations, alias);
    const std::size_t end = alias.find('\\');
    if (!found.empty() || end == std::string::npos)
        return found;
    const std::string root = context.locations.Aircraft();
    for (const std::string& aircraft : SubdirectoryNames(context.files, root)) {
        if (EqualNoCase(SpacesToUnderscores(aircraft), SpacesToUnderscores(alias.substr(0, end))) &&
            HasSubdirectory(context.files, root + aircraft, alias.substr(end)))
            return aircraft + alias.substr(end);
    }
    return "";
}

bool IsInSim(const CommandContext& context, const std::string& alias) {
    return !FindInSim(context, alias).empty();
}

// What else there is to say when a package is told to be installed before itself.
std::string OwnAliasHint(const std::string& name, const std::string& alias, const std::string& kind) {
    if (!EqualNoCase(SpacesToUnderscores(alias), SpacesToUnderscores(name + "\\" + kind)))
        return "";
    return "\r\n\r\nThe alias leads to this package itself.  Please use 'Restore old " + kind +
           "' or correct the alias line in its " + kind + ".cfg file.";
}

// The alias lines of a new aircraft are adapted before it is there. An alias names the package as the Hangar does; its
// directory in the simulator may have "_" where that has blanks.
class AliasLines {
  public:
    explicit AliasLines(CommandContext& command) : context(command) {}

    void Follow(const std::string& alias, const std::string& directory, const std::string& configFile) {
        const std::string installed = FindInSim(context, alias);
        if (alias.empty() || installed.empty() || installed == alias || !context.files.Info(directory + configFile))
            return;
        const Status status = RewriteAliasLine(context, installed, directory + configFile);
        if (!status)
            failures.push_back(configFile + " could not be changed to " + installed + ".\r\n\r\n" +
                               "The reason: " + DescribeFault(status) + ".  Please change it with an editor.");
    }
    void TellFailures(const std::string& directory) {
        for (const std::string& failure : failures)
            context.user.Tell("The alias line of " + directory + failure, MessageIcon::Exclamation);
    }

  private:
    CommandContext& context;
    std::vector<std::string> failures;
};

} // namespace

Changes InstallIntoSim(CommandContext& context, const LoadedPackage& package) {
    const std::string& name = package.ref.name;
    if (IsInSim(context, name)) {
        context.user.Tell("This package is already installed in Flight Simulator.", MessageIcon::Information);
        return {};
    }
    if (!package.PackagePanelAlias.empty() && !IsInSim(context, package.PackagePanelAlias)) {
        context.user.Tell(
            "This package uses a panel via alias (" + package.PackagePanelAlias +
                ") which is not installed in MSFS.  Please install the package that contains this panel first." +
                OwnAliasHint(name, package.PackagePanelAlias, "panel"),
            MessageIcon::Information);
        return {};
    }
    if (!package.PackageSoundAlias.empty() && !IsInSim(context, package.PackageSoundAlias)) {
        context.user.Tell("This package uses a sound configuration via alias (" + package.PackageSoundAlias +
                              ") which is not installed in MSFS.  "
                              "Please install the package that contains this sound configuration first." +
                              OwnAliasHint(name, package.PackageSoundAlias, "sound"),
                          MessageIcon::Information);
        return {};
    }
    AliasLines aliases(context);
    const auto installed = CopyPackageTo(context, package, CopyRoot::Msfs, name, [&](const std::string& directory) {
        aliases.Follow(package.PackageSoundAlias, directory, "Sound\\sound.cfg");
        aliases.Follow(package.PackagePanelAlias, directory, "Panel\\panel.cfg");
    });
    if (!installed)
        return {};
    aliases.TellFailures(*installed);

    const std::string panel = GetInstalledFile(context.files, context.locations, name, "\\panel\\panel.cfg");
    if (panel.empty()) {
        context.user.Tell("Done.");
    } else {
        ShowInstallCheck(context, name, panel);
    }
    return {.simulator = true, .package = true};
}

} // namespace korvadex
