#include "package/file_primitives.h"

#include "package/name_list.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <optional>

namespace korvadex {

namespace {

// A full path below a drive's root that ends in a backslash and has no empty component.
bool IsFullTreePath(std::string_view path) {
    return path.size() >= 5 && path[1] == ':' && path[2] == '\\' && path.back() == '\\' && path[3] != '\\' &&
           path[3] != ' ' && path.find("\\\\") == std::string_view::npos;
}

std::string Explained(const Status& status) {
    return status.path + " (" + DescribeFault(status) + ")";
}

Status DeleteForced(FileSystem& files, const std::string& path) {
    // What is kept keeps its attributes.
    const auto info = files.Info(path);
    const bool isDirectory = info && info->kind == EntryKind::Directory;
    Status status = isDirectory ? Status{FileFault::NotKept, path} : files.SetAside(path);
    if (status.fault == FileFault::NotKept || status.fault == FileFault::OtherVolume) {
        static_cast<void>(files.ClearAttributes(path));
        status = files.Delete(path);
    }
    return status || status.fault == FileFault::NotFound ? Status{} : Status{status.fault, path, status.nativeCode};
}

// Takes it away in one step where this disk keeps what goes; none where it does not, and nothing has happened.
std::optional<Status> TakeAside(FileSystem& files, const std::string& path) {
    const Status status = files.SetAside(path);
    if (status.fault == FileFault::NotKept || status.fault == FileFault::OtherVolume)
        return std::nullopt;
    return status ? status : Status{status.fault, path, status.nativeCode};
}

// The directory and all in it. What no walk for a deletion finds stays, and with it the directories in which it lies.
std::vector<Status> DeleteOneByOne(FileSystem& files, const std::string& directory, const std::string& last) {
    std::vector<Status> remaining;
    const auto deleteFile = [&](const std::string& file) {
        if (const Status status = DeleteForced(files, file); !status)
            remaining.push_back(status);
    };
    const auto isNamed = [&](const std::string& path) {
        return std::ranges::any_of(remaining,
                                   [&](const Status& status) { return status.path.starts_with(AddBackslash(path)); });
    };
    const auto holdsOthers = [&](const std::string& path) {
        const Tree left = WalkTree(files, path, WalkFor::Deletion);
        return !left.files.empty() || !left.unreadable.empty();
    };
    const auto removeDirectory = [&](const std::string& path) {
        const Status status = files.RemoveDirectory(path);
        if (status) // it may have been unreadable, and empty
            std::erase_if(remaining, [&](const Status& left) { return left.path == AddBackslash(path); });
        else if ((status.fault != FileFault::NotFound || path == directory) && // its drive may have gone
                 (status.fault != FileFault::NotEmpty || (!isNamed(path) && holdsOthers(path))))
            remaining.push_back({status.fault, path, status.nativeCode});
    };
    const Tree tree = WalkTree(files, directory, WalkFor::Deletion);
    for (const std::string& path : tree.unreadable)
        remaining.push_back({FileFault::Denied, path});
    for (const FileEntry& file : tree.files) {
        if (!EqualNoCase(file.path, last))
            deleteFile(file.path);
    }
    std::for_each(tree.directories.rbegin(), tree.directories.rend(), removeDirectory);
    if (!last.empty() && remaining.empty())
        deleteFile(last);
    removeDirectory(directory);
    return remaining;
}

// The name of a package's directory among those that the simulator has.
template<class Has>
std::string NameInSim(std::string_view name, Has has) {
    std::string underscored = SpacesToUnderscores(name);
    if (has(underscored))
        return underscored;
    return has(name) ? std::string(name) : "";
}

} // namespace

bool MayBeDeleted(const Locations& locations, const std::string& path) {
    if (!IsFullTreePath(path) || locations.RootOf(path).empty())
        return false;
    if (EqualNoCase(path, locations.HangarDir) || EqualNoCase(path, locations.MsfsDir) ||
        EqualNoCase(path, locations.Aircraft()) || EqualNoCase(path, locations.Gauges()))
        return false;
    const std::string* all[] = {&locations.StagingDir, &locations.HangarDir, &locations.MsfsDir};
    return std::none_of(std::begin(all), std::end(all), [&](const std::string* location) {
        return IsAtOrBelow(*location, path) && !EqualNoCase(*location, path);
    });
}

bool DeleteFileForced(FileSystem& files, const std::string& path) {
    return bool(DeleteForced(files, path));
}

Status FlushFiles(FileSystem& files, const std::vector<std::string>& paths) {
    const auto outcomes = files.Flush(paths);
    const auto failure = std::find_if(outcomes.begin(), outcomes.end(), [](const Status& status) { return !status; });
    return failure == outcomes.end() ? Status{} : *failure;
}

std::string DeleteOrExplain(FileSystem& files, const std::string& path) {
    const Status status = DeleteForced(files, path);
    return status ? "" : Explained(status);
}

std::string DeleteListed(FileSystem& files, const FileEntry& listed) {
    const auto now = files.Info(listed.path);
    if (now && (now->kind != listed.info.kind || now->size != listed.info.size || now->time != listed.info.time))
        return listed.path + " (it was changed by another program meanwhile)";
    return DeleteOrExplain(files, listed.path);
}

bool RemoveEmptyDirectory(FileSystem& files, const std::string& path) {
    const auto entries = files.List(path);
    if (!entries || !std::ranges::all_of(*entries, [](const DirectoryEntry& entry) {
            return entry.info.kind == EntryKind::File && IsFileManagersFile(entry.name);
        }))
        return false;
    if (const auto aside = entries->empty() ? std::nullopt : TakeAside(files, path))
        return bool(*aside);
    for (const auto& entry : *entries)
        DeleteFileForced(files, AddBackslash(path) + entry.name);
    return bool(files.RemoveDirectory(path));
}

std::vector<Status> DeleteAll(FileSystem& files, const std::string& path, const std::string& last) {
    const std::string bare = WithoutBackslash(path);
    const auto info = files.Info(bare);
    if (info.fault() == FileFault::NotFound)
        return {info.status()};
    const auto aside = TakeAside(files, bare);
    if (!aside && info && info->kind == EntryKind::Directory)
        return DeleteOneByOne(files, bare, last);
    const Status status = aside ? *aside : DeleteForced(files, bare);
    return status ? std::vector<Status>() : std::vector{status};
}

std::vector<Status> DeleteContents(FileSystem& files, const std::string& directory) {
    const auto entries = files.List(directory);
    if (!entries)
        return entries.fault() == FileFault::NotFound ? std::vector<Status>() : std::vector{entries.status()};
    std::vector<Status> remaining;
    for (const DirectoryEntry& entry : *entries) {
        const std::string path = AddBackslash(directory) + entry.name;
        if (IsLastingName(entry.name))
            continue;
        if (!entry.isMountPoint)
            std::ranges::copy(DeleteAll(files, path), std::back_inserter(remaining));
        else if (const Status status = files.Delete(path); !status) // what is on another disk is not ours
            remaining.push_back(status);
    }
    std::erase_if(remaining, [](const Status& status) { return status.fault == FileFault::NotFound; });
    return remaining;
}

std::vector<Status> DeleteTree(CommandContext& context, const std::string& path, const std::string& last) {
    if (!MayBeDeleted(context.locations, path)) {
        context.user.Tell("Critical error.  Please restart Korvadex and verify that your Staging, "
                          "Hangar and MSFS directory locations are set up correctly.",
                          MessageIcon::Critical);
        throw ProgramEnd{};
    }
    return EqualNoCase(path, context.locations.StagingDir) ? DeleteContents(context.files, path)
                                                           : DeleteAll(context.files, path, last);
}

void TellDeleted(CommandContext& context, const std::vector<std::string>& remaining) {
    if (remaining.empty())
        context.user.Tell("Done.");
    else
        context.user.Tell(
            "The following could not be deleted ...\r\n\r\n" + ListNames(remaining) +
                "\r\n\r\n"
                "Please close the program that uses them, or make sure that you may write there, and try again.",
            MessageIcon::Exclamation);
}

void TellDeleted(CommandContext& context, const std::vector<Status>& remaining) {
    std::vector<std::string> names;
    std::ranges::transform(remaining, std::back_inserter(names), Explained);
    TellDeleted(context, names);
}

std::vector<std::string> SubdirectoryNames(const FileSystem& files, const std::string& path) {
    std::vector<std::string> names;
    if (const auto entries = files.List(path)) {
        for (const auto& entry : *entries) {
            if (IsSubdirectory(files, path, entry))
                names.push_back(entry.name);
        }
    }
    return names;
}

bool HasSubdirectory(const FileSystem& files, const std::string& parentPath, std::string_view name) {
    return !name.empty() && files.IsDirectory(parentPath + std::string(name));
}

bool StagingIsEmpty(const FileSystem& files, const Locations& locations) {
    const auto entries = files.List(locations.StagingDir);
    if (!entries)
        return entries.fault() == FileFault::NotFound;
    return std::all_of(entries->begin(), entries->end(), [](const DirectoryEntry& entry) { return IsLeftOut(entry); });
}

std::string SpacesToUnderscores(std::string_view text) {
    std::string result(text);
    std::replace(result.begin(), result.end(), ' ', '_');
    return result;
}

std::string UnderscoresToSpaces(std::string_view text) {
    std::string result(text);
    std::replace(result.begin(), result.end(), '_', ' ');
    return result;
}

std::string FindSimAircraftDirectory(const FileSystem& files, std::string_view directory, std::string_view name) {
    return NameInSim(
        name, [&](std::string_view candidate) { return HasSubdirectory(files, std::string(directory), candidate); });
}

std::string FindSimAircraftDirectory(const FileSystem& files, const Locations& locations, std::string_view name) {
    return FindSimAircraftDirectory(files, locations.Aircraft(), name);
}

SimAircraft::SimAircraft(const FileSystem& fileSystem, const Locations& locations)
    : files(fileSystem), directory(locations.Aircraft()) {
    const auto entries = files.List(directory);
    isListed = bool(entries);
    if (!entries)
        return;
    for (const auto& entry : *entries) {
        const bool isDirectory = entry.info.kind == EntryKind::Link ? files.IsDirectory(directory + entry.name)
                                                                    : entry.info.kind == EntryKind::Directory;
        if (isDirectory)
            names.insert(FoldCase(entry.name));
    }
}

std::string SimAircraft::FindDirectory(std::string_view name) const {
    if (!isListed)
        return FindSimAircraftDirectory(files, directory, name);
    return NameInSim(name, [&](std::string_view candidate) { return names.contains(FoldCase(candidate)); });
}

} // namespace korvadex
