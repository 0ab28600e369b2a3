#include "sim/aliases.h"

#include "package/config_readers.h"
#include "package/file_primitives.h"
#include "package/scratch.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

const std::string& AliasOf(const LoadedPackage& package, std::string_view kind) {
    return kind == "panel" ? package.PackagePanelAlias : package.PackageSoundAlias;
}

// Nothing but what a paste writes: such a file can be written again, and need not be kept.
bool IsAliasFile(const FileSystem& files, const std::string& path) {
    const auto lines = ReadConfigLines(files, path);
    if (!lines)
        return false;
    bool hasAlias = false;
    for (const std::string& line : *lines) {
        const bool isAlias = HasKey(line, "alias");
        if (!isAlias && !TrimBlanks(line).empty() && !EqualNoCase(SectionOf(line), "fltsim"))
            return false;
        hasAlias = hasAlias || isAlias;
    }
    return hasAlias;
}

// The configuration of one kind in a package of the Hangar. Files change places by renaming alone.
class KindConfig {
  public:
    KindConfig(CommandContext& command, const std::string& kindWord, const LoadedPackage& package)
        : context(command), kind(kindWord), directory(DirectoryOf(command, kindWord, package)),
          current(directory + kind + ".cfg"), backup(directory + "old" + kind + ".cfg") {}

    bool HasBackup() const { return Exists(backup); }

    Status WriteAlias(const std::string& alias) {
        // A package without this kind gets the directory; when the file cannot be written it stays empty.
        if (const auto made = EnsureDirectory(context.files, WithoutBackslash(directory)); !made)
            return made.status();
        const std::vector<std::string> lines = {"[fltsim]", "alias=" + alias};
        if (!JoinLines(lines))
            return {FileFault::BadName, current, 0};
        std::string setAside;
        if (Exists(current) && !(HasBackup() && IsReplaceable())) {
            setAside = HasBackup() ? FreeBackupName() : backup;
            if (Status status = context.files.Rename(current, setAside); !status)
                return status;
        }
        Status status = RewriteLines(context.files, context.locations, current, lines);
        if (!status && !setAside.empty())
            static_cast<void>(context.files.Rename(setAside, current));
        return status;
    }

    Status RestoreBackup() {
        std::string setAside;
        if (Exists(current)) {
            if (IsReplaceable()) {
                static_cast<void>(context.files.ClearAttributes(current));
                return context.files.Replace(backup, current);
            }
            setAside = FreeBackupName();
            if (Status status = context.files.Rename(current, setAside); !status)
                return status;
        }
        Status status = context.files.Rename(backup, current);
        if (!status && !setAside.empty())
            static_cast<void>(context.files.Rename(setAside, current));
        return status;
    }

  private:
    // Where the package has its configuration; a second one elsewhere would be a duplicate.
    static std::string DirectoryOf(const CommandContext& context, const std::string& kind,
                                   const LoadedPackage& package) {
        for (const std::string& name : {kind + ".cfg", "old" + kind + ".cfg"}) {
            if (const std::string path = package.FindComponentFile(name); !path.empty())
                return ParentDirectory(path);
        }
        return package.ref.Directory(context.locations) + kind + "\\";
    }

    bool Exists(const std::string& path) const { return bool(context.files.Info(path)); }

    // The current file may go: it is an alias file, or the backup holds the same.
    bool IsReplaceable() const {
        return IsAliasFile(context.files, current) || SameBytes(context.files, current, backup);
    }

    std::string FreeBackupName() const {
        for (int number = 1;; ++number) {
            std::string name = NumberedName(backup, number);
            if (context.files.Info(name).fault() == FileFault::NotFound)
                return name;
        }
    }

    CommandContext& context;
    const std::string kind, directory, current, backup;
};

Changes TellOutcome(CommandContext& context, const std::string& kind, const Status& status) {
    if (status)
        context.user.Tell("Done.");
    else
        context.user.Tell("The " + kind + ".cfg file of this package could not be replaced.\r\n\r\n" + status.path +
                              "\r\n\r\nThe reason: " + DescribeFault(status) + ".  Nothing was lost.",
                          MessageIcon::Exclamation);
    return {.package = true};
}

} // namespace

void HeldAliases::FollowPackage(const PackageRef& package, const PackageRef& renamed) {
    for (PackageRef* held : {&HeldPanelAlias, &HeldSoundAlias}) {
        if (*held == package)
            *held = renamed;
    }
}

void CreateAlias(CommandContext& context, const std::string& kind, const LoadedPackage& package, HeldAliases& held) {
    if (!package.PackageHasFile(kind + ".cfg")) {
        context.user.Tell("The current package does not contain a " + kind + ".cfg file.  Cannot create " + kind +
                              " alias.",
                          MessageIcon::Exclamation);
        return;
    }
    if (!AliasOf(package, kind).empty()) {
        context.user.Tell(
            kind == "panel"
                ? "This package uses a panel alias as shown.  "
                  "Panel aliases can only be created for original panel configurations.  "
                  "Select the package that's used for the panel alias so that you can create an alias to it."
                : "This package uses a sound alias as shown.  "
                  "Sound aliases can only be created for original sound configurations.  "
                  "Select the package that's used for the sound alias so that you can create an alias to it.",
            MessageIcon::Information);
        return;
    }
    held.Of(kind) = package.ref;
    context.user.Tell("Done.\r\n\r\nNow you can easily create a new " + kind +
                      ".cfg file containing the created alias for any package (aircraft) "
                      "by selecting the package and picking the 'Paste " +
                      kind + " alias' option.  The current " + kind +
                      ".cfg file for that package, if it exists, will be renamed to old" + kind +
                      ".cfg and can be easily restored by picking the 'Restore old " + kind + "' option.");
}

Changes PasteAlias(CommandContext& context, const std::string& kind, const LoadedPackage& package,
                   const PackageRef& lender) {
    const auto refuse = [&](const std::string& text) {
        context.user.Tell(text, MessageIcon::Exclamation);
        return Changes{};
    };
    if (lender.IsNone())
        return refuse("You'll have to use the 'Create " + kind + " alias' option on a package with the required " +
                      kind + " configuration first.");
    if (EqualNoCase(SpacesToUnderscores(lender.name), SpacesToUnderscores(package.ref.name)))
        return refuse("You cannot paste a " + kind + " alias to the package where you got the alias.");
    if (IsInstalled(context.files, context.locations, package.ref))
        return refuse(
            "This package is installed in Flight Simulator.  Please remove it from MSFS before replacing the " + kind +
            ".cfg file.");
    return TellOutcome(context, kind, KindConfig(context, kind, package).WriteAlias(lender.name + "\\" + kind));
}

Changes RestoreOldConfig(CommandContext& context, const std::string& kind, const LoadedPackage& package) {
    const auto refuse = [&](const std::string& text) {
        context.user.Tell(text, MessageIcon::Exclamation);
        return Changes{};
    };
    KindConfig config(context, kind, package);
    if (!config.HasBackup())
        return refuse("This package does not contain an old" + kind + ".cfg file to restore.");
    if (IsInstalled(context.files, context.locations, package.ref))
        return refuse(
            "This package is installed in Flight Simulator.  Please remove it from MSFS before restoring the " + kind +
            ".cfg file.");
    return TellOutcome(context, kind, config.RestoreBackup());
}

} // namespace korvadex
