#include "archive/member_files.h"

#include "package/scratch.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

// Far beyond what the simulator can open; a hostile name of 30,000 directories ends here.
constexpr std::size_t MaxPathLength = 2000;
constexpr std::size_t WritePiece = 64 * 1024;

MemberOutcome OutcomeOf(const Status& status) {
    switch (status.fault) {
    case FileFault::None:
        return {};
    case FileFault::BadName:
        return {UnzipCode::Ok, "its name cannot be stored"};
    case FileFault::DiskFull:
    case FileFault::ReadOnlyDisk:
        return {UnzipCode::DiskFull, DescribeFault(status.fault), true};
    default:
        return {UnzipCode::DiskFull, DescribeFault(status.fault)};
    }
}

} // namespace

MemberFiles::MemberFiles(UnzipDisk unzipDisk, std::string_view extractDirectory)
    : disk(unzipDisk), directory(AddBackslash(extractDirectory)), root(disk.locations.RootOf(directory)) {
    if (root.empty())
        root = directory;
}

std::string MemberFiles::PathOf(std::span<const std::string> components) const {
    std::string path = directory;
    for (const auto& component : components)
        path += component + "\\";
    path.pop_back();
    return path;
}

MemberOutcome MemberFiles::MakeDirectories(std::span<const std::string> components) {
    const std::string path = components.empty() ? directory : PathOf(components) + "\\";
    if (path.size() > MaxPathLength)
        return {UnzipCode::Ok, "its name is too long"};
    return EnsureDirectory(path);
}

MemberOutcome MemberFiles::EnsureDirectory(const std::string& path) {
    const std::string key = FoldCase(path);
    if (known.contains(key))
        return {};
    const bool isBelowRoot = path.size() > root.size();
    const auto info = disk.files.Info(WithoutBackslash(path));
    if (!isBelowRoot && disk.files.IsDirectory(path)) {
        known.insert(key);
        return {};
    }
    if (info) {
        if (info->kind == EntryKind::Link)
            return {UnzipCode::Ok, "a link stands in its way"};
        if (info->kind == EntryKind::File)
            return {UnzipCode::Ok, "a file stands in its way"};
    } else {
        const std::string parent = ParentDirectory(path);
        if (info.fault() != FileFault::NotFound || parent.empty())
            return OutcomeOf(info.status());
        if (auto outcome = EnsureDirectory(parent); !outcome.IsFine())
            return outcome;
        const std::string newDirectory = WithoutBackslash(path);
        if (auto outcome = OutcomeOf(disk.files.CreateDirectory(newDirectory)); !outcome.IsFine())
            return outcome;
        made.push_back(newDirectory);
    }
    known.insert(key);
    return {};
}

MemberOutcome MemberFiles::Open(const std::string& path, Result<std::unique_ptr<OutputFile>> created) {
    if (!created)
        return OutcomeOf(created.status());
    file = std::move(*created);
    filePath = path;
    return {};
}

MemberOutcome MemberFiles::Create(const std::string& path, bool& isTaken) {
    isTaken = false;
    finalPath = path;
    auto created = disk.files.CreateNew(path);
    if (created || created.fault() != FileFault::Exists)
        return Open(path, std::move(created));
    const auto info = disk.files.Info(path);
    if (!info)
        return OutcomeOf(info.status());
    if (info->kind == EntryKind::Link)
        return {UnzipCode::Ok, "a link stands in its way"};
    if (info->kind == EntryKind::Directory)
        return {UnzipCode::Ok, "a directory stands in its way"};
    isTaken = true;
    return {};
}

MemberOutcome MemberFiles::CreateBeside(const std::string& path) {
    const auto scratch = MakeScratchName(disk.files, disk.locations, path);
    if (!scratch)
        return OutcomeOf(scratch.status());
    auto outcome = Open(*scratch, disk.files.CreateNew(*scratch));
    if (!outcome.IsFine())
        ReleaseScratch(disk.files, *scratch);
    return outcome;
}

MemberOutcome MemberFiles::Write(std::span<const std::byte> bytes) {
    // In small pieces: the system takes megabytes at once at half the speed, as it then looks for large pages.
    while (!bytes.empty()) {
        const auto piece = bytes.first(std::min(bytes.size(), WritePiece));
        if (auto outcome = OutcomeOf(file->Write(piece)); !outcome.IsFine())
            return outcome;
        bytes = bytes.subspan(piece.size());
    }
    return {};
}

MemberOutcome MemberFiles::Finish(FileTime time) {
    const bool replaces = filePath != finalPath;
    auto outcome = OutcomeOf(file->Close(replaces));
    file.reset();
    if (outcome.IsFine()) {
        // A disk that does not take the time still holds the file.
        if (time != FileTime{})
            static_cast<void>(disk.files.SetTime(filePath, time));
        if (replaces)
            outcome = OutcomeOf(disk.files.Replace(filePath, finalPath));
    }
    if (!outcome.IsFine() || replaces)
        Abandon();
    return outcome;
}

void MemberFiles::Abandon() {
    file.reset();
    if (filePath != finalPath)
        ReleaseScratch(disk.files, filePath);
    else
        static_cast<void>(disk.files.Delete(filePath));
}

void MemberFiles::RemoveMadeDirectories() {
    for (auto path = made.rbegin(); path != made.rend(); ++path)
        static_cast<void>(disk.files.RemoveDirectory(*path));
}

Result<std::uint64_t> MemberFiles::FreeSpace() const {
    std::string existing = directory;
    while (!disk.files.IsDirectory(existing) && !ParentDirectory(existing).empty())
        existing = ParentDirectory(existing);
    return disk.files.FreeSpace(existing);
}

} // namespace korvadex
