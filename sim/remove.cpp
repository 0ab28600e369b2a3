#include "sim/install.h"

#include "archive/in_place.h"
#include "package/file_primitives.h"
#include "package/name_list.h"
#include "package/walk.h"
#include "platform/windows_path.h"
#include "sim/alias_users.h"
#include "sim/copy_plan.h"
#include "sim/delete_directory.h"
#include "sim/gauge_removal.h"
#include "sim/gauges.h"
#include "sim/install_record.h"
#include "sim/shared_files.h"
#include "sim/sim_usage.h"

#include <algorithm>
#include <map>
#include <optional>

namespace korvadex {

namespace {

// False, after a message, when the panel (kind "panel") or the sound of the package is needed by another aircraft of
// the simulator, or may be. In a batch what may need it is named at its end.
bool IsFree(CommandContext& context, CommandState& state, const std::string& name, const std::string& directory,
            const std::string& kind, const SimUsage* usage) {
    const std::string root = context.locations.MsfsDir + "aircraft\\";
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
    } else if (!users.unseen.empty() && state.QuietMode) {
        state.keptPackages.push_back(name + ": it could not be found out whether another aircraft uses it");
        state.unseen = ListUnseen(users.unseen);
    } else if (!users.unseen.empty()) {
        context.user.Tell("Cannot remove.  " + DescribeUnseenUsers(kind, users.unseen), MessageIcon::Exclamation);
    }
    return users.AreNone();
}

// The installation adapts the alias line of such a file to the names of the simulator, and nothing else.
bool IsRewrittenAlias(CommandContext& context, const LoadedPackage& package, const FileEntry& installed,
                      const std::string& source) {
    const std::string& alias = installed.key == "panel.cfg" ? package.PackagePanelAlias : package.PackageSoundAlias;
    if (alias.empty() || (installed.key != "panel.cfg" && installed.key != "sound.cfg"))
        return false;
    const auto text = ReadConfigText(context.files, installed.path), own = ReadConfigText(context.files, source);
    const auto expected = own ? WithAlias(*own, SpacesToUnderscores(alias)) : std::nullopt;
    // Their ends and indentation may be others than the package's.
    return text && expected &&
           std::ranges::equal(text->lines, expected->lines, [](const ConfigLine& a, const ConfigLine& b) {
               return TrimBlanks(a.text) == TrimBlanks(b.text);
           });
}

// The files of a package, to find the bytes of installed ones among them.
class PackageFiles {
  public:
    PackageFiles(CommandContext& command, const LoadedPackage& loaded) : context(command), package(loaded) {
        for (const PlannedFile& file : PlanCopy(context, package, CopyRoot::Msfs).files)
            sources.emplace(FoldCase(file.relative), file.source);
    }

    // Where an install of the package puts the file it has the time and size of that file, or the same bytes;
    // otherwise some file of the package has them.
    bool Hold(const FileEntry& installed, const std::string& relative) {
        if (installed.info.kind != EntryKind::File)
            return false;
        const auto source = sources.find(FoldCase(relative));
        return (source != sources.end() && (IsSource(installed, source->second) ||
                                            IsRewrittenAlias(context, package, installed, source->second))) ||
               HasBytesOf(installed);
    }
    bool HasSource(const std::string& relative) const { return sources.contains(FoldCase(relative)); }

    // True when at least half of the files have their names and sizes in the package. Another add-on may have come into
    // the Hangar under its name.
    bool HaveMostOf(const std::map<std::string, RecordedFile>& placed) const {
        const auto known = std::ranges::count_if(placed, [&](const auto& file) {
            const auto source = sources.find(file.first);
            return source != sources.end() && HasSize(source->second, file.second.size);
        });
        return 2 * known >= std::ssize(placed);
    }

  private:
    bool HasSize(const std::string& source, std::uint64_t size) const {
        const auto info = context.files.Info(source);
        return info && info->kind == EntryKind::File &&
               (info->size == size || UnpackedSize(context.files, FileEntry(source, *info)) == size);
    }

