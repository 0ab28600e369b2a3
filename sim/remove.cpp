#include "sim/remove.h"

#include "package/file_primitives.h"
#include "package/name_list.h"
#include "package/walk.h"
#include "platform/windows_path.h"
#include "sim/alias_users.h"
#include "sim/delete_directory.h"
#include "sim/gauge_removal.h"
#include "sim/gauges.h"
#include "sim/install_record.h"
#include "sim/lost_files.h"
#include "sim/shared_files.h"
#include "sim/sim_usage.h"

namespace korvadex {

namespace {

// One removal, whose installed directory is known.
class Removal {
  public:
    Removal(CommandContext& command, const LoadedPackage& loaded, std::string installed, const SimUsage* simUsage,
            bool isQuiet)
        : context(command), package(loaded), directory(std::move(installed)), usage(simUsage), QuietMode(isQuiet) {}

    RemovalOutcome Run() {
        // Cut off anywhere, the removal is finished by the next one: the record goes last.
        if (IsFree("panel") && IsFree("sound") && HasOtherCopy() && ConfirmLosses() && RemoveGauges())
            Delete();
        return outcome;
    }

  private:
    // A batch names the package with the reason at its end; otherwise the user is told now, in whole sentences.
    bool Keep(const std::string& reason, const std::string& told) {
        if (QuietMode)
            outcome.kept = reason;
        else
            context.user.Tell(told, MessageIcon::Exclamation);
        return false;
    }

    // False when the panel or the sound of the package is needed by another aircraft of the simulator, or may be.
    bool IsFree(const std::string& kind) {
        const std::string root = context.locations.Aircraft(), &name = package.ref.name;
        const AliasUsers users =
            usage ? usage->FindUsers(name, kind, directory) : FindAliasUsers(context, root, name, kind, directory);
        ShowAliasUsers(context, root, kind, users.paths);
        if (!users.paths.empty()) {
            context.user.Tell(kind == "panel"
                                  ? "Cannot remove.  The panel in this package is used (via alias) by an aircraft(s) "
                                    "in the Flight Simulator directory as shown."
                                  : "Cannot remove.  This sound in this package is used (via alias) by an aircraft(s) "
                                    "in the Flight Simulator directory as shown.",
                              MessageIcon::Information);
        } else if (!users.unseen.empty()) {
            Keep("it could not be found out whether another aircraft uses it",
                 "Cannot remove.  " + DescribeUnseenUsers(kind, users.unseen));
            outcome.unseen = ListUnseen(users.unseen);
        }
        return users.AreNone();
    }

    // False when there is no copy of the aircraft in the Hangar: the package has gone, or the Hangar leads to the
    // installed directory itself.
    bool HasOtherCopy() {
        if (!IsLinkedDirectory(context, directory) && IsOnePlace(context.files, package.path, directory)) {
            const std::string reason = directory + " is the package itself, to which the Hangar leads by a link";
            return Keep(reason, reason + ".\r\n\r\nThere is no other copy of it.  Nothing was removed.");
        }
        if (context.files.List(package.path).fault() == FileFault::NotFound) {
            const std::string reason = "The package you've selected no longer seems to be in the Hangar";
            return Keep(reason, reason + ".");
        }
        return true;
    }

    // Asked about, or in a batch kept, when removing would lose files that only the simulator has. False to keep it.
    bool ConfirmLosses() {
        if (package.cut != ListCut::None) {
            const std::string reason = DescribeCut(package.cut, context.limits);
            return Keep(reason, reason + "\r\n\r\nNothing was removed.");
        }
        const std::vector<std::string> others = FilesOfOthers(context, package, directory);
        if (others.empty())
            return true;
        if (QuietMode)
            return Keep(directory + " holds files that the package doesn't have, such as " + others.front(), "");
        if (!context.user.AskYesNo(directory + " holds files that this package doesn't have ...\r\n\r\n" +
                                       ListNames(others) +
                                       "\r\n\r\nThey will be lost.  Do you want to remove the package nevertheless?",
                                   MessageIcon::Exclamation, Answer::No))
            return false;
        if (FilesOfOthers(context, package, directory) == others)
            return true;
        context.user.Tell(directory + ", or the package in the Hangar, has changed meanwhile.  Nothing was removed.",
                          MessageIcon::Exclamation);
        return false;
    }

    // The gauges that came with the aircraft go, while the record that knows them is there. False when they could not,
    // and then nothing has changed.
    bool RemoveGauges() {
        // Where no file is left an earlier removal has come to its end, but for the directory.
        if (!IsLinkedDirectory(context, directory) && WalkTree(context.files, directory).files.empty())
            return true;
        if (!QuietMode && !package.ComponentFiles[Gauges].empty())
            static_cast<void>(CheckGaugesDirectory(context, context.locations.MsfsDir)); // where they are looked for
        auto remaining = TakeOutGauges(context, package.ref, package.ComponentFiles[Gauges], directory, usage);
        if (!remaining) {
            const Status status = remaining.status();
            const std::string reason = status.path + " could not be written (" + DescribeFault(status) + ")";
            return Keep(reason, "The package was not removed.  "
                                "Another aircraft has gauges of it, which were to be handed on.\r\n\r\n" +
                                    reason + ".\r\n\r\n" + NextStep(status.fault));
        }
        if (QuietMode)
            outcome.remainingGauges = std::move(*remaining);
        else
            TellRemainingGauges(context, *remaining);
        return true;
    }

    void Delete() {
        const Status status = DeleteDirectory(context, directory, directory + std::string(InstallRecordFile));
        outcome.changes = {.simulator = true, .package = true};
        if (status)
            outcome.removed = directory;
        if (!status && QuietMode)
            outcome.kept = DescribeRemaining(status);
        else if (!status)
            TellIncompleteRemoval(context, status);
        else if (!QuietMode)
            context.user.Tell("Done.");
    }

    CommandContext& context;
    const LoadedPackage& package;
    const std::string directory; // ends in a backslash
    const SimUsage* usage;
    const bool QuietMode;
    RemovalOutcome outcome;
};

} // namespace

RemovalOutcome RemoveFromSim(CommandContext& context, const LoadedPackage& package, const SimUsage* usage,
                             bool QuietMode) {
    const std::string installed = FindSimAircraftDirectory(context.files, context.locations, package.ref.name);
    if (installed.empty()) {
        if (!QuietMode)
            context.user.Tell("This package is not currently installed in Flight Simulator.", MessageIcon::Information);
        return {};
    }
    if (!QuietMode &&
        !context.user.AskYesNo("Are you sure you want to remove this package from the Flight Simulator directory?"))
        return {};
    return Removal(context, package, context.locations.Aircraft() + installed + "\\", usage, QuietMode).Run();
}

} // namespace korvadex
