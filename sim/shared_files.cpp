#include "sim/shared_files.h"

#include "archive/in_place.h"
#include "archive/unzip_code.h"
#include "package/file_primitives.h"
#include "package/scratch.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <set>

namespace korvadex {

Status UnpackCopy(CommandContext& context, const std::string& path, const std::string& source) {
    if (!BeginsLikeArchive(context.files, path) || UnzipFileInPlace(context, path) == UnzipCode::Ok)
        return {};
    const int code = UnzipFileInPlace(context, path, true);
    if (code == UnzipCode::Ok) // sound, but there was no room for what is in it: the user was told
        return {FileFault::Failed, source};
    // A damaged file is as damaged in the Hangar; the rest of the package may be fine.
    if (code != UnzipCode::NotAnArchive)
        context.user.Tell("There was a problem unzipping file " + source + ".  It may be corrupt. (code " +
                              std::to_string(code) + ")",
                          MessageIcon::Exclamation);
    return {};
}

bool HoldsUnpackedBytes(CommandContext& context, const std::string& packageFile, const std::string& file) {
    if (SameBytes(context.files, packageFile, file))
        return true;
    if (!BeginsLikeArchive(context.files, packageFile))
        return false;
    // Only a copy may be unpacked, and only under the file's own name.
    const auto scratch = MakeScratchName(context.files, context.locations, file);
    if (!scratch || !context.files.CreateDirectory(*scratch))
        return false;
    const std::string copy = AddBackslash(*scratch) + LastPathComponent(packageFile);
    const bool isSame = context.files.Copy(packageFile, copy) && UnzipFileInPlace(context, copy) == UnzipCode::Ok &&
                        SameBytes(context.files, copy, file);
    ReleaseScratch(context.files, *scratch);
    return isSame;
}

Status SharedFiles::EnsureDirectory(const std::string& directory) {
    const auto isNew = korvadex::EnsureDirectory(context.files, directory);
    if (isNew && *isNew)
        directories.push_back(directory);
    return isNew.status();
}

bool SharedFiles::IsMissing(const std::string& source, const std::string& target) const {
    const auto info = context.files.Info(target);
    if (!info)
        return info.fault() == FileFault::NotFound;
    const auto own = context.files.Info(source);
    return info->kind == EntryKind::File && info->size == 0 && own &&
           UnpackedSize(context.files, FileEntry(source, *own)) > 0;
}

Status SharedFiles::Place(const std::string& directory, const std::vector<std::string>& sources,
                          std::string_view packedEnding, const std::function<void()>& afterEach) {
    std::vector<std::string> missing;
    std::set<std::string> names;
    for (const std::string& source : sources) {
        const std::string name = LastPathComponent(source);
        if (IsMissing(source, directory + name) && names.insert(FoldCase(name)).second)
            missing.push_back(source);
        else if (afterEach)
            afterEach();
    }
    if (missing.empty())
        return {};
    const auto scratch =
        MakeScratchName(context.files, context.locations, directory + LastPathComponent(missing.front()));
    if (!scratch)
        return scratch.status();
    const ScratchScope scope(context.files, *scratch);
    const Status status = context.files.CreateDirectory(*scratch);
    return status ? PlaceThrough(AddBackslash(*scratch), directory, missing, packedEnding, afterEach) : status;
}

Status SharedFiles::PlaceThrough(const std::string& scratch, const std::string& directory,
                                 const std::vector<std::string>& sources, std::string_view packedEnding,
                                 const std::function<void()>& afterEach) {
    for (const std::string& source : sources) {
        const std::string copy = scratch + LastPathComponent(source);
        if (Status status = context.files.Copy(source, copy); !status)
            return status;
        if (!packedEnding.empty() && EndsWithNoCase(source, packedEnding)) {
            if (Status status = UnpackCopy(context, copy, source); !status)
                return status;
        }
        context.files.BeginFlush(copy);
        if (afterEach)
            afterEach();
    }
    std::vector<Replacement> renames;
    for (const std::string& source : sources) {
        const std::string name = LastPathComponent(source);
        renames.push_back({scratch + name, directory + name});
    }
    const auto outcomes = context.files.RenameAll(renames);
    Status first;
    for (std::size_t i = 0; i < renames.size(); ++i) {
        const Status status = Settle(renames[i].from, renames[i].to, outcomes[i]);
        first = first ? status : first;
    }
    return first;
}

Status SharedFiles::Settle(const std::string& copy, const std::string& target, Status status) {
    if (status.fault == FileFault::Exists) {
        if (!IsMissing(copy, target))
            return {}; // somebody has put one there meanwhile
        static_cast<void>(context.files.ClearAttributes(target));
        status = context.files.Replace(copy, target);
        if (status)
            replaced.push_back(target);
    }
    if (status)
        placed.push_back(target);
    return status;
}

std::vector<std::string> SharedFiles::PathsToFlush() const {
    std::vector<std::string> paths = placed;
    std::set<std::string> parents;
    for (const auto* made : {&placed, &directories}) {
        for (const std::string& path : *made)
            parents.insert(WithoutBackslash(ParentDirectory(path)));
    }
    paths.insert(paths.end(), parents.begin(), parents.end());
    return paths;
}

void SharedFiles::Rollback() {
    for (auto path = placed.rbegin(); path != placed.rend(); ++path)
        DeleteFileForced(context.files, *path);
    for (const std::string& path : replaced) {
        if (auto file = context.files.CreateNew(path))
            static_cast<void>((*file)->Close(false));
    }
    // One that is not empty holds something of another's by now and stays.
    for (auto directory = directories.rbegin(); directory != directories.rend(); ++directory)
        (void)context.files.RemoveDirectory(*directory);
    placed.clear();
    replaced.clear();
    directories.clear();
}

std::string NextStep(FileFault fault) {
    switch (fault) {
    case FileFault::DiskFull:
        return "Please free some space on the disk and try again.";
    case FileFault::InUse:
        return "Please close the program that uses it (Flight Simulator, perhaps) and try again.";
    case FileFault::Denied:
    case FileFault::ReadOnlyDisk:
        return "Please make sure that you may write there and try again.";
    case FileFault::NotFound:
        return "Please have its files looked up anew (F5) and try again.";
    case FileFault::BadName:
        return "Please give the file a name that the disk can store and try again.";
    default:
        return "Please check the file and the disk and try again.";
    }
}

void TellCopyFailed(CommandContext& context, const Status& failure) {
    context.user.Tell("The package could not be copied, and nothing of it was left behind.\r\n\r\n" + failure.path +
                          "\r\n\r\n" + "The reason: " + DescribeFault(failure) + ".  " + NextStep(failure.fault),
                      MessageIcon::Exclamation);
}

} // namespace korvadex
