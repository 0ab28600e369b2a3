#include "sim/install.h"

#include "archive/in_place.h"
#include "package/file_primitives.h"
#include "package/walk.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"
#include "sim/alias_users.h"
#include "sim/copy_plan.h"
#include "sim/delete_directory.h"
#include "sim/found_gauges.h"
#include "sim/gauges.h"
#include "sim/name_list.h"
#include "sim/shared_files.h"
#include "sim/sim_usage.h"

#include <map>

namespace korvadex {

namespace {

// True when an aircraft of the simulator other than the package's own uses its panel (kind "panel") or sound.
bool IsUsedInSim(CommandContext& context, const std::string& name, const std::string& directory,
                 const std::string& kind, const SimUsage* usage) {
    AliasSearch search;
    search.root = context.locations.MsfsDir + "aircraft\\";
    search.fileName = kind + ".cfg";
    search.texts = AliasTexts(name, kind);
    search.showList = true;
    search.leaveOut = directory;
    if (!usage)
        return FindAliasUsers(context, search);
    const std::vector<std::string> users = usage->AliasUsers(name, kind, directory);
    ShowAliasUsers(context, search.root, search.fileName, users);
    return !users.empty();
}

void RemoveGauges(CommandContext& context, CommandState& state, std::vector<FileEntry> gauges,
                  const SimUsage* usage) {
    const std::string& root = context.locations.MsfsDir;
    if (gauges.empty())
        return;
    LoadedPackage package;
    package.ComponentFiles[Gauges] = std::move(gauges);
    if (!usage) {
        PlaceGauges(context, package, root, GaugeMode::Remove);
    } else if (context.files.IsDirectory(root + "gauges")) { // a batch does not say it for each package
        const std::vector<std::string> remaining = TakeOutGauges(
            context, package, root, [&](const std::string& gauge) { return usage->IsGaugeUsed(gauge); });
        state.remainingGauges.insert(state.remainingGauges.end(), remaining.begin(), remaining.end());
    }
}

// The installation adapts the alias line of such a file to the names of the simulator, and nothing else.
bool IsRewrittenAlias(CommandContext& context, const LoadedPackage& package, const FileEntry& installed,
                      const std::string& source) {
    const std::string& alias =
        installed.key == "panel.cfg" ? package.PackagePanelAlias : package.PackageSoundAlias;
    if (alias.empty() || (installed.key != "panel.cfg" && installed.key != "sound.cfg"))
        return false;
    const auto lines = ReadLines(context.files, installed.path), own = ReadLines(context.files, source);
    return lines && own && *lines == WithAlias(*own, SpacesToUnderscores(alias));
}

// A file keeps its time through the installation: one of another time or size is compared byte by byte.
bool IsInPackage(CommandContext& context, const FileEntry& installed, const std::string& source) {
    const auto info = context.files.Info(source);
    if (!info || installed.info.kind != EntryKind::File)
        return false;
    const auto hasSize = [&] {
        return info->size == installed.info.size ||
               UnpackedSize(context.files, FileEntry(source, *info)) == installed.info.size;
    };
    return (info->time == installed.info.time && hasSize()) ||
           HoldsUnpackedBytes(context, source, installed.path);
}

// Files of the installed directory that an install of the package would not have put there, or that were
// changed since: a simulator's own aircraft may bear the name of a package, and people edit what they fly.
std::vector<std::string> FilesOfOthers(CommandContext& context, const LoadedPackage& package,
                                       const std::string& directory) {
    if (IsLinkedDirectory(context, directory))
        return {};
    std::map<std::string, std::string> sources;
    for (const PlannedFile& file : PlanCopy(context, package, CopyRoot::Msfs).files)
        sources.emplace(FoldCase(file.relative), file.source);
    sources.emplace(FoldCase(FoundGaugesFile), directory + std::string(FoundGaugesFile)); // its own
    std::vector<std::string> others;
    const Tree installed = WalkTree(context.files, directory);
    for (const FileEntry& file : installed.files) {
        const std::string relative = file.path.substr(directory.size());
        const auto source = sources.find(FoldCase(relative));
        if (source == sources.end())
            others.push_back(relative);
        else if (!IsInPackage(context, file, source->second) &&
                 !IsRewrittenAlias(context, package, file, source->second))
            others.push_back(relative + "  (changed)");
    }
    if (installed.isUnreadable)
        others.push_back(installed.unreadable.substr(directory.size()) +
                         " (a directory that could not be read)");
    return others;
}

// Packages are asked about, or in a batch kept and named at its end, when removing would lose files that only
// the simulator has. False to keep the package.
bool ConfirmLosses(CommandContext& context, CommandState& state, const LoadedPackage& package,
                   const std::string& name, const std::string& directory) {
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
        state.keptPackages.push_back(name + ": " + directory +
                                     " holds files that the package doesn't have, such as " + others.front());
        return false;
    }
    return context.user.AskYesNo(
        directory + " holds files that this package doesn't have ...\r\n\r\n" + ListNames(others) +
            "\r\n\r\nThey will be lost.  Do you want to remove the package nevertheless?",
        MessageIcon::Exclamation);
}

} // namespace

void RemoveFromSim(CommandContext& context, CommandState& state, const LoadedPackage& package,
                   SimUsage* usage) {
    if (usage && !usage->IsComplete())
        usage = nullptr;
    const std::string name = CurrentPackageName(context.window);
    const std::string installedName = FindSimAircraftDirectory(context.files, context.locations, name);
    if (installedName.empty()) {
        if (!state.QuietMode)
            context.user.Tell("This package is not currently installed in Flight Simulator.",
                              MessageIcon::Information);
        return;
    }
    if (!state.QuietMode &&
        !context.user.AskYesNo("Are you sure you want to remove this package from the Flight "
                               "Simulator directory?"))
        return;

    const std::string directory = context.locations.MsfsDir + "aircraft\\" + installedName + "\\";
    if (IsUsedInSim(context, name, directory, "panel", usage)) {
        context.user.Tell(
            "Cannot remove.  The panel in this package is used (via alias) by an aircraft(s) in the Flight "
            "Simulator directory as shown.",
            MessageIcon::Information);
        return;
    }
    if (IsUsedInSim(context, name, directory, "sound", usage)) {
        context.user.Tell(
            "Cannot remove.  This sound in this package is used (via alias) by an aircraft(s) in the Flight "
            "Simulator directory as shown.",
            MessageIcon::Information);
        return;
    }
    if (!ConfirmLosses(context, state, package, name, directory))
        return;

    const std::vector<std::string> foundGauges = ReadFoundGauges(context.files, directory);
    const auto status = DeleteDirectory(context, directory);
    if (!status)
        return;
    // Gauges go last: the package's own panel.cfg would keep them alive.
    if (*status && usage)
        usage->Forget(directory);
    if (*status)
        RemoveGauges(context, state, GaugesOtherThan(package, foundGauges), usage);
    else
        static_cast<void>(NoteFoundGauges(context, directory, foundGauges)); // for the next attempt
    context.window.RefreshPackageList();
    if (!*status && state.QuietMode)
        state.keptPackages.push_back(name + ": " + DescribeRemaining(*status));
    else if (!*status)
        TellIncompleteRemoval(context, *status);
    else if (!state.QuietMode)
        context.user.Tell("Done.");
    context.window.RefreshPackageDisplay();
}

} // namespace korvadex
