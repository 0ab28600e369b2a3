#include "journal/kept_places.h"

#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

void DeleteAll(FileSystem& files, const std::string& path) {
    const auto info = files.Info(path);
    if (!info)
        return;
    if (info->kind == EntryKind::Directory) {
        if (const auto entries = files.List(path)) {
            for (const DirectoryEntry& entry : *entries)
                if (!entry.isMountPoint)
                    DeleteAll(files, AddBackslash(path) + entry.name);
        }
        static_cast<void>(files.RemoveDirectory(path));
        return;
    }
    static_cast<void>(DeleteOne(files, path));
}

// The directory of all that is kept comes and goes without a trace in the time of the one that it lies in.
template<class Change>
auto KeepTime(FileSystem& files, const std::string& directory, Change change) {
    const auto before = files.Info(WithoutBackslash(directory));
    const auto outcome = change();
    if (outcome && before)
        static_cast<void>(files.SetTime(WithoutBackslash(directory), before->time));
    return outcome;
}

} // namespace

KeptPlaces::KeptPlaces(FileSystem& fileSystem, KeptLocations keptLocations, std::string commandName)
    : files(fileSystem), locations(std::move(keptLocations)), command(std::move(commandName)) {}

Result<KeptPlaces::Place> KeptPlaces::PlaceFor(const std::string& path) {
    const std::string parent = ParentDirectory(path), name = WithoutBackslash(LastPathComponent(path));
    auto& directory = current[FoldCase(parent)];
    if (!directory.empty() && files.Info(directory + name).fault() == FileFault::NotFound)
        return Place{directory + name, ""};
    auto made = NewDirectory(parent);
    if (!made)
        return made.status();
    directory = std::move(*made);
    return Place{directory + name, directory};
}

std::string KeptPlaces::LocationFor(const std::string& parent) const {
    const auto sameVolume = [&](const std::string& location) { return files.SameVolume(location, parent); };
    if (const auto found = std::ranges::find_if(locations, sameVolume); found != locations.end())
        return *found;
    // A volume of its own inside a location, such as a linked directory: the highest one that is still on it.
    const auto isInLocation = [&](const std::string& directory) {
        return std::ranges::any_of(locations,
                                   [&](const std::string& location) { return IsAtOrBelow(directory, location); });
    };
    std::string highest = parent;
    for (std::string above = ParentDirectory(parent); isInLocation(above) && files.SameVolume(above, parent);
         above = ParentDirectory(above))
        highest = above;
    return highest;
}

Result<std::string> KeptPlaces::NewDirectory(const std::string& parent) {
    const std::string location = LocationFor(parent), kept = location + std::string(KeptDirectoryName);
    const std::string own = kept + "\\" + command;
    if (const auto made = KeepTime(files, location, [&] { return EnsureRealDirectory(files, kept); }); !made)
        return made.status();
    if (const auto made = EnsureRealDirectory(files, own); !made)
        return made.status();
    directories.insert(own + "\\");
    for (int number = 1;; ++number) {
        const std::string directory = own + "\\" + std::to_string(number);
        const Status status = files.CreateDirectory(directory);
        if (status)
            return directory + "\\";
        if (status.fault != FileFault::Exists)
            return status;
    }
}

Status DeleteOne(FileSystem& files, const std::string& path) {
    if (const auto info = files.Info(path); info && info->readOnly)
        static_cast<void>(files.ClearAttributes(path));
    return files.Delete(path);
}

void DeleteKept(FileSystem& files, const std::string& directory) {
    const std::string kept = ParentDirectory(directory);
    if (!EqualNoCase(WithoutBackslash(LastPathComponent(kept)), KeptDirectoryName))
        return;
    DeleteAll(files, WithoutBackslash(directory));
    // It stays while others keep something in it.
    static_cast<void>(
        KeepTime(files, ParentDirectory(kept), [&] { return files.RemoveDirectory(WithoutBackslash(kept)); }));
}

void DeleteNumbered(FileSystem& files, const std::string& directory) {
    if (EqualNoCase(WithoutBackslash(LastPathComponent(ParentDirectory(ParentDirectory(directory)))),
                    KeptDirectoryName))
        DeleteAll(files, WithoutBackslash(directory));
}

bool HoldsNothing(const FileSystem& files, const std::string& directory) {
    const auto entries = files.List(directory);
    if (!entries)
        return entries.fault() == FileFault::NotFound;
    return std::ranges::all_of(*entries, [&](const DirectoryEntry& entry) {
        return entry.info.kind == EntryKind::Directory && !entry.isMountPoint &&
               HoldsNothing(files, AddBackslash(directory) + entry.name);
    });
}

KeptSize SizeOf(const FileSystem& files, const std::string& path) {
    const auto info = files.Info(path);
    if (!info)
        return {};
    if (info->kind != EntryKind::Directory)
        return {1, info->size};
    KeptSize sum;
    const auto add = [&](const std::string& directory, const auto& self) -> void {
        const auto entries = files.List(directory);
        if (!entries)
            return;
        for (const DirectoryEntry& entry : *entries) {
            if (entry.info.kind == EntryKind::Directory && !entry.isMountPoint) {
                self(AddBackslash(directory) + entry.name, self);
            } else {
                ++sum.files;
                sum.bytes += entry.info.size;
            }
        }
    };
    add(path, add);
    return sum;
}

std::uint64_t SizeOf(const FileSystem& files, const std::vector<std::string>& directories) {
    std::uint64_t sum = 0;
    for (const std::string& directory : directories)
        sum += SizeOf(files, WithoutBackslash(directory)).bytes;
    return sum;
}

} // namespace korvadex
