#include "archive/member_files.h"

#include "package/scratch.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

// Far beyond what the simulator can open; a hostile name of 30,000 directories ends here.
constexpr std::size_t MaxPathLength = 2000;

MemberOutcome OutcomeOf(const Status& status) {
    switch (status.fault) {
    case FileFault::None:
        return {};
    case FileFault::BadName:
        return {UnzipCode::Ok, "its name cannot be stored"};
    case FileFault::DiskFull:
    case FileFault::ReadOnlyDisk:
        return {UnzipCode::DiskFull, DescribeFault(status), true};
    default:
        return {UnzipCode::DiskFull, DescribeFault(status)};
    }
}

} // namespace

MemberFiles::MemberFiles(UnpackDisk unpackDisk, std::string_view extractDirectory)
    : disk(unpackDisk), directory(AddBackslash(extractDirectory)), root(disk.locations.RootOf(directory)) {
    if (root.empty())
        root = directory;
}

MemberFiles::~MemberFiles() {
    file.reset();
    if (!scratch.empty())
        ReleaseScratch(disk.files, scratch);
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
        changed.insert({newDirectory, WithoutBackslash(parent)});
    }
    known.insert(key);
    return {};
}

MemberOutcome MemberFiles::LookAt(const std::string& path, bool& isTaken) {
    const auto info = disk.files.Info(path);
    isTaken = info && info->kind == EntryKind::File;
    if (isTaken || info.fault() == FileFault::NotFound)
        return {};
    if (!info)
        return OutcomeOf(info.status());
    return {UnzipCode::Ok,
            info->kind == EntryKind::Link ? "a link stands in its way" : "a directory stands in its way"};
}

MemberOutcome MemberFiles::MakeScratch() {
    if (!scratch.empty())
        return {};
    const auto name = MakeScratchName(disk.files, disk.locations, WithoutBackslash(directory));
    if (!name)
        return OutcomeOf(name.status());
    const Status status = disk.files.CreateDirectory(*name);
    if (status)
        scratch = *name;
    else
        ReleaseScratch(disk.files, *name);
    return OutcomeOf(status);
}

MemberOutcome MemberFiles::Create(const std::string& path, bool replaces) {
    if (auto outcome = MakeScratch(); !outcome.IsFine())
        return outcome;
    finalPath = path;
    isReplacing = replaces;
    filePath = scratch + "\\" + LastPathComponent(path);
    auto created = disk.files.CreateNew(filePath);
    if (!created)
        return OutcomeOf(created.status());
    file = std::move(*created);
    return {};
}

MemberOutcome MemberFiles::Write(std::span<const std::byte> bytes) {
    return OutcomeOf(WriteAll(*file, bytes));
}

MemberOutcome MemberFiles::Finish(FileTime time) {
    Status status = file->Close(false);
    file.reset();
    if (status) {
        // A disk that does not take the time still holds the file.
        if (time != FileTime{})
            static_cast<void>(disk.files.SetTime(filePath, time));
        status = isReplacing ? disk.files.Replace(filePath, finalPath) : disk.files.Rename(filePath, finalPath);
    }
    if (!status) {
        Abandon();
        return OutcomeOf(status);
    }
    finished.push_back(finalPath);
    changed.insert(WithoutBackslash(ParentDirectory(finalPath)));
    return {};
}

void MemberFiles::Abandon() {
    file.reset();
    static_cast<void>(disk.files.Delete(filePath));
}

std::vector<std::string> MemberFiles::Written() const {
    std::vector<std::string> written = finished;
    written.insert(written.end(), changed.begin(), changed.end());
    return written;
}

void MemberFiles::RemoveMadeDirectories() {
    for (auto path = made.rbegin(); path != made.rend(); ++path)
        static_cast<void>(disk.files.RemoveDirectory(*path));
    changed.clear();
}

Result<std::uint64_t> MemberFiles::MakeRoom(std::uint64_t bytes) {
    std::string existing = directory;
    while (!disk.files.IsDirectory(existing) && !ParentDirectory(existing).empty())
        existing = ParentDirectory(existing);
    return disk.files.MakeRoom(existing, bytes);
}

} // namespace korvadex
