#include "package/rename.h"

#include "package/aircraft_cfg.h"
#include "package/file_primitives.h"
#include "package/package_name.h"
#include "platform/windows_path.h"

namespace korvadex {

namespace {

class Renaming {
  public:
    Renaming(CommandContext& command, const LoadedPackage& package)
        : context(command), packageName(CurrentPackageName(command.window)),
          cfgPath(package.aircraftCfg.path), title(package.aircraftTitle),
          categoryPath(command.locations.HangarDir + command.window.SelectedCategory() + "\\") {}

    RenameForm Form() {
        return {.entry = {packageName, title},
                .hasTitle = HasTitle(),
                .accept = [this](const RenameEntry& entered) { return Accept(entered); }};
    }

  private:
    bool HasTitle() const { return !cfgPath.empty(); }

    bool Accept(const RenameEntry& entered) {
        if (entered.packageName.empty())
            return Refuse("You must enter a package name.");
        if (entered.packageName.front() == ' ')
            return Refuse("Invalid package Name.");
        if (HasTitle() && entered.aircraftTitle.empty())
            return Refuse("You must enter an aircraft name.");
        if (HasTitle() && entered.aircraftTitle.front() == ' ')
            return Refuse("Invalid aircraft name.");
        return ChangeTitle(entered.aircraftTitle) && ChangeName(CleanPackageName(entered.packageName));
    }

    bool Refuse(const std::string& text) {
        context.user.Tell(text, MessageIcon::Exclamation);
        return false;
    }

    bool RefuseName(const std::string& name) {
        return Refuse("\"" + name + "\" cannot be the name of a package.  Please use another name.");
    }

    void TellProblem() {
        context.user.Tell("A problem occurred during the rename process.  The file or directories involved "
                          "may be set to READ ONLY mode (i.e. they're on a CD ROM).",
                          MessageIcon::Exclamation);
    }

    // False when the dialog is to stay open.
    bool ChangeTitle(const std::string& newTitle) {
        if (!HasTitle() || Trim(newTitle) == Trim(title))
            return true;
        const Status status = RewriteTitle(context, ReadAircraftCfg(context.files, cfgPath), newTitle);
        if (status.fault == FileFault::BadName)
            return Refuse(
                "The aircraft name has a character that cannot be kept in aircraft.cfg.  Please use "
                "another name.");
        if (!status) {
            TellProblem();
            return false;
        }
        title = newTitle;
        return true;
    }

    bool ChangeName(const std::string& newName) {
        if (newName == packageName)
            return true;
        if (!IsStorableName(newName) || IsScratchName(newName))
            return RefuseName(newName);
        // Another case of its own name is no other package's.
        if (!EqualNoCase(newName, packageName) && !CheckPackageName(context, newName))
            return false;
        const Status status = context.files.Rename(categoryPath + packageName, categoryPath + newName);
        if (status.fault == FileFault::BadName)
            return RefuseName(newName);
        if (status)
            context.window.SelectPackageNamed(newName);
        else
            TellProblem();
        return true;
    }

    CommandContext& context;
    const std::string packageName, cfgPath;
    std::string title;
    const std::string categoryPath;
};

} // namespace

void RenamePackage(CommandContext& context, const LoadedPackage& package) {
    Renaming renaming(context, package);
    context.user.ShowRename(renaming.Form());
}

} // namespace korvadex
