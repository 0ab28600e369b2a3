#include "platform/host_names_posix.h"

#include "platform/windows_path.h"

#include <cctype>
#include <dirent.h>
#include <memory>
#include <vector>

namespace korvadex {

namespace {

constexpr std::size_t MaxListings = 16;
constexpr std::string_view BackslashLetter = "\xEF\x81\x9C"; // U+F05C

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};
using DirectoryHandle = std::unique_ptr<DIR, CloseDirectory>;

bool Exists(const std::string& hostPath) {
    struct stat info {};
    return lstat(hostPath.c_str(), &info) == 0;
}

bool IsHostDirectory(const std::string& hostPath) {
    struct stat info {};
    return stat(hostPath.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool IsSameTime(const timespec& a, const timespec& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

std::string HostDirectoryOf(const std::string& hostPath) {
    const std::size_t slash = hostPath.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : hostPath.substr(0, slash);
}

// The components after the drive; none when one of them could not stand in a Windows path.
std::optional<std::vector<std::string_view>> Components(std::string_view path) {
    std::vector<std::string_view> components;
    path.remove_prefix(3);
    while (!path.empty()) {
        const std::size_t end = path.find('\\');
        const std::string_view component = path.substr(0, end);
        path.remove_prefix(end == std::string_view::npos ? path.size() : end + 1);
        if (component.empty())
            continue;
        if (component == "." || component == ".." || component.find('/') != std::string_view::npos ||
            component.find('\0') != std::string_view::npos)
            return std::nullopt;
        components.push_back(component);
    }
    return components;
}

std::string Exchanged(std::string_view text, std::string_view from, std::string_view to) {
    std::string result(text);
    for (std::size_t at = result.find(from); at != std::string::npos; at = result.find(from, at + to.size()))
        result.replace(at, from.size(), to);
    return result;
}

} // namespace

std::string ShownName(std::string_view hostName) {
    return Exchanged(hostName, "\\", BackslashLetter);
}

std::string HostSpelling(std::string_view shownName) {
    return Exchanged(shownName, BackslashLetter, "\\");
}

Result<HostName> HostNames::Resolve(const std::string& path) {
    if (!IsDrivePath(path))
        return Status{FileFault::BadName, path, 0};
    const auto drive = map.directories.find(static_cast<char>(std::tolower(static_cast<unsigned char>(path[0]))));
    const auto components = Components(path);
    if (drive == map.directories.end() || !components)
        return Status{FileFault::BadName, path, 0};

    std::string exact = drive->second;
    for (const auto component : *components)
        exact.append("/").append(HostSpelling(component));
    if (components->empty())
        return HostName{drive->second.empty() ? "/" : drive->second, true};
    if (Exists(exact))
        return HostName{exact, true};

    // Only the last name may differ: the usual case of a file that is new.
    const std::string parent = HostDirectoryOf(exact);
    if (IsHostDirectory(parent)) {
        const auto stored = FindName(parent, components->back());
        if (!stored)
            return HostName{exact, false};
        return HostName{(parent == "/" ? "" : parent) + "/" + *stored, true};
    }

    std::string resolved = drive->second;
    bool exists = true;
    for (const auto component : *components) {
        const std::string next = resolved + "/" + HostSpelling(component);
        if (exists && !Exists(next)) {
            const auto stored = FindName(resolved.empty() ? "/" : resolved, component);
            exists = stored.has_value();
            resolved += "/" + (stored ? *stored : HostSpelling(component));
        } else {
            resolved = next;
        }
    }
    return HostName{resolved, exists};
}

HostNames::Listing* HostNames::Cached(const std::string& directory) {
    for (auto listing = listings.begin(); listing != listings.end(); ++listing) {
        if (listing->directory == directory) {
            listings.splice(listings.begin(), listings, listing);
            return &listings.front();
        }
    }
    return nullptr;
}

std::optional<std::string> HostNames::FindName(const std::string& directory, std::string_view name) {
    struct stat info {};
    if (stat(directory.c_str(), &info) != 0)
        return std::nullopt;
    const std::lock_guard lock(mutex);
    Listing* listing = Cached(directory);
    bool isFresh = listing && listing->device == info.st_dev && listing->inode == info.st_ino &&
                   IsSameTime(listing->changed, info.st_mtim);
    // What another program does in the same tick of the disk's clock leaves the time as it was.
    if (isFresh) {
        const auto found = listing->names.find(FoldCase(name));
        isFresh = found == listing->names.end() || Exists(directory + "/" + found->second);
    }
    if (!isFresh) {
        if (!listing) {
            if (listings.size() == MaxListings)
                listings.pop_back();
            listing = &listings.emplace_front();
        }
        *listing = {directory, info.st_dev, info.st_ino, info.st_mtim, {}};
        const DirectoryHandle handle(opendir(directory.c_str()));
        if (!handle)
            return std::nullopt;
        while (const dirent* entry = readdir(handle.get()))
            listing->names.emplace(FoldCase(ShownName(entry->d_name)), entry->d_name);
    }
    const auto found = listing->names.find(FoldCase(name));
    if (found == listing->names.end())
        return std::nullopt;
    return found->second;
}

void HostNames::NoteAdded(const std::string& hostPath) {
    const std::string directory = HostDirectoryOf(hostPath);
    const std::lock_guard lock(mutex);
    Listing* listing = Cached(directory);
    struct stat info {};
    if (!listing || stat(directory.c_str(), &info) != 0)
        return;
    const std::string name = hostPath.substr(hostPath.rfind('/') + 1);
    listing->names.insert_or_assign(FoldCase(ShownName(name)), name);
    listing->changed = info.st_mtim;
}

void HostNames::NoteRemoved(const std::string& hostPath) {
    const std::string directory = HostDirectoryOf(hostPath);
    const std::lock_guard lock(mutex);
    for (auto listing = listings.begin(); listing != listings.end();) {
        const bool isTouched = listing->directory == directory || listing->directory == hostPath ||
                               listing->directory.starts_with(hostPath + "/");
        listing = isTouched ? listings.erase(listing) : std::next(listing);
    }
}

} // namespace korvadex
