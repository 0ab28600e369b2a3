#include "platform/file_system.h"

#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

std::string DescribeFault(FileFault fault) {
    switch (fault) {
    case FileFault::None:
        return "no problem";
    case FileFault::NotFound:
        return "it was not found";
    case FileFault::Exists:
        return "a file or directory of that name is already there";
    case FileFault::NotEmpty:
        return "the directory is not empty";
    case FileFault::Denied:
        return "access was denied";
    case FileFault::ReadOnlyDisk:
        return "the disk is in READ ONLY mode";
    case FileFault::InUse:
        return "another program is using it";
    case FileFault::DiskFull:
        return "the disk is full";
    case FileFault::OtherVolume:
        return "it lies on another drive";
    case FileFault::BadName:
        return "the name cannot be stored on this disk";
    case FileFault::IsLink:
        return "it is a link to another place";
    case FileFault::Changed:
        return "it was changed meanwhile";
    case FileFault::NotKept:
        return "it cannot be kept aside";
    case FileFault::Failed:
        break;
    }
    return "the disk reported an error";
}

std::string DescribeFault(const Status& status) {
    const bool hasNumber = status.fault == FileFault::Failed && status.nativeCode != 0;
    return DescribeFault(status.fault) + (hasNumber ? " (" + std::to_string(status.nativeCode) + ")" : "");
}

std::vector<Status> FileSystem::RenameAll(std::span<const Replacement> renames) {
    std::vector<Status> outcomes;
    for (const Replacement& rename : renames)
        outcomes.push_back(Rename(rename.from, rename.to));
    return outcomes;
}

std::vector<Status> FileSystem::ReplaceAll(std::span<const Replacement> replacements) {
    std::vector<Status> outcomes;
    for (const Replacement& replacement : replacements) {
        const Status unchanged = CheckUnchanged(replacement);
        outcomes.push_back(unchanged ? Replace(replacement.from, replacement.to) : unchanged);
    }
    return outcomes;
}

Status FileSystem::SetAside(const std::string& path) {
    return {FileFault::NotKept, path};
}

Result<std::uint64_t> FileSystem::MakeRoom(const std::string& directory, std::uint64_t /*bytes*/) {
    return FreeSpace(directory);
}

Status FileSystem::CheckUnchanged(const Replacement& replacement) const {
    if (!replacement.seen)
        return {};
    const auto now = Info(replacement.to);
    if (!now)
        return now.status();
    const FileInfo& seen = *replacement.seen;
    const bool isSame = now->kind == seen.kind && now->size == seen.size && now->time == seen.time;
    return isSame ? Status{} : Status{FileFault::Changed, replacement.to, 0};
}

Status WriteAll(OutputFile& file, std::span<const std::byte> bytes) {
    // Of megabytes at once the system makes large pages, at half the speed.
    constexpr std::size_t pieceSize = 128 * 1024;
    while (!bytes.empty()) {
        const auto piece = bytes.first(std::min(bytes.size(), pieceSize));
        if (Status status = file.Write(piece); !status)
            return status;
        bytes = bytes.subspan(piece.size());
    }
    return {};
}

Status WriteNew(FileSystem& files, const std::string& path, std::span<const std::byte> bytes) {
    const auto file = files.CreateNew(path);
    if (!file)
        return file.status();
    Status status = WriteAll(**file, bytes);
    return status ? (*file)->Close(false) : status;
}

Result<bool> EnsureDirectory(FileSystem& files, const std::string& directory) {
    Status made = files.CreateDirectory(directory);
    if (made)
        return true;
    if (made.fault == FileFault::Exists && files.IsDirectory(directory))
        return false;
    return made;
}

Result<bool> EnsureRealDirectory(FileSystem& files, const std::string& directory) {
    const auto info = files.Info(WithoutBackslash(directory));
    if (info && info->kind == EntryKind::Link)
        return Status{FileFault::IsLink, directory};
    return EnsureDirectory(files, directory);
}

} // namespace korvadex
