#include "sim/copy_package.h"

#include "package/file_primitives.h"
#include "package/meg.h"
#include "package/name_list.h"
#include "package/progress.h"
#include "package/scratch.h"
#include "platform/windows_path.h"
#include "sim/copy_plan.h"
#include "sim/gauges.h"
#include "sim/install_record.h"
#include "sim/shared_files.h"

#include <algorithm>
#include <optional>
#include <set>
#include <tuple>

namespace korvadex {

namespace {

using Adaption = std::function<void(const std::string& directory)>;

bool Refuse(CommandContext& context, const std::string& reason) {
    context.user.Tell(reason + "\r\n\r\nNothing was copied.", MessageIcon::Exclamation);
    return false;
}

// One run of the copy routine. Everything is made under scratch names first: the new directory appears as the
// very last step, so that a run that was stopped never leaves an aircraft that looks installed and is not.
class PackageCopy {
  public:
    PackageCopy(CommandContext& command, const LoadedPackage& loaded, std::string copyRoot, CopyRoot rootKind,
                std::string newDirectory, const Adaption& adaption)
        : context(command), package(loaded), root(std::move(copyRoot)), kind(rootKind),
          destination(std::move(newDirectory)), adapt(adaption), added(command) {}

    bool Run() {
        if (kind == CopyRoot::Msfs && !CheckGaugesDirectory(context, root))
            return false;
        if (!CheckCopySource(context, package) || !CheckDestination())
            return false;
        plan = PlanCopy(context, package, kind);
        if (!CheckStagedGauges() || !CheckFreeSpace())
            return false;
        if (!CopyAll()) {
            added.Rollback();
            return false;
        }
        TellLeftBehind();
        return true;
    }

  private:
    bool CheckDestination() {
        const Status there = context.files.Info(WithoutBackslash(destination)).status();
        if (there.fault == FileFault::NotFound)
            return true;
        if (there)
            return Refuse(destination + " exists already.  Please remove or rename it first.");
        return Refuse(destination + " cannot be made.\r\n\r\nThe reason: " + DescribeFault(there) + ".  " +
                      NextStep(there.fault));
    }

    // Gauges never replace others. In the simulator that is as it should be; in Staging, where this package
    // is to go on living, it would lose the gauge.
    bool CheckStagedGauges() {
        if (kind != CopyRoot::Staging)
            return true;
        for (const FileEntry& gauge : package.ComponentFiles[Gauges]) {
            const std::string staged = root + "gauges\\" + LastPathComponent(gauge.path);
            if (context.files.Info(staged).fault() != FileFault::NotFound &&
                !HoldsUnpackedBytes(context, gauge.path, staged))
                return Refuse("Staging already contains another gauge of the same name:\r\n\r\n" + staged +
                              "\r\n\r\nPlease clear Staging first.");
        }
        return true;
    }

    bool CheckFreeSpace() {
        const auto free = context.files.MakeRoom(root, plan.bytes);
        if (!free || *free >= plan.bytes)
            return true;
        return Refuse("There is not enough room for the package: it needs " +
                      std::to_string(plan.bytes / BytesPerMeg + 1) + " Meg and the disk has " +
                      std::to_string(*free / BytesPerMeg) + " Meg left.  " + NextStep(FileFault::DiskFull));
    }

    bool Refuse(const std::string& reason) { return korvadex::Refuse(context, reason); }

    bool CopyAll() {
        ProgressBar progress(context.display, GroupCount - 1);
        if (const Status status = MakeDirectories(); !status)
            return Fail(status);
        const auto scratch = MakeScratchName(context.files, context.locations, destination);
        if (!scratch)
            return Fail(scratch.status());
        const ScratchScope scope(context.files, *scratch);
        Status status = FillDirectory(AddBackslash(*scratch), progress);
        bool isDone = status ? PlaceShared(status) : false;
        if (isDone) {
            status = Complete(AddBackslash(*scratch));
            if (status)
                status = PutInPlace(*scratch);
            isDone = bool(status);
        }
        return isDone || Fail(status);
    }

    // A status without a fault stands for a failure that the user has been told of.
    bool Fail(const Status& status) {
        if (!status)
            TellCopyFailed(context, status);
        return false;
    }

