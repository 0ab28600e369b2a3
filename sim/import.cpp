#include "sim/import.h"

#include "package/config_readers.h"
#include "package/file_primitives.h"
#include "package/name_list.h"
#include "package/progress.h"
#include "package/scratch.h"
#include "package/walk.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"
#include "sim/install_record.h"
#include "sim/shared_files.h"

#include <algorithm>
#include <set>

namespace korvadex {

namespace {

bool HasAircraftParts(const CommandContext& context, const std::string& directory) {
    return HasSubdirectory(context.files, directory + "\\", "panel") ||
           HasSubdirectory(context.files, directory + "\\", "model");
}

// One aircraft of the simulator on its way to Staging.
class Import {
  public:
    Import(CommandContext& command, const std::string& aircraft)
        : context(command), files(command.files), name(aircraft),
          source(command.locations.Aircraft() + aircraft + "\\"), staging(command.locations.StagingDir) {}

    // False, after a message, when nothing was copied. wasImported: Staging holds an earlier import of it.
    bool Run(bool wasImported) {
        const Tree tree = WalkTree(files, source);
        if (!CheckListing(tree))
            return false;
        const bool clears =
            wasImported &&
            context.user.AskYesNo(
                "Staging still holds what an earlier import of " + name +
                " has brought.  Should Staging be cleared first?  "
                "(Select 'No' to keep what you have added: then only the files that the aircraft has are replaced.)");
        if (!CheckRoom(tree) || (clears && !ClearStaging()))
            return false;
        WriteNameFile();
        CopyFiles(tree);
        // A name file that came along from an earlier pass of the same aircraft through the Hangar.
        DeleteFileForced(files, staging + "Documentation\\" + std::string(ImportNameFile));
        static_cast<void>(files.CreateDirectory(staging + "gauges"));
        if (!notCopied.empty())
            context.user.Tell(
                "The import is not complete.  The following files could not be copied to Staging ...\r\n\r\n" +
                    ListNames(notCopied) + "\r\n\r\nThe aircraft in Flight Simulator is as it was.",
                MessageIcon::Exclamation);
        return true;
    }

  private:
    bool Refuse(const std::string& reason) {
        context.user.Tell(reason + "\r\n\r\nNothing was imported.", MessageIcon::Exclamation);
        return false;
    }

    bool CheckListing(const Tree& tree) {
        if (IsOnePlace(files, source, staging))
            return Refuse(source + " leads to Staging itself.  Please move the aircraft out of Staging first.");
        const FileList list = CollectFiles(tree, "", FileMode::All, context.limits);
        const ListCut cut = tree.isLevelCut ? ListCut::Level : list.cut;
        if (cut != ListCut::None)
            return Refuse(DescribeCut(cut, context.limits));
        if (!tree.unreadable.empty())
            return Refuse("The directory " + tree.unreadable.front() + " could not be read.");
        return true;
    }

    // What is cleared from Staging is kept, and makes no room.
    bool CheckRoom(const Tree& tree) {
        std::uint64_t needed = 0;
        for (const FileEntry& file : tree.files)
            needed += file.info.size;
        if (const auto space = files.MakeRoom(staging, needed); space && *space < needed)
            return Refuse("There is not enough room for the aircraft in Staging.  " + NextStep(FileFault::DiskFull));
        return true;
    }

    bool ClearStaging() {
        const auto remaining = DeleteTree(context, staging);
        if (!remaining.empty())
            TellDeleted(context, remaining);
        return remaining.empty();
    }

    // It only proposes a name for the package: one that is not of this aircraft must not stay.
    void WriteNameFile() {
        const std::string path = staging + std::string(ImportNameFile);
        if (!RewriteLines(files, context.locations, path, {name}))
            DeleteFileForced(files, path);
    }

    // Each file is whole, and on the disk, before it bears its name in Staging.
    void CopyFiles(const Tree& tree) {
        const auto scratch = MakeScratchName(files, context.locations, staging + name);
        const std::string aside = scratch ? AddBackslash(*scratch) : "";
        const ScratchScope scope(files, scratch ? *scratch : "");
        std::vector<std::string> relatives, copies;
        ProgressBar progress(context.display, static_cast<int>(tree.files.size()));
        for (const FileEntry& file : tree.files) {
            progress.Step();
            const std::string relative = file.path.substr(source.size());
            if (EqualNoCase(relative, ImportNameFile) || IsInstallRecord(FoldCase(relative)))
                continue;
            if (Status status = scratch ? CopyAside(file, relative, aside) : scratch.status(); !status) {
                NoteNotCopied(relative, status);
                continue;
            }
            relatives.push_back(relative);
            copies.push_back(aside + relative);
        }
        const std::vector<Status> flushed = files.Flush(copies);
        for (std::size_t i = 0; i < copies.size(); ++i) {
            if (Status status = flushed[i] ? PutInPlace(copies[i], relatives[i]) : flushed[i]; !status)
                NoteNotCopied(relatives[i], status);
        }
        if (Status status = FlushFiles(files, {directories.begin(), directories.end()}); !status)
            NoteNotCopied(status.path, status);
    }

