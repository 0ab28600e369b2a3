#include "sim/hangar_package.h"

#include "package/file_primitives.h"
#include "package/load_package.h"
#include "package/rename.h"
#include "platform/windows_path.h"
#include "sim/alias_users.h"
#include "sim/copy_check.h"
#include "sim/copy_package.h"
#include "sim/delete_directory.h"
#include "sim/gauge_check.h"
#include "sim/remove.h"

#include <algorithm>
#include <set>

namespace korvadex {

namespace {

// What lies on a drive that is mounted there is not the Hangar's own, as what a link leads to.
bool IsMountPoint(const CommandContext& context, const std::string& directory) {
    const auto entries = context.files.List(ParentDirectory(directory));
    const std::string name = LastPathComponent(WithoutBackslash(directory));
    return entries && std::ranges::any_of(*entries, [&](const DirectoryEntry& entry) {
               return entry.isMountPoint && EqualNoCase(entry.name, name);
           });
}

// The users of the package's panel (kind "panel") or sound in the Hangar, unless they are known looked for now; those
// found are listed.
AliasUsers ShowUsersInHangar(CommandContext& context, const PackageRef& package, const std::string& kind,
                             const ConfigUsage* known = nullptr) {
    const std::string& root = context.locations.HangarDir;
    const std::string own = package.Directory(context.locations);
    AliasUsers users =
        known ? known->FindUsers(package.name, kind, own) : FindAliasUsers(context, root, package.name, kind, own);
    ShowAliasUsers(context, root, kind, users.paths);
    return users;
}

// True when the user would rather keep what another package needs, or may need. What could not be looked at is asked
// about once.
bool WantsToKeep(CommandContext& context, const PackageRef& package, const std::string& kind,
                 const std::string& question, const ConfigUsage* known, std::set<std::string>& asked) {
    AliasUsers users = ShowUsersInHangar(context, package, kind, known);
    if (!users.paths.empty())
        return context.user.AskYesNo(question);
    std::erase_if(users.unseen, [&](const Unseen& thing) { return !asked.insert(thing.path).second; });
    return !users.unseen.empty() && context.user.AskYesNo("WARNING!  " + DescribeUnseenUsers(kind, users.unseen) +
                                                          "\r\n\r\nDo you want to cancel this command?");
}

// False, after a message, when another package needs it, or may.
bool MayRename(CommandContext& context, const PackageRef& package, const std::string& kind,
               const std::string& refusal) {
    const AliasUsers users = ShowUsersInHangar(context, package, kind);
    if (!users.paths.empty())
        context.user.Tell(refusal, MessageIcon::Information);
    else if (!users.unseen.empty())
        context.user.Tell("Cannot rename.  " + DescribeUnseenUsers(kind, users.unseen), MessageIcon::Exclamation);
    return users.AreNone();
}

// Two aircraft in Staging could only be told apart by erasing one of them.
bool IsSecondAircraft(CommandContext& context, const LoadedPackage& package) {
    if (!package.PackageHasFile("aircraft.cfg"))
        return false;
    const auto staged = CollectFiles(WalkTree(context.files, context.locations.StagingDir), "aircraft.cfg",
                                     FileMode::Name, context.limits);
    if (staged.entries.empty())
        return false;
    context.user.Tell(
        "Staging can hold one aircraft only, and another one is there already:\r\n\r\n" + staged.entries.front().path +
            "\r\n\r\nNothing was copied.  Please copy what is in Staging to the Hangar, or clear Staging, first.",
        MessageIcon::Exclamation);
    return true;
}

} // namespace

std::string DescribePlaceOfOthers(const CommandContext& context, const std::string& directory) {
    const Locations& locations = context.locations;
    const std::string place = OneName(context.files, directory);
    // The Hangar itself may lie in the simulator's directory.
    const bool isOwn = IsAtOrBelow(AddBackslash(place), AddBackslash(OneName(context.files, locations.HangarDir)));
    if (!IsOnePlace(context.files, directory, locations.StagingDir) &&
        (isOwn || !IsOnePlace(context.files, directory, locations.MsfsDir)))
        return "";
    return "the Hangar leads by a link to " + place + ", which belongs to Flight Simulator or to Staging.";
}

Changes RemoveFromHangar(CommandContext& context, const LoadedPackage& package, const std::function<bool()>& lastLook,
                         const ConfigUsage* known) {
    const std::string directory = package.ref.Directory(context.locations);
    Changes changes;
    if (IsMountPoint(context, directory)) {
        context.user.Tell("The package cannot be removed: another drive is mounted as its directory, " + directory +
                              ".\r\n\r\nPlease unmount that drive first.",
                          MessageIcon::Exclamation);
        return changes;
    }
    const std::string others = DescribePlaceOfOthers(context, directory);
    if (!others.empty() && !IsLinkedDirectory(context, directory)) {
        context.user.Tell("The package cannot be removed: " + others +
                              "\r\n\r\nPlease remove it there, or remove the link.",
                          MessageIcon::Exclamation);
        return changes;
    }
    if (IsInstalled(context.files, context.locations, package.ref) &&
        context.user.AskYesNo(
            "WARNING!  This package is currently installed in MSFS.  Should it be removed from MSFS first?  "
            "(If you choose No, the only way to use Korvadex to remove it from MSFS in the future would be to "
            "import it from MSFS and then remove it.)")) {
        changes = RemoveFromSim(context, package).changes;
        if (context.files.Info(WithoutBackslash(directory)).fault() == FileFault::NotFound) { // it has gone meanwhile
            changes.hangar = changes.package = true;
            return changes;
        }
    }
    std::set<std::string> asked;
    if (WantsToKeep(
            context, package.ref, "panel",
            "WARNING!  The panel in this package is used (via alias) by an aircraft(s) in the Hangar as shown.  "
            "Do you want to cancel this command?",
            known, asked) ||
        WantsToKeep(
            context, package.ref, "sound",
            "WARNING!  "
            "The sound configuration in this package is used (via alias) by an aircraft(s) in the Hangar as shown.  "
            "Do you want to cancel this command?",
            known, asked))
        return changes;
    // A directory in another place that stands in the Hangar as a link stays where it is.
    const std::string place = IsLinkedDirectory(context, directory) ? OneName(context.files, directory) : "";
    const bool isAsked = !known || !place.empty();
    if (isAsked &&
        !context.user.AskYesNo(
            "Are you sure you want to remove this package from the hangar?" +
                (place.empty() ? "" : "\r\n\r\nIt is a link to " + place + ".  Only the link will be removed."),
            MessageIcon::None, Answer::No)) {
        changes.package = true;
        return changes;
    }
    if (IsLinkedDirectory(context, directory) == place.empty()) {
        context.user.Tell(directory + " has changed meanwhile.  Nothing was removed.", MessageIcon::Exclamation);
        return changes;
    }
    if (lastLook && !lastLook())
        return changes;
    const Status status = DeleteDirectory(context, directory);
    changes.hangar = changes.package = true;
    if (status) {
        changes.renamed = PackageRef{};
        context.user.Tell(place.empty() ? "Done."
                                        : "Done.\r\n\r\nThe link was removed.  The files of the package are still in " +
                                              place + ".");
    } else {
        TellIncompleteRemoval(context, status);
    }
    return changes;
}

Changes CopyToStaging(CommandContext& context, const LoadedPackage& package) {
    if (IsSecondAircraft(context, package))
        return {};
    if (!StagingIsEmpty(context.files, context.locations) &&
        (!context.user.AskYesNo("The staging area is not clear.  Are you sure?") || IsSecondAircraft(context, package)))
        return {};
    const auto copy = CopyPackageTo(context, package, CopyRoot::Staging, package.ref.name);
    if (!copy)
        return {};
    Changes changes{.staged = package.ref.name};
    if (const std::string missing = FirstNotCopied(context, package, CopyRoot::Staging, *copy); !missing.empty()) {
        context.user.Tell("The package was not copied completely.  This file is missing in Staging:\r\n\r\n" + missing,
                          MessageIcon::Exclamation);
        return changes;
    }
    // What has come into the package since it was listed is in no copy of it.
    if (HasChangedOnDisk(context.files, package)) {
        context.user.Tell("Done.");
        return changes;
    }
    if (!context.user.AskYesNo("Done.\r\n\r\nWould you like to remove this package from the hangar?", MessageIcon::None,
                               Answer::No))
        return changes;
    changes += RemoveFromHangar(context, package, [&] {
        const std::string different = HasChangedOnDisk(context.files, package)
                                          ? package.path
                                          : FirstNotCopied(context, package, CopyRoot::Staging, *copy);
        if (!different.empty())
            context.user.Tell(
                "The package is not in Staging as it is in the Hangar any more.  It was not removed.\r\n\r\n" +
                    different + "\r\n\r\nPlease clear Staging and copy the package again.",
                MessageIcon::Exclamation);
        return different.empty();
    });
    return changes;
}

Changes RenameInHangar(CommandContext& context, const LoadedPackage& package) {
    if (IsInstalled(context.files, context.locations, package.ref)) {
        context.user.Tell(
            "Sorry, no renaming allowed while package is installed in MSFS.  Remove package from MSFS first.",
            MessageIcon::Exclamation);
        return {};
    }
    if (!MayRename(context, package.ref, "panel",
                   "Cannot rename.  "
                   "The panel in this package is used (via alias) by an aircraft(s) in the Hangar as shown.") ||
        !MayRename(
            context, package.ref, "sound",
            "Cannot rename.  "
            "The sound configuration in this package is used (via alias) by an aircraft(s) in the Hangar as shown."))
        return {};
    return RenamePackage(context, package);
}

bool CheckReferences(CommandContext& context, const PackageRef& package, const ConfigUsage* known) {
    const AliasUsers panel = ShowUsersInHangar(context, package, "panel", known);
    const bool isPanelUsed = !panel.paths.empty();
    if (isPanelUsed) {
        context.user.Tell("The panel in this package is used (via alias) by an aircraft(s) in the Hangar as shown.");
        if (!known && !context.user.AskYesNo("Continue on to sound alias check?"))
            return true;
    }
    const AliasUsers sound = ShowUsersInHangar(context, package, "sound", known);
    const bool isSoundUsed = !sound.paths.empty();
    if (isSoundUsed)
        context.user.Tell(
            "The sound configuration in this package is used (via alias) by an aircraft(s) in the Hangar as shown.");
    const std::vector<Unseen>& unseen = isPanelUsed || panel.unseen.empty() ? sound.unseen : panel.unseen;
    if (isPanelUsed || isSoundUsed) {
        context.user.Tell("Done.");
    } else if (!unseen.empty()) {
        context.user.Tell(DescribeUnseenUsers(&unseen == &panel.unseen ? "panel" : "sound", unseen),
                          MessageIcon::Exclamation);
        return false;
    } else if (!known) {
        context.user.Tell("Done checking for panel and sound aliases to this package.  None found.");
    }
    return true;
}

bool CheckInstalledGauges(CommandContext& context, const PackageRef& package) {
    if (!IsInstalled(context.files, context.locations, package)) {
        context.user.Tell("This package is not currently installed in Flight Simulator.", MessageIcon::Information);
        return false;
    }
    const std::string panel = GetInstalledFile(context.files, context.locations, package.name, "\\panel\\panel.cfg");
    if (panel.empty()) {
        context.user.Tell("This package doesn't contain a panel to do a gauge crosscheck with.");
        return false;
    }
    return ShowInstallCheck(context, package.name, panel);
}

} // namespace korvadex