    Status MakeDirectories() {
        std::vector<std::string> directories;
        if (kind == CopyRoot::Staging)
            directories = {root + "aircraft", root + "gauges", root + "sound"};
        directories.push_back(WithoutBackslash(ParentDirectory(WithoutBackslash(destination))));
        for (const std::string& directory : directories) {
            if (Status status = added.EnsureDirectory(directory); !status)
                return status;
        }
        return {};
    }

    Status FillDirectory(const std::string& scratch, ProgressBar& progress) {
        if (Status status = context.files.CreateDirectory(WithoutBackslash(scratch)); !status)
            return status;
        for (const std::string& directory : plan.directories) {
            if (Status status = context.files.CreateDirectory(scratch + directory); !status)
                return status;
        }
        int group = 0;
        for (const PlannedFile& file : plan.files) {
            for (; group < file.group; ++group)
                progress.Set(group);
            progress.Touch();
            const std::string target = scratch + file.relative;
            Status status = context.files.Copy(file.source, target);
            if (status && kind != CopyRoot::Hangar && EndsWithNoCase(target, ".bmp"))
                status = UnpackCopy(context, target, file.source);
            if (!status)
                return {status.fault, file.source, status.nativeCode};
            context.files.BeginFlush(target);
        }
        for (; group < GroupCount; ++group)
            progress.Set(group);
        if (adapt)
            adapt(scratch);
        return {};
    }

    // What the copy was made of may be deleted as soon as it is there, and what the disk does not have yet would be
    // lost with the power.
    Status Complete(const std::string& directory) {
        const Tree tree = WalkTree(context.files, directory);
        if (kind == CopyRoot::Msfs) {
            if (Status status = Record(tree); !status)
                return status;
        }
        std::vector<std::string> paths = added.PathsToFlush();
        paths.insert(paths.end(), tree.directories.begin(), tree.directories.end());
        for (const FileEntry& file : tree.files)
            paths.push_back(file.path);
        paths.push_back(WithoutBackslash(directory));
        return FlushFiles(context.files, paths);
    }

    Status Record(const Tree& tree) {
        InstallRecord record{package.ref.Text(), {}};
        for (const FileEntry& file : tree.files) {
            auto placed = RecordFile(context.files, AircraftKind, file.path.substr(tree.root.size()), file.path);
            if (!placed)
                return placed.status();
            record.files.push_back(std::move(*placed));
        }
        std::vector<std::string> gauges;
        for (const FileEntry& gauge : package.ComponentFiles[Gauges])
            gauges.push_back(gauge.path);
        const std::set<std::string> placed(added.Placed().begin(), added.Placed().end());
        const std::tuple<std::string_view, const char*, const std::vector<std::string>*> shared[] = {
            {GaugeKind, "gauges\\", &gauges},
            {SoundKind, "sound\\", &plan.sounds},
            {EffectKind, "effects\\", &plan.effects},
            {ModuleKind, "modules\\", &plan.modules}};
        for (const auto& [sharedKind, directory, sources] : shared) {
            for (const std::string& source : *sources) {
                const std::string name = LastPathComponent(source);
                if (record.Find(sharedKind, name))
                    continue;
                RecordedFile file{.kind = std::string(sharedKind), .name = name};
                if (const std::string path = root + directory + name; placed.contains(path)) {
                    auto made = RecordFile(context.files, sharedKind, name, path);
                    if (!made)
                        return made.status();
                    file = std::move(*made);
                }
                record.files.push_back(std::move(file));
            }
        }
        return WriteInstallRecord(context, tree.root, record);
    }

    Status PutInPlace(const std::string& scratch) {
        const std::string directory = WithoutBackslash(destination);
        Status status = context.files.Rename(scratch, directory);
        if (!status)
            return {status.fault, destination, status.nativeCode};
        // Looked at only here, where nobody else clears anything up any more.
        status = CheckComplete(destination);
        if (status)
            status = FlushFiles(context.files, {WithoutBackslash(ParentDirectory(directory))});
        if (!status)
            static_cast<void>(context.files.Rename(directory, scratch));
        return status;
    }