    void NoteNotCopied(const std::string& relative, const Status& status) {
        notCopied.push_back(relative + " (" + DescribeFault(status) + ")");
    }

    Status CopyAside(const FileEntry& file, const std::string& relative, const std::string& aside) {
        if (file.info.kind == EntryKind::Link)
            return {FileFault::IsLink, file.path, 0};
        const auto there = files.Info(staging + relative);
        if (there && there->kind != EntryKind::File)
            return {FileFault::Exists, staging + relative, 0};
        MakeDirectoriesOf(aside + relative, ParentDirectory(WithoutBackslash(aside)).size());
        Status status = files.Copy(file.path, aside + relative);
        if (status)
            files.BeginFlush(aside + relative);
        return status;
    }

    Status PutInPlace(const std::string& copy, const std::string& relative) {
        const std::string target = staging + relative;
        MakeDirectoriesOf(target, staging.size());
        for (std::string path = target; path.size() > staging.size();) {
            path = WithoutBackslash(ParentDirectory(path));
            directories.insert(path);
        }
        Status status = files.Rename(copy, target);
        if (status.fault != FileFault::Exists || SameBytes(files, copy, target))
            return status.fault == FileFault::Exists ? Status{} : status;
        const auto there = files.Info(target);
        static_cast<void>(files.ClearAttributes(target));
        status = files.Replace(copy, target);
        if (!status && there && there->readOnly)
            static_cast<void>(files.SetReadOnly(target, true));
        return status;
    }

    // Those below the first letters of the path, which are there.
    void MakeDirectoriesOf(const std::string& path, std::size_t there) {
        for (std::size_t end = path.find('\\', there); end != std::string::npos; end = path.find('\\', end + 1))
            static_cast<void>(files.CreateDirectory(path.substr(0, end)));
    }

    CommandContext& context;
    FileSystem& files;
    const std::string name, source, staging;
    std::vector<std::string> notCopied;
    std::set<std::string> directories; // that files have come into
};

} // namespace

std::vector<std::string> ImportableAircraft(CommandContext& context) {
    const std::string& hangar = context.locations.HangarDir;
    const std::string aircraft = context.locations.Aircraft();
    const std::vector<std::string> categories = SubdirectoryNames(context.files, hangar);
    const auto isInHangar = [&](const std::string& name) {
        return std::ranges::any_of(categories, [&](const std::string& category) {
            return HasSubdirectory(context.files, hangar + category + "\\", name) ||
                   HasSubdirectory(context.files, hangar + category + "\\", UnderscoresToSpaces(name));
        });
    };
    std::vector<std::string> names = SubdirectoryNames(context.files, aircraft);
    std::erase_if(names, [&](const std::string& name) {
        return !HasAircraftParts(context, aircraft + name) || isInHangar(name);
    });
    return names;
}

bool ImportIntoEmptyStaging(CommandContext& context, const std::string& aircraft) {
    return Import(context, aircraft).Run(false);
}

std::string ImportFromSim(CommandContext& context, std::string_view before) {
    std::string chosen;
    const std::vector<std::string> names = ImportableAircraft(context);
    const auto accept = [&](int row) {
        if (row < 0 || row >= std::ssize(names)) {
            context.user.Tell("Please pick a package by selecting it and selecting 'OK' or by double clicking it.");
            return false;
        }
        chosen = names[static_cast<std::size_t>(row)];
        return true;
    };
    context.user.ShowMSFSImport({.names = names, .accept = accept});
    if (chosen.empty())
        return "";
    const bool wasImported =
        !StagingIsEmpty(context.files, context.locations) &&
        (EqualNoCase(chosen, before) || EqualNoCase(chosen, ReadImportName(context.files, context.locations)));
    return Import(context, chosen).Run(wasImported) ? chosen : "";
}

} // namespace korvadex