    bool IsSource(const FileEntry& installed, const std::string& source) const {
        const auto info = context.files.Info(source);
        return info && info->time == installed.info.time && HasSize(source, installed.info.size);
    }

    bool HasBytesOf(const FileEntry& installed) {
        if (bySize.empty()) {
            for (const FileEntry& file : package.tree.files) {
                const bool mayBePacked = file.key.ends_with(".bmp") || file.key.ends_with(".gau");
                bySize.emplace(mayBePacked ? UnpackedSize(context.files, file) : file.info.size, file.path);
            }
        }
        const auto [begin, end] = bySize.equal_range(installed.info.size);
        return std::any_of(begin, end,
                           [&](const auto& file) { return HoldsUnpackedBytes(context, file.second, installed.path); });
    }

    CommandContext& context;
    const LoadedPackage& package;
    std::map<std::string, std::string> sources;       // by what they become below the installed directory
    std::multimap<std::uint64_t, std::string> bySize; // unpacked
};

// What the record of an installed directory says of the aircraft's own files. That of another package says nothing:
// what belongs to this one is only known from its files.
std::map<std::string, RecordedFile> PlacedFiles(CommandContext& context, const LoadedPackage& package,
                                                const std::string& directory) {
    std::map<std::string, RecordedFile> placed;
    const auto record = ReadInstallRecord(context.files, directory);
    if (!record || !EqualNoCase(record->package, RecordedName(context.locations, package)))
        return placed;
    for (const RecordedFile& file : record->files) {
        if (file.kind == AircraftKind)
            placed.emplace(FoldCase(file.name), file);
    }
    return placed;
}

// Files of the installed directory that are neither as they were installed nor anywhere in the package: a simulator's
// own aircraft may bear the name of a package, and people edit what they fly.
std::vector<std::string> FilesOfOthers(CommandContext& context, const LoadedPackage& package,
                                       const std::string& directory) {
    if (IsLinkedDirectory(context, directory))
        return {};
    PackageFiles own(context, package);
    std::map<std::string, RecordedFile> placed = PlacedFiles(context, package, directory);
    if (!own.HaveMostOf(placed))
        placed.clear();
    std::vector<std::string> others;
    const Tree installed = WalkTree(context.files, directory, WalkFor::Search);
    for (const FileEntry& file : installed.files) {
        const std::string relative = file.path.substr(directory.size());
        if (IsInstallRecord(FoldCase(relative)))
            continue;
        const auto recorded = placed.find(FoldCase(relative));
        if (recorded != placed.end() && IsUnchanged(context.files, recorded->second, file.path))
            continue;
        if (!own.Hold(file, relative))
            others.push_back(recorded != placed.end() || own.HasSource(relative) ? relative + "  (changed)" : relative);
    }
    for (const std::string& unreadable : installed.unreadable)
        others.push_back(unreadable.substr(directory.size()) + " (a directory that could not be read)");
    return others;
}

// Packages are asked about, or in a batch kept and named at its end, when removing would lose files that only
// the simulator has. False to keep the package.
bool ConfirmLosses(CommandContext& context, CommandState& state, const LoadedPackage& package, const std::string& name,
                   const std::string& directory) {
    if (package.cut != ListCut::None) {
        const std::string reason = DescribeCut(package.cut, context.limits);
        if (state.QuietMode)
            state.keptPackages.push_back(name + ": " + reason);
        else
            context.user.Tell(reason + "\r\n\r\nNothing was removed.", MessageIcon::Exclamation);
        return false;
    }
    const std::vector<std::string> others = FilesOfOthers(context, package, directory);
    if (others.empty())
        return true;
    if (state.QuietMode) {
        state.keptPackages.push_back(name + ": " + directory + " holds files that the package doesn't have, such as " +
                                     others.front());
        return false;
    }
    if (!context.user.AskYesNo(directory + " holds files that this package doesn't have ...\r\n\r\n" +
                                   ListNames(others) +
                                   "\r\n\r\nThey will be lost.  Do you want to remove the package nevertheless?",
                               MessageIcon::Exclamation))
        return false;
    if (FilesOfOthers(context, package, directory) == others)
        return true;
    context.user.Tell(directory + ", or the package in the Hangar, has changed meanwhile.  Nothing was removed.",
                      MessageIcon::Exclamation);
    return false;
}

// False, after a message, when there is no copy of the aircraft in the Hangar: the package has gone, or the Hangar
// leads to the installed directory itself.
bool HasOtherCopy(CommandContext& context, CommandState& state, const LoadedPackage& package, const std::string& name,
                  const std::string& directory) {
    std::string reason, advice;
    if (!IsLinkedDirectory(context, directory) && IsOnePlace(context.files, package.path, directory)) {
        reason = directory + " is the package itself, to which the Hangar leads by a link";
        advice = ".\r\n\r\nThere is no other copy of it.  Nothing was removed.";
    } else if (context.files.List(package.path).fault() == FileFault::NotFound) {
        reason = "The package you've selected no longer seems to be in the Hangar";
        advice = ".";
    }
    if (reason.empty())
        return true;
    if (state.QuietMode)
        state.keptPackages.push_back(name + ": " + reason);
    else
        context.user.Tell(reason + advice, MessageIcon::Exclamation);
    return false;
}

// The gauges that came with the aircraft go, while the record that knows them is there. False, after a word, when they
// could not, and then nothing has changed.
bool RemoveGauges(CommandContext& context, CommandState& state, const LoadedPackage& package, const std::string& name,
                  const std::string& directory, const SimUsage* usage) {
    // Where no file is left an earlier removal has come to its end, but for the directory.
    if (!IsLinkedDirectory(context, directory) && WalkTree(context.files, directory).files.empty())
        return true;
    const auto remaining = TakeOutGauges(context, package, directory, usage);
    if (remaining) {
        if (!usage)
            TellRemainingGauges(context, *remaining);
        else // a batch does not say it for each package
            state.remainingGauges.insert(state.remainingGauges.end(), remaining->begin(), remaining->end());
        return true;
    }
    const Status status = remaining.status();
    const std::string reason = status.path + " could not be written (" + DescribeFault(status.fault) + ")";
    if (state.QuietMode)
        state.keptPackages.push_back(name + ": " + reason);
    else
        context.user.Tell(
            "The package was not removed.  Another aircraft has gauges of it, which were to be handed on.\r\n\r\n" +
                reason + ".\r\n\r\n" + NextStep(status.fault),
            MessageIcon::Exclamation);
    return false;
}

} // namespace