    // A second Korvadex that starts meanwhile cleans up what it takes for the remains of an earlier run.
    Status CheckComplete(const std::string& directory) {
        std::set<std::string> copied;
        for (const FileEntry& file : WalkTree(context.files, directory).files)
            copied.insert(FoldCase(file.path.substr(directory.size())));
        const auto lost = std::ranges::find_if(
            plan.files, [&](const PlannedFile& file) { return !copied.contains(FoldCase(file.relative)); });
        return lost == plan.files.end() ? Status{} : Status{FileFault::Failed, lost->source};
    }

    // What lies outside the new directory. False, with the status without a fault where the user was told.
    bool PlaceShared(Status& status) {
        if (kind == CopyRoot::Hangar)
            return true;
        if (!PlaceBeside(status, "sound\\", plan.sounds))
            return false;
        if (!InstallGauges(context, package.ComponentFiles[Gauges], root, added))
            return false;
        if (kind == CopyRoot::Staging)
            return true;
        // A simulator without an effects directory has no use for effects.
        return (!context.files.IsDirectory(root + "effects") || PlaceBeside(status, "effects\\", plan.effects)) &&
               PlaceBeside(status, "modules\\", plan.modules);
    }

    bool PlaceBeside(Status& status, const std::string& directory, const std::vector<std::string>& sources) {
        if (!sources.empty())
            status = added.EnsureDirectory(WithoutBackslash(root + directory));
        if (status)
            status = added.Place(root + directory, sources);
        return bool(status);
    }

    void TellLeftBehind() {
        if (plan.leftBehind.empty())
            return;
        context.user.Tell("The following gauge files aren't used by the panel of this package\r\n"
                          "and were therefore not copied to the Hangar ...\r\n\r\n" +
                              ListNames(plan.leftBehind),
                          MessageIcon::Information);
    }

    CommandContext& context;
    const LoadedPackage& package;
    const std::string root;
    const CopyRoot kind;
    const std::string destination;
    const Adaption& adapt;
    SharedFiles added;
    CopyPlan plan;
};

// Where a location keeps its aircraft, or its packages.
std::string DirectoryIn(const Locations& locations, CopyRoot root, std::string_view name) {
    switch (root) {
    case CopyRoot::Hangar:
        return locations.HangarDir + std::string(name) + "\\";
    case CopyRoot::Staging:
        return locations.StagingDir + "aircraft\\" + std::string(name) + "\\";
    case CopyRoot::Msfs:
        break;
    }
    return locations.Aircraft() + SpacesToUnderscores(name) + "\\";
}

const std::string& RootDirectory(const Locations& locations, CopyRoot root) {
    return root == CopyRoot::Hangar    ? locations.HangarDir
           : root == CopyRoot::Staging ? locations.StagingDir
                                       : locations.MsfsDir;
}

} // namespace

bool CheckCopySource(CommandContext& context, const LoadedPackage& package) {
    if (package.cut != ListCut::None)
        return Refuse(context, DescribeCut(package.cut, context.limits));
    if (!package.tree.unreadable.empty())
        return Refuse(context, "The directory " + package.tree.unreadable.front() +
                                   " could not be read, so that the copy would not be complete.");
    const auto link = std::ranges::find_if(package.tree.files,
                                           [](const FileEntry& file) { return file.info.kind == EntryKind::Link; });
    if (link != package.tree.files.end())
        return Refuse(context, "The package contains a link to another place, which cannot be copied:\r\n\r\n" +
                                   link->path + "\r\n\r\nPlease replace it by the files that it stands for.");
    return true;
}

std::optional<std::string> CopyPackageTo(CommandContext& context, const LoadedPackage& package, CopyRoot root,
                                         std::string_view name, const Adaption& adapt) {
    const std::string destination = DirectoryIn(context.locations, root, name);
    PackageCopy copy(context, package, RootDirectory(context.locations, root), root, destination, adapt);
    return copy.Run() ? std::optional(destination) : std::nullopt;
}

std::string GetInstalledFile(const FileSystem& files, const Locations& locations, const std::string& package,
                             const std::string& relative) {
    const std::string name = FindSimAircraftDirectory(files, locations, package);
    if (name.empty())
        return "";
    const std::string path = locations.Aircraft() + name + relative;
    const auto info = files.Info(path);
    return info && info->kind != EntryKind::Directory ? path : "";
}

} // namespace korvadex
