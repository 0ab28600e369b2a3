#include "package/file_primitives.h"

#include "package/name_list.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

// A full path below a drive's root that ends in a backslash and has no empty component.
bool IsFullTreePath(std::string_view path) {
    return path.size() >= 5 && path[1] == ':' && path[2] == '\\' && path.back() == '\\' && path[3] != '\\' &&
           path[3] != ' ' && path.find("\\\\") == std::string_view::npos;
}

std::string Explained(const std::string& path, FileFault fault) {
    return path + " (" + DescribeFault(fault) + ")";
}

bool HoldsAny(const std::string& directory, const std::vector<std::string>& paths) {
    return std::ranges::any_of(paths,
                               [&](const std::string& path) { return path.starts_with(AddBackslash(directory)); });
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
    static_cast<void>(files.ClearAttributes(path));
    const Status status = files.Delete(path);
    return status || status.fault == FileFault::NotFound;
}

Status FlushFiles(FileSystem& files, const std::vector<std::string>& paths) {
    const auto outcomes = files.Flush(paths);
    const auto failure = std::find_if(outcomes.begin(), outcomes.end(), [](const Status& status) { return !status; });
    return failure == outcomes.end() ? Status{} : *failure;
}

std::string DeleteOrExplain(FileSystem& files, const std::string& path) {
    static_cast<void>(files.ClearAttributes(path));
    const FileFault fault = files.Delete(path).fault;
    return fault == FileFault::None || fault == FileFault::NotFound ? "" : Explained(path, fault);
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
            return entry.info.kind == EntryKind::File && IsLeftOut(entry);
        }))
        return false;
    for (const auto& entry : *entries)
        DeleteFileForced(files, AddBackslash(path) + entry.name);
    return bool(files.RemoveDirectory(path));
}

std::vector<std::string> DeleteTree(CommandContext& context, const std::string& path, const std::string& last) {
    FileSystem& files = context.files;
    if (!MayBeDeleted(context.locations, path)) {
        context.user.Tell("Critical error.  Please restart Korvadex and verify that your Staging, "
                          "Hangar and MSFS directory locations are set up correctly.",
                          MessageIcon::Critical);
        throw ProgramEnd{};
    }
    std::vector<std::string> remaining;
    const auto deleteFile = [&](const std::string& file) {
        if (auto explained = DeleteOrExplain(files, file); !explained.empty())
            remaining.push_back(std::move(explained));
    };
    const std::string bare = WithoutBackslash(path);
    const auto info = files.Info(bare);
    if (info && info->kind == EntryKind::Link && !EqualNoCase(path, context.locations.StagingDir)) {
        deleteFile(bare); // what a link leads to is not ours
        return remaining;
    }
    const Tree tree = WalkTree(files, path, WalkFor::Deletion);
    for (const std::string& directory : tree.unreadable)
        remaining.push_back(Explained(directory, FileFault::Denied));
    for (const auto& file : tree.files) {
        if (!EqualNoCase(file.path, last))
            deleteFile(file.path);
    }
    for (auto directory = tree.directories.rbegin(); directory != tree.directories.rend(); ++directory) {
        const FileFault fault = files.RemoveDirectory(*directory).fault;
        // One that holds what remains is not worth a word of its own.
        if (fault != FileFault::None && fault != FileFault::NotFound &&
            (fault != FileFault::NotEmpty || !HoldsAny(*directory, remaining)))
            remaining.push_back(Explained(*directory, fault));
    }
    if (!last.empty() && remaining.empty())
        deleteFile(last);
    return remaining;
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
