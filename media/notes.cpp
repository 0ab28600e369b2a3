#include "media/notes.h"

#include "package/file_primitives.h"
#include "package/opening.h"
#include "platform/windows_path.h"

namespace korvadex {

namespace {

bool IsPackageSelected(CommandContext& context, const LoadedPackage& package) {
    if (package.isStaging || !package.ref.IsNone())
        return true;
    context.user.Tell("Please select a package first.", MessageIcon::Exclamation);
    return false;
}

// The notes file of the selected package; "" after a message when there is none.
std::string ListedNotes(CommandContext& context, const LoadedPackage& package) {
    if (!IsPackageSelected(context, package))
        return "";
    std::string path = package.FindComponentFile(NotesName);
    if (path.empty())
        context.user.Tell("No notes exist for this package.", MessageIcon::Exclamation);
    return path;
}

// An editor on a file that cannot be there would lose what is typed into it, and so would one on a file behind a
// link: it is not listed, nor copied with the package.
Status MakeNotes(FileSystem& files, const std::string& directory, const std::string& path) {
    if (const auto made = EnsureRealDirectory(files, directory); !made)
        return made.status();
    auto file = files.CreateNew(path);
    if (file)
        return (*file)->Close(true);
    const auto there = files.Info(path);
    return there && there->kind == EntryKind::File ? Status{} : file.status();
}

} // namespace

Changes CreateNotes(CommandContext& context, const LoadedPackage& package) {
    if (!IsPackageSelected(context, package))
        return {};
    if (!package.FindComponentFile(NotesName).empty()) {
        context.user.Tell("Notes already exist for this package.", MessageIcon::Exclamation);
        return {};
    }
    const std::string directory = package.path + "Documentation";
    const std::string path = directory + "\\" + std::string(NotesName);
    if (const Status status = MakeNotes(context.files, directory, path); !status) {
        context.user.Tell(
            "The notes file " + path + " could not be created (" + DescribeFault(status) +
                ").  Please make sure that the directory can be written and that the disk has room, and try again.",
            MessageIcon::Exclamation);
        return {};
    }
    OpenInEditor(context, path);
    return {.package = true};
}

Changes ReadNotes(CommandContext& context, const LoadedPackage& package) {
    if (const std::string path = ListedNotes(context, package); !path.empty())
        OpenInEditor(context, path);
    return {};
}

Changes DeleteNotes(CommandContext& context, const LoadedPackage& package) {
    const std::string path = ListedNotes(context, package);
    if (path.empty())
        return {};
    if (!DeleteFileForced(context.files, path))
        context.user.Tell("The notes file " + path +
                              " could not be deleted.  Please close the program that uses it and try again.",
                          MessageIcon::Exclamation);
    // The directory may have been made for the notes alone: left empty, it would be a file that Staging contains.
    const std::string directory = WithoutBackslash(ParentDirectory(path));
    if (EqualNoCase(directory, package.path + "Documentation"))
        RemoveEmptyDirectory(context.files, directory);
    return {.package = true};
}

void ExplorePackage(CommandContext& context, const LoadedPackage& package) {
    if (IsInstalled(context.files, context.locations, package.ref))
        context.user.Tell(
            "WARNING:  This package is currently installed in MSFS.  "
            "Any manual changes to this package may prevent unused gauges from being removed when you choose to "
            "remove the package from MSFS.",
            MessageIcon::Exclamation);
    const bool isNone = !package.isStaging && package.ref.IsNone();
    OpenInFileManager(context,
                      isNone ? context.locations.HangarDir + AddBackslash(package.ref.category) : package.path);
}

} // namespace korvadex