void RemoveFromSim(CommandContext& context, CommandState& state, const LoadedPackage& package, SimUsage* usage) {
    const std::string name = CurrentPackageName(context.window);
    const std::string installedName = FindSimAircraftDirectory(context.files, context.locations, name);
    if (installedName.empty()) {
        if (!state.QuietMode)
            context.user.Tell("This package is not currently installed in Flight Simulator.", MessageIcon::Information);
        return;
    }
    if (!state.QuietMode &&
        !context.user.AskYesNo("Are you sure you want to remove this package from the Flight Simulator directory?"))
        return;

    const std::string directory = context.locations.MsfsDir + "aircraft\\" + installedName + "\\";
    if (!IsFree(context, state, name, directory, "panel", usage) ||
        !IsFree(context, state, name, directory, "sound", usage))
        return;
    if (!HasOtherCopy(context, state, package, name, directory) ||
        !ConfirmLosses(context, state, package, name, directory))
        return;

    // Cut off anywhere, the removal is finished by the next one: the record goes last.
    if (!RemoveGauges(context, state, package, name, directory, usage))
        return;
    const Status status = DeleteDirectory(context, directory, directory + std::string(InstallRecordFile));
    if (status && usage)
        usage->Forget(directory);
    context.window.RefreshPackageList();
    if (!status && state.QuietMode)
        state.keptPackages.push_back(name + ": " + DescribeRemaining(status));
    else if (!status)
        TellIncompleteRemoval(context, status);
    else if (!state.QuietMode)
        context.user.Tell("Done.");
    context.window.RefreshPackageDisplay();
}

} // namespace korvadex
