#include "platform/descriptor_posix.h"
#include "platform/drive_map_posix.h"
#include "platform/file_system.h"
#include "platform/flush_posix.h"
#include "platform/host_names_posix.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <set>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace korvadex {

namespace {

// Where Wine and Samba keep hidden, system and archive; carried along by every copy.
constexpr const char* DosAttributes = "user.DOSATTRIB";

// What Wine puts before a path of the host that no drive leads to.
constexpr std::string_view SourcePrefix = "\\\\?\\unix\\";

FileFault FaultOf(int code) {
    switch (code) {
    case 0:
        return FileFault::None;
    case ENOENT:
    case ENOTDIR:
        return FileFault::NotFound;
    case EEXIST:
        return FileFault::Exists;
    case ENOTEMPTY:
        return FileFault::NotEmpty;
    case EACCES:
    case EPERM:
        return FileFault::Denied;
    case EROFS:
        return FileFault::ReadOnlyDisk;
    case EBUSY:
    case ETXTBSY:
        return FileFault::InUse;
    case ENOSPC:
    case EDQUOT:
        return FileFault::DiskFull;
    case EXDEV:
        return FileFault::OtherVolume;
    case ENAMETOOLONG:
    case EILSEQ:
        return FileFault::BadName;
    case ELOOP:
        return FileFault::IsLink;
    default:
        return FileFault::Failed;
    }
}

Status Failure(const std::string& path, int code = errno) {
    return {FaultOf(code), path, code};
}

Status Outcome(int result, const std::string& path) {
    return result == 0 ? Status{} : Failure(path);
}

FileTime TimeOf(const timespec& time) {
    return FileTime(std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
}

timespec TimeOf(FileTime time) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    return {static_cast<time_t>(seconds.time_since_epoch().count()), static_cast<long>((time - seconds).count())};
}

FileInfo InfoOf(const struct stat& info) {
    FileInfo result;
    // Sockets and pipes are nothing to open either: they count as links.
    result.kind = S_ISREG(info.st_mode)   ? EntryKind::File
                  : S_ISDIR(info.st_mode) ? EntryKind::Directory
                                          : EntryKind::Link;
    result.size = result.kind == EntryKind::File ? static_cast<std::uint64_t>(info.st_size) : 0;
    result.time = TimeOf(info.st_mtim);
    result.readOnly = result.kind == EntryKind::File && (info.st_mode & S_IWUSR) == 0;
    return result;
}

Result<Descriptor> OpenRegular(const std::string& hostPath, const std::string& path) {
    Descriptor file(open(hostPath.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!file)
        return Failure(path);
    struct stat info {};
    if (fstat(file.get(), &info) != 0)
        return Failure(path);
    if (!S_ISREG(info.st_mode))
        return Status{S_ISDIR(info.st_mode) ? FileFault::Failed : FileFault::IsLink, path, 0};
    return file;
}

Status WriteAll(int file, std::span<const std::byte> bytes, const std::string& path) {
    while (!bytes.empty()) {
        const ssize_t count = write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return Failure(path);
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return {};
}

class PosixInput : public InputFile {
  public:
    PosixInput(Descriptor opened, std::string name) : file(std::move(opened)), path(std::move(name)) {}
    Result<std::size_t> Read(std::span<std::byte> buffer) override {
        for (;;) {
            const ssize_t count = read(file.get(), buffer.data(), buffer.size());
            if (count >= 0)
                return static_cast<std::size_t>(count);
            if (errno != EINTR)
                return Failure(path);
        }
    }

  private:
    Descriptor file;
    std::string path;
};

class PosixOutput : public OutputFile {
  public:
    PosixOutput(Descriptor opened, std::string name) : file(std::move(opened)), path(std::move(name)) {}
    Status Write(std::span<const std::byte> bytes) override {
        Status status = WriteAll(file.get(), bytes, path);
        written += static_cast<off64_t>(bytes.size());
        // Of a large file the disk takes the first bytes while the last ones are made.
        if (constexpr off64_t pieceSize = 8 << 20; written - begun >= pieceSize) {
            sync_file_range(file.get(), begun, written - begun, SYNC_FILE_RANGE_WRITE);
            begun = written;
        }
        return status;
    }
    Status Flush() override { return Outcome(fsync(file.get()), path); }
    Status Close(bool flush) override {
        if (Status flushed = flush ? Flush() : Status{}; !flushed)
            return flushed;
        return Outcome(file.Close(), path);
    }

  private:
    Descriptor file;
    std::string path;
    off64_t written = 0, begun = 0; // bytes; those on their way to the disk
};

// Copies the rest of one file to another with what the system has for it, or through a buffer where it has
// nothing.
Status CopyContents(int from, int to, std::uint64_t size, const std::string& source, const std::string& target) {
    std::uint64_t copied = 0;
    while (copied < size) {
        const ssize_t count =
            copy_file_range(from, nullptr, to, nullptr, std::min<std::uint64_t>(size - copied, 1u << 30), 0);
        if (count <= 0)
            break;
        copied += static_cast<std::uint64_t>(count);
    }
    // Not possible between these two, or the file has grown: the plain way goes on from where this stopped.
    std::array<std::byte, 128 * 1024> buffer;
    for (;;) {
        const ssize_t count = read(from, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return Failure(source);
        if (count == 0)
            return {};
        if (auto status = WriteAll(to, std::span(buffer).first(static_cast<std::size_t>(count)), target); !status)
            return status;
    }
}

// Disks without permissions of their own (FAT, shares) refuse to set some; the file is none the worse for it.
bool SetMode(int file, mode_t mode) {
    return fchmod(file, mode & 0777) == 0 || errno == EPERM || errno == ENOTSUP;
}

// Nor for being without these, where the disk has no such thing; a full or damaged one is another matter.
bool CopyDosAttributes(int from, int to) {
    std::array<char, 64> value{};
    const ssize_t length = fgetxattr(from, DosAttributes, value.data(), value.size());
    return length <= 0 || fsetxattr(to, DosAttributes, value.data(), static_cast<std::size_t>(length), 0) == 0 ||
           (errno != EIO && errno != ENOSPC && errno != EDQUOT);
}

// What chmod and those attributes hold: "644", or with the bytes of the second in hex "644:30783230".
struct OwnAttributes {
    mode_t mode = 0;
    std::string dos; // "" for none
};

std::string DosAttributesOf(const std::string& hostPath) {
    std::array<char, 1024> value{};
    const ssize_t length = getxattr(hostPath.c_str(), DosAttributes, value.data(), value.size());
    return std::string(value.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
}

bool SetDosAttributes(const std::string& hostPath, const std::string& dos) {
    if (!dos.empty())
        return setxattr(hostPath.c_str(), DosAttributes, dos.data(), dos.size(), 0) == 0;
    return removexattr(hostPath.c_str(), DosAttributes) == 0 || errno == ENODATA;
}

std::string TextOf(const OwnAttributes& attributes) {
    std::array<char, 16> digits{};
    std::snprintf(digits.data(), digits.size(), "%o", static_cast<unsigned>(attributes.mode));
    std::string text = digits.data();
    text += attributes.dos.empty() ? "" : ":";
    for (const char c : attributes.dos) {
        std::snprintf(digits.data(), digits.size(), "%02x", static_cast<unsigned char>(c));
        text += digits.data();
    }
    return text;
}

std::optional<OwnAttributes> ReadAttributes(std::string_view text) {
    const auto number = [](std::string_view digits, unsigned& value, int base) {
        const auto end = digits.data() + digits.size();
        return !digits.empty() && std::from_chars(digits.data(), end, value, base).ptr == end;
    };
    const std::size_t colon = std::min(text.find(':'), text.size());
    unsigned value = 0;
    if (!number(text.substr(0, colon), value, 8) || value > 07777)
        return std::nullopt;
    OwnAttributes attributes{.mode = value, .dos = {}};
    for (std::size_t at = colon + 1; at < text.size(); at += 2) {
        if (!number(text.substr(at, 2), value, 16))
            return std::nullopt;
        attributes.dos += static_cast<char>(value);
    }
    return attributes;
}

std::string ParentOf(const std::string& hostPath) {
    const std::size_t slash = hostPath.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : hostPath.substr(0, slash);
}

void FlushDirectory(const std::string& hostPath) {
    const Descriptor directory(open(hostPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory)
        fsync(directory.get());
}

class DriveFileSystem : public FileSystem {
  public:
    explicit DriveFileSystem(DriveMap drives) : names(std::move(drives)) {}

    Result<std::vector<DirectoryEntry>> List(const std::string& directory) const override;
    Result<std::vector<DirectoryEntry>> ListKinds(const std::string& directory) const override;
    Result<FileInfo> Info(const std::string& path) const override;
    bool IsDirectory(const std::string& path) const override;
    Result<std::unique_ptr<InputFile>> OpenForReading(const std::string& path) const override;
    Result<std::unique_ptr<OutputFile>> CreateNew(const std::string& path) override;
    Status Copy(const std::string& from, const std::string& to) override;
    Status Rename(const std::string& from, const std::string& to) override;
    Status Replace(const std::string& from, const std::string& to) override;
    void BeginFlush(const std::string& path) override;
    std::vector<Status> Flush(std::span<const std::string> paths) override;
    std::vector<Status> ReplaceAll(std::span<const Replacement> replacements) override;
    Status Link(const std::string& from, const std::string& to) override;
    Status Delete(const std::string& path) override;
    Status CreateDirectory(const std::string& path) override;
    Status RemoveDirectory(const std::string& path) override;
    Status ClearAttributes(const std::string& path) override;
    Status SetReadOnly(const std::string& path, bool readOnly) override;
    Status SetTime(const std::string& path, FileTime time) override;
    Result<std::string> Attributes(const std::string& path) const override;
    Status SetAttributes(const std::string& path, const std::string& attributes) override;
    Status CopyAttributes(const std::string& from, const std::string& to) override;
    Result<std::uint64_t> FreeSpace(const std::string& directory) const override;
    bool SameVolume(const std::string& a, const std::string& b) const override;
    std::vector<std::string> Drives() const override;
    std::string StoredPath(const std::string& path) const override;
    std::string HostPath(const std::string& path) const override;
    std::optional<std::string> PathFromHost(const std::string& hostPath) const override;
    std::string SourceFromHost(const std::string& hostPath) const override;

  private:
    Result<std::vector<DirectoryEntry>> ListEntries(const std::string& directory, bool onlyKinds) const;
    // Where something that is only read stands, also outside of the drives.
    Result<std::string> Source(const std::string& path) const;
    // The stored name of something that must be there.
    Result<std::string> Existing(const std::string& path) const;
    // The name for something that must not be there yet.
    Result<std::string> Free(const std::string& path) const;
    Result<Descriptor> CreateFile(const std::string& path, std::string& hostPath);
    Result<std::string> PutInPlace(const Replacement& replacement);
    dev_t VolumeOf(std::string path) const;

    mutable HostNames names;
};

Result<std::string> DriveFileSystem::Existing(const std::string& path) const {
    auto name = names.Resolve(path);
    if (!name)
        return name.status();
    if (!name->exists)
        return Status{FileFault::NotFound, path, ENOENT};
    return std::move(name->path);
}

Result<std::string> DriveFileSystem::Source(const std::string& path) const {
    if (!path.starts_with(SourcePrefix))
        return Existing(path);
    std::string hostPath = path.substr(SourcePrefix.size() - 1);
    std::replace(hostPath.begin(), hostPath.end(), '\\', '/');
    return HostSpelling(hostPath);
}

Result<std::string> DriveFileSystem::Free(const std::string& path) const {
    auto name = names.Resolve(path);
    if (!name)
        return name.status();
    if (name->exists)
        return Status{FileFault::Exists, path, EEXIST};
    return std::move(name->path);
}

Result<std::vector<DirectoryEntry>> DriveFileSystem::List(const std::string& directory) const {
    return ListEntries(directory, false);
}

Result<std::vector<DirectoryEntry>> DriveFileSystem::ListKinds(const std::string& directory) const {
    return ListEntries(directory, true);
}

Result<std::vector<DirectoryEntry>> DriveFileSystem::ListEntries(const std::string& directory, bool onlyKinds) const {
    const auto hostPath = Existing(directory);
    if (!hostPath)
        return hostPath.status();
    const std::unique_ptr<DIR, int (*)(DIR*)> handle(opendir(hostPath->c_str()), &closedir);
    struct stat own {};
    if (!handle || fstat(dirfd(handle.get()), &own) != 0)
        return Failure(directory);
    struct Sortable {
        std::string key;
        DirectoryEntry entry;
    };
    std::vector<Sortable> found;
    for (;;) {
        errno = 0;
        const dirent* entry = readdir(handle.get());
        if (!entry) {
            if (errno != 0)
                return Failure(directory);
            break;
        }
        const std::string_view name = entry->d_name;
        struct stat info {};
        if (name == "." || name == "..")
            continue;
        // One that went away in between is no entry. One that may not be looked at stays, as what it then is:
        // nothing to open.
        const bool isKnown = onlyKinds && entry->d_type == DT_REG;
        const bool isSeen = !isKnown && fstatat(dirfd(handle.get()), entry->d_name, &info, AT_SYMLINK_NOFOLLOW) == 0;
        if (!isKnown && !isSeen && errno == ENOENT)
            continue;
        const FileInfo seen = isSeen ? InfoOf(info) : FileInfo{.kind = isKnown ? EntryKind::File : EntryKind::Link};
        const bool isMountPoint = seen.kind == EntryKind::Directory && info.st_dev != own.st_dev;
        std::string shown = ShownName(name);
        std::string key = FoldCase(shown);
        found.push_back({std::move(key), {std::move(shown), seen, isMountPoint}});
    }
    std::sort(found.begin(), found.end(), [](const Sortable& a, const Sortable& b) {
        const int order = a.key.compare(b.key);
        return order != 0 ? order < 0 : a.entry.name < b.entry.name;
    });
    std::vector<DirectoryEntry> entries;
    entries.reserve(found.size());
    for (auto& item : found)
        entries.push_back(std::move(item.entry));
    return entries;
}

Result<FileInfo> DriveFileSystem::Info(const std::string& path) const {
    const auto hostPath = Source(path);
    if (!hostPath)
        return hostPath.status();
    struct stat info {};
    if (lstat(hostPath->c_str(), &info) != 0)
        return Failure(path);
    return InfoOf(info);
}

bool DriveFileSystem::IsDirectory(const std::string& path) const {
    const auto hostPath = Source(path);
    struct stat info {};
    return hostPath && stat(hostPath->c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

Result<std::unique_ptr<InputFile>> DriveFileSystem::OpenForReading(const std::string& path) const {
    const auto hostPath = Source(path);
    if (!hostPath)
        return hostPath.status();
    auto file = OpenRegular(*hostPath, path);
    if (!file)
        return file.status();
    return std::unique_ptr<InputFile>(std::make_unique<PosixInput>(std::move(*file), path));
}

Result<Descriptor> DriveFileSystem::CreateFile(const std::string& path, std::string& hostPath) {
    const auto freeName = Free(path);
    if (!freeName)
        return freeName.status();
    hostPath = *freeName;
    Descriptor file(open(hostPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!file)
        return Failure(path);
    names.NoteAdded(hostPath);
    return file;
}

Result<std::unique_ptr<OutputFile>> DriveFileSystem::CreateNew(const std::string& path) {
    std::string hostPath;
    auto file = CreateFile(path, hostPath);
    if (!file)
        return file.status();
    return std::unique_ptr<OutputFile>(std::make_unique<PosixOutput>(std::move(*file), path));
}

Status DriveFileSystem::Copy(const std::string& from, const std::string& to) {
    const auto source = Source(from);
    if (!source)
        return source.status();
    const auto input = OpenRegular(*source, from);
    if (!input)
        return input.status();
    struct stat info {};
    if (fstat(input->get(), &info) != 0)
        return Failure(from);

    std::string target;
    auto output = CreateFile(to, target);
    if (!output)
        return output.status();
    Status status = CopyContents(input->get(), output->get(), static_cast<std::uint64_t>(info.st_size), from, to);
    if (status) {
        const std::array<timespec, 2> times = {info.st_atim, info.st_mtim};
        if (!CopyDosAttributes(input->get(), output->get()) || futimens(output->get(), times.data()) != 0 ||
            !SetMode(output->get(), info.st_mode) || output->Close() != 0)
            status = Failure(to);
    }
    if (!status) {
        unlink(target.c_str());
        names.NoteRemoved(target);
    }
    return status;
}

Status DriveFileSystem::Rename(const std::string& from, const std::string& to) {
    const auto source = Existing(from);
    if (!source)
        return source.status();
    const auto target = names.Resolve(to);
    if (!target)
        return target.status();
    std::string newName = target->path;
    if (target->exists) {
        // Only a change of case may meet an entry of that name: its own.
        if (target->path != *source)
            return {FileFault::Exists, to, EEXIST};
        newName = ParentOf(*source) + "/" + HostSpelling(WithoutBackslash(LastPathComponent(to)));
        if (newName == *source)
            return {};
    }
    int result = renameat2(AT_FDCWD, source->c_str(), AT_FDCWD, newName.c_str(), RENAME_NOREPLACE);
    if (result != 0 && errno == EINVAL && access(newName.c_str(), F_OK) != 0)
        result = rename(source->c_str(), newName.c_str()); // a file system that does not know the flag
    if (result != 0)
        return Failure(from);
    names.NoteRemoved(*source);
    names.NoteAdded(newName);
    return {};
}

Status DriveFileSystem::Replace(const std::string& from, const std::string& to) {
    const Replacement replacement{.from = from, .to = to};
    return ReplaceAll(std::span(&replacement, 1)).front();
}

void DriveFileSystem::BeginFlush(const std::string& path) {
    const auto hostPath = Existing(path);
    const auto file = hostPath ? OpenRegular(*hostPath, path) : Result<Descriptor>(hostPath.status());
    if (file)
        sync_file_range(file->get(), 0, 0, SYNC_FILE_RANGE_WRITE);
}

std::vector<Status> DriveFileSystem::Flush(std::span<const std::string> paths) {
    std::vector<Status> outcomes(paths.size());
    std::vector<std::string> hostPaths(paths.size());
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (auto hostPath = Existing(paths[i]))
            hostPaths[i] = std::move(*hostPath);
        else
            outcomes[i] = hostPath.status();
    }
    const std::vector<int> faults = FlushTogether(hostPaths);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (faults[i] != 0)
            outcomes[i] = Failure(paths[i], faults[i]);
    }
    return outcomes;
}

std::vector<Status> DriveFileSystem::ReplaceAll(std::span<const Replacement> replacements) {
    std::vector<std::string> made;
    for (const Replacement& replacement : replacements)
        made.push_back(replacement.from);
    std::vector<Status> outcomes = Flush(made);
    std::set<std::string> directories;
    for (std::size_t i = 0; i < replacements.size(); ++i) {
        if (!outcomes[i])
            continue;
        auto directory = PutInPlace(replacements[i]);
        if (directory)
            directories.insert(std::move(*directory));
        else
            outcomes[i] = directory.status();
    }
    for (const std::string& directory : directories)
        FlushDirectory(directory);
    return outcomes;
}

// The host's name of the directory that has changed.
Result<std::string> DriveFileSystem::PutInPlace(const Replacement& replacement) {
    const auto source = Existing(replacement.from);
    if (!source)
        return source.status();
    const auto info = Info(replacement.from);
    if (!info || info->kind != EntryKind::File)
        return info ? Status{FileFault::IsLink, replacement.from, 0} : info.status();
    const auto target = names.Resolve(replacement.to);
    if (!target)
        return target.status();
    if (Status unchanged = CheckUnchanged(replacement); !unchanged)
        return unchanged;
    if (rename(source->c_str(), target->path.c_str()) != 0)
        return Failure(replacement.to);
    // Forgotten, not noted: a name that is found at once says nothing of what else has come into its
    // directory.
    names.NoteRemoved(*source);
    names.NoteRemoved(target->path);
    return ParentOf(target->path);
}

Status DriveFileSystem::Link(const std::string& from, const std::string& to) {
    const auto source = Existing(from);
    if (!source)
        return source.status();
    if (const auto info = Info(from); !info || info->kind == EntryKind::Link)
        return info ? Status{FileFault::IsLink, from, ELOOP} : info.status();
    const auto target = Free(to);
    if (!target)
        return target.status();
    if (link(source->c_str(), target->c_str()) != 0)
        return Failure(to);
    names.NoteAdded(*target);
    return {};
}

Status DriveFileSystem::Delete(const std::string& path) {
    const auto hostPath = Existing(path);
    if (!hostPath)
        return hostPath.status();
    struct stat info {};
    if (lstat(hostPath->c_str(), &info) != 0)
        return Failure(path);
    if (S_ISDIR(info.st_mode))
        return {FileFault::Failed, path, EISDIR};
    if (InfoOf(info).readOnly)
        return {FileFault::Denied, path, EACCES};
    if (unlink(hostPath->c_str()) != 0)
        return Failure(path);
    names.NoteRemoved(*hostPath);
    return {};
}

Status DriveFileSystem::CreateDirectory(const std::string& path) {
    const auto hostPath = Free(path);
    if (!hostPath)
        return hostPath.status();
    if (mkdir(hostPath->c_str(), 0777) != 0)
        return Failure(path);
    names.NoteAdded(*hostPath);
    return {};
}

Status DriveFileSystem::RemoveDirectory(const std::string& path) {
    const auto hostPath = Existing(path);
    if (!hostPath)
        return hostPath.status();
    if (rmdir(hostPath->c_str()) != 0)
        return Failure(path);
    names.NoteRemoved(*hostPath);
    return {};
}

Status DriveFileSystem::ClearAttributes(const std::string& path) {
    if (auto status = SetReadOnly(path, false); !status)
        return status;
    static_cast<void>(removexattr(HostPath(path).c_str(), DosAttributes));
    return {};
}

Status DriveFileSystem::SetReadOnly(const std::string& path, bool readOnly) {
    const auto hostPath = Existing(path);
    if (!hostPath)
        return hostPath.status();
    struct stat info {};
    if (lstat(hostPath->c_str(), &info) != 0)
        return Failure(path);
    if (InfoOf(info).kind == EntryKind::Link)
        return {FileFault::IsLink, path, ELOOP};
    const mode_t mode = info.st_mode & 07777;
    const mode_t wanted = readOnly ? mode & ~static_cast<mode_t>(S_IWUSR | S_IWGRP | S_IWOTH) : mode | S_IWUSR;
    return wanted == mode ? Status{} : Outcome(chmod(hostPath->c_str(), wanted), path);
}

Status DriveFileSystem::SetTime(const std::string& path, FileTime time) {
    const auto hostPath = Existing(path);
    if (!hostPath)
        return hostPath.status();
    const std::array<timespec, 2> times = {timespec{0, UTIME_OMIT}, TimeOf(time)};
    return Outcome(utimensat(AT_FDCWD, hostPath->c_str(), times.data(), AT_SYMLINK_NOFOLLOW), path);
}

Result<std::string> DriveFileSystem::Attributes(const std::string& path) const {
    const auto hostPath = Existing(path);
    struct stat info {};
    if (!hostPath || lstat(hostPath->c_str(), &info) != 0)
        return hostPath ? Failure(path) : hostPath.status();
    if (InfoOf(info).kind == EntryKind::Link)
        return std::string();
    return TextOf({.mode = info.st_mode & 07777, .dos = DosAttributesOf(*hostPath)});
}

Status DriveFileSystem::SetAttributes(const std::string& path, const std::string& attributes) {
    const auto hostPath = Existing(path);
    struct stat info {};
    if (!hostPath || lstat(hostPath->c_str(), &info) != 0)
        return hostPath ? Failure(path) : hostPath.status();
    if (InfoOf(info).kind == EntryKind::Link)
        return {};
    const auto wanted = ReadAttributes(attributes);
    if (!wanted)
        return {FileFault::Failed, path, EINVAL};
    mode_t mode = info.st_mode & 07777;
    const auto setMode = [&](mode_t newMode) {
        const bool isSet = mode == newMode || chmod(hostPath->c_str(), newMode) == 0;
        mode = isSet ? newMode : mode;
        return isSet;
    };
    // Only those who may write a file may set what stands beside its mode.
    const bool isSet = DosAttributesOf(*hostPath) == wanted->dos ||
                       (setMode(mode | S_IWUSR) && SetDosAttributes(*hostPath, wanted->dos));
    return isSet && setMode(wanted->mode) ? Status{} : Failure(path);
}

Status DriveFileSystem::CopyAttributes(const std::string& from, const std::string& to) {
    const auto source = Existing(from);
    if (!source)
        return source.status();
    const auto target = Existing(to);
    if (!target)
        return target.status();
    const auto input = OpenRegular(*source, from);
    if (!input)
        return input.status();
    const auto output = OpenRegular(*target, to);
    if (!output)
        return output.status();
    struct stat info {};
    if (fstat(input->get(), &info) != 0)
        return Failure(from);
    const std::array<timespec, 2> times = {info.st_atim, info.st_mtim};
    if (!CopyDosAttributes(input->get(), output->get()) || futimens(output->get(), times.data()) != 0)
        return Failure(to);
    return SetMode(output->get(), info.st_mode) ? Status{} : Failure(to);
}

Result<std::uint64_t> DriveFileSystem::FreeSpace(const std::string& directory) const {
    const auto hostPath = Existing(directory);
    if (!hostPath)
        return hostPath.status();
    struct statvfs info {};
    if (statvfs(hostPath->c_str(), &info) != 0)
        return Failure(directory);
    return static_cast<std::uint64_t>(info.f_bavail) * info.f_frsize;
}

// The device of a path, or of the nearest directory above it that exists.
dev_t DriveFileSystem::VolumeOf(std::string path) const {
    while (!path.empty()) {
        const auto hostPath = Existing(path);
        struct stat info {};
        if (hostPath && stat(hostPath->c_str(), &info) == 0)
            return info.st_dev;
        path = ParentDirectory(path);
    }
    return 0;
}

bool DriveFileSystem::SameVolume(const std::string& a, const std::string& b) const {
    return VolumeOf(a) == VolumeOf(b);
}

std::vector<std::string> DriveFileSystem::Drives() const {
    std::vector<std::string> drives;
    for (const auto& [letter, directory] : names.Drives().directories)
        drives.push_back(std::string(1, static_cast<char>(letter - 'a' + 'A')) + ":\\");
    return drives;
}

std::string DriveFileSystem::StoredPath(const std::string& path) const {
    const auto name = names.Resolve(path);
    if (!name || !name->exists || ParentDirectory(path).empty())
        return path;
    return ParentDirectory(path) + ShownName(name->path.substr(name->path.rfind('/') + 1));
}

std::string DriveFileSystem::HostPath(const std::string& path) const {
    if (path.starts_with(SourcePrefix))
        return *Source(path);
    const auto name = names.Resolve(path);
    return name ? name->path : std::string();
}

std::optional<std::string> DriveFileSystem::PathFromHost(const std::string& hostPath) const {
    const std::unique_ptr<char, void (*)(void*)> canonical(realpath(hostPath.c_str(), nullptr), &std::free);
    std::string real = canonical ? canonical.get() : hostPath;
    if (real == "/")
        real.clear();
    const std::pair<const char, std::string>* best = nullptr;
    for (const auto& drive : names.Drives().directories) {
        const bool leadsThere = real == drive.second || real.starts_with(drive.second + "/");
        if (leadsThere && (!best || drive.second.size() > best->second.size()))
            best = &drive;
    }
    if (!best)
        return std::nullopt;
    std::string path(1, static_cast<char>(best->first - 'a' + 'A'));
    path += ":";
    path += real.size() == best->second.size() ? "/" : ShownName(real.substr(best->second.size()));
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

std::string DriveFileSystem::SourceFromHost(const std::string& hostPath) const {
    if (auto path = PathFromHost(hostPath))
        return std::move(*path);
    const std::unique_ptr<char, void (*)(void*)> canonical(realpath(hostPath.c_str(), nullptr), &std::free);
    std::string path = ShownName(canonical ? canonical.get() : hostPath);
    std::replace(path.begin(), path.end(), '/', '\\');
    return std::string(SourcePrefix.substr(0, SourcePrefix.size() - 1)) + path;
}

} // namespace

std::unique_ptr<FileSystem> MakeDriveFileSystem(DriveMap map) {
    return std::make_unique<DriveFileSystem>(std::move(map));
}

} // namespace korvadex
