#include "package/rename.h"

#include "package/aircraft_cfg.h"
#include "package/file_primitives.h"
#include "package/package_name.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

class Renaming {
  public:
    Renaming(CommandContext& command, const LoadedPackage& package)
        : context(command), ref(package.ref), title(package.aircraftTitle), hasTitle(HasTitle(package.aircraftCfg)),
          cfgPath(package.aircraftCfg.path) {}

    RenameForm Form() {
        return {.entry = {ref.name, title}, .hasTitle = hasTitle, .accept = [this](const RenameEntry& entered) {
                    return Accept(entered);
                }};
    }
    // The package by the name that it has by now.
    const PackageRef& Ref() const { return ref; }

  private:
    bool Accept(const RenameEntry& entered) {
        if (entered.packageName.empty())
            return Refuse("You must enter a package name.");
        if (entered.packageName.front() == ' ')
            return Refuse("Invalid package Name.");
        if (hasTitle && entered.aircraftTitle.empty())
            return Refuse("You must enter an aircraft name.");
        if (hasTitle && entered.aircraftTitle.front() == ' ')
            return Refuse("Invalid aircraft name.");
        const std::string newName = CleanPackageName(entered.packageName);
        const bool isNewTitle = hasTitle && Trim(entered.aircraftTitle) != Trim(title);
        return (!isNewTitle || CanHoldTitle(entered.aircraftTitle)) && (newName == ref.name || IsFree(newName)) &&
               Change(newName, isNewTitle, entered.aircraftTitle);
    }

    std::string Path(const std::string& name) const {
        return context.locations.HangarDir + PackageRef{ref.category, name}.Text();
    }

    bool Refuse(const std::string& text) {
        context.user.Tell(text, MessageIcon::Exclamation);
        return false;
    }

    bool RefuseName(const std::string& name) {
        return Refuse("\"" + name + "\" cannot be the name of a package.  Please use another name.");
    }

    void TellProblem() {
        context.user.Tell("A problem occurred during the rename process.  "
                          "The file or directories involved may be set to READ ONLY mode (i.e. they're on a CD ROM).",
                          MessageIcon::Exclamation);
    }

    // --- before anything is changed

    bool CanHoldTitle(const std::string& newTitle) {
        return WithTitle(ReadAircraftCfg(context.files, cfgPath), newTitle) ||
               Refuse(
                   "The aircraft name has a character that cannot be kept in aircraft.cfg.  Please use another name.");
    }

    bool IsFree(const std::string& newName) {
        if (!CanBePackageName(newName))
            return RefuseName(newName);
        return CheckPackageName(context, newName, Path(ref.name));
    }

    // --- the name goes first: a directory that another program uses is the likelier to resist, and is named back

    // False when the dialog is to stay open.
    bool Change(const std::string& newName, bool isNewTitle, const std::string& newTitle) {
        const std::string from = Path(ref.name), to = Path(newName);
        const std::string relative = cfgPath.substr(std::min(from.size(), cfgPath.size()));
        if (newName != ref.name) {
            const Status status = context.files.Rename(from, to);
            if (status.fault == FileFault::BadName)
                return RefuseName(newName);
            if (!status) {
                TellProblem();
                return true;
            }
        }
        const bool isDone =
            !isNewTitle || RewriteTitle(context, ReadAircraftCfg(context.files, to + relative), newTitle);
        const bool isBack = !isDone && newName != ref.name && context.files.Rename(to, from);
        if (newName != ref.name && !isBack) {
            ref.name = newName;
            cfgPath = to + relative;
        }
        if (isDone)
            title = isNewTitle ? newTitle : title;
        else
            TellProblem();
        return isDone;
    }

    CommandContext& context;
    PackageRef ref;
    std::string title;
    const bool hasTitle;
    std::string cfgPath;
};

} // namespace

Changes RenamePackage(CommandContext& context, const LoadedPackage& package) {
    Renaming renaming(context, package);
    context.user.ShowRename(renaming.Form());
    Changes changes{.package = true};
    if (renaming.Ref() != package.ref) {
        changes.hangar = true;
        changes.renamed = renaming.Ref();
    }
    return changes;
}

} // namespace korvadex
