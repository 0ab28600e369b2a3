#include "platform/file_system.h"

#include "platform/file_streams_win32.h"
#include "platform/in_parallel.h"
#include "platform/win32.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

namespace korvadex {

namespace {

struct FindCloser {
    void operator()(HANDLE find) const { FindClose(find); }
};
using UniqueFind = std::unique_ptr<std::remove_pointer_t<HANDLE>, FindCloser>;

constexpr DWORD LinkFlags = FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS;
constexpr DWORD ShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

Status Fault(FileFault fault, const std::string& path) {
    return {fault, path, 0};
}

// None of the system's calls below may be reached with a path that they would interpret.
Result<std::wstring> Native(const std::string& path) {
    std::optional<std::wstring> wide = ExtendedPath(path);
    if (!wide)
        return Fault(FileFault::BadName, path);
    return *std::move(wide);
}

// For an entry that is about to come into being: behind `\\?\` the system would store names ("nul", "a.")
// that other programs can neither open nor delete.
Result<std::wstring> NativeNew(const std::string& path) {
    if (!IsStorableName(WithoutBackslash(LastPathComponent(path))))
        return Fault(FileFault::BadName, path);
    return Native(path);
}

bool IsLinkTag(DWORD attributes, DWORD tag) {
    // Other reparse points (files kept in a cloud, compressed by the system) are files like any other.
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           (tag == IO_REPARSE_TAG_SYMLINK || tag == IO_REPARSE_TAG_MOUNT_POINT);
}

FileInfo MakeInfo(DWORD attributes, DWORD tag, DWORD sizeHigh, DWORD sizeLow, const FILETIME& time) {
    FileInfo info;
    if (IsLinkTag(attributes, tag))
        info.kind = EntryKind::Link;
    else if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        info.kind = EntryKind::Directory;
    else
        info.size = (static_cast<std::uint64_t>(sizeHigh) << 32) | sizeLow;
    info.time = FromNativeTime(time);
    // On a directory the flag protects nothing: it marks one with an icon of its own.
    info.readOnly = info.kind == EntryKind::File && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    return info;
}

// The entry's own record in its directory, with the name as stored. No path of ours holds a wildcard that
// could match another one: the callers have seen the entry before.
std::optional<WIN32_FIND_DATAW> FindRecord(const std::wstring& native) {
    WIN32_FIND_DATAW record{};
    const HANDLE find = FindFirstFileExW(native.c_str(), FindExInfoBasic, &record, FindExSearchNameMatch, nullptr, 0);
    if (find == INVALID_HANDLE_VALUE)
        return std::nullopt;
    UniqueFind(find).reset();
    return record;
}

// An entry that is there. A link is the entry, not what it leads to.
struct Entry {
    std::wstring native;
    DWORD attributes = 0;
    FileInfo info;
};

Result<Entry> EntryAt(Result<std::wstring> native, const std::string& path) {
    if (!native)
        return native.status();
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(native->c_str(), GetFileExInfoStandard, &data))
        return NativeFault(path);
    DWORD tag = 0;
    if ((data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
        if (const std::optional<WIN32_FIND_DATAW> record = FindRecord(*native))
            tag = record->dwReserved0;
    }
    const FileInfo info =
        MakeInfo(data.dwFileAttributes, tag, data.nFileSizeHigh, data.nFileSizeLow, data.ftLastWriteTime);
    return Entry{*std::move(native), data.dwFileAttributes, info};
}

Result<Entry> Existing(const std::string& path) {
    return EntryAt(Native(path), path);
}

// The same for what is only read, also from a share.
Result<std::wstring> NativeSource(const std::string& path) {
    std::optional<std::wstring> wide = SourcePath(path);
    if (!wide)
        return Fault(FileFault::BadName, path);
    return *std::move(wide);
}

// For what works on files alone.
Result<Entry> OnlyFile(Result<Entry> entry, const std::string& path) {
    if (entry && entry->info.kind != EntryKind::File)
        return Fault(entry->info.kind == EntryKind::Link ? FileFault::IsLink : FileFault::Failed, path);
    return entry;
}

UniqueHandle Open(const std::wstring& native, DWORD access, DWORD share, DWORD disposition, DWORD flags) {
    const HANDLE handle = CreateFileW(native.c_str(), access, share, nullptr, disposition, flags, nullptr);
    return UniqueHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

// What SetFileAttributesW sets; the others the system keeps itself.
constexpr DWORD SettableAttributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                                     FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;

Status ChangeAttributes(const std::string& path, DWORD taken, DWORD given) {
    const Result<Entry> entry = Existing(path);
    if (!entry)
        return entry.status();
    if (entry->info.kind == EntryKind::Link)
        return Fault(FileFault::IsLink, path);
    const DWORD wanted = (entry->attributes & ~taken) | given;
    // Zero would mean "leave as they are".
    if (wanted != entry->attributes &&
        !SetFileAttributesW(entry->native.c_str(), wanted != 0 ? wanted : DWORD{FILE_ATTRIBUTE_NORMAL}))
        return NativeFault(path);
    return {};
}

// Virus scanners and indexers hold a file for some milliseconds after it was written, and with it every
// directory above it: what they are in the way of is tried again.
bool MoveWithPatience(const std::wstring& from, const std::wstring& to, DWORD flags) {
    for (DWORD wait = 10;; wait *= 2) {
        if (MoveFileExW(from.c_str(), to.c_str(), flags))
            return true;
        const DWORD code = GetLastError();
        if ((code != ERROR_SHARING_VIOLATION && code != ERROR_ACCESS_DENIED) || wait > 80)
            return false;
        Sleep(wait);
    }
}

// Wine takes a change of case alone for a rename of the file to itself, and does nothing: there it goes by
// way of another name.
Status EnsureCase(const std::wstring& target, const std::string& path) {
    const std::optional<WIN32_FIND_DATAW> record = FindRecord(target);
    const std::size_t name = target.rfind(L'\\') + 1;
    if (!record || target.compare(name, std::wstring::npos, record->cFileName) == 0)
        return {};
    const std::wstring stored = target.substr(0, name) + record->cFileName;
    const std::wstring between = target.substr(0, name) + L"~kx~" + record->cFileName;
    if (!MoveWithPatience(stored, between, 0))
        return NativeFault(path);
    if (MoveWithPatience(between, target, 0))
        return {};
    Status failure = NativeFault(path);
    MoveFileExW(between.c_str(), stored.c_str(), 0);
    return failure;
}

// Told by CopyFileExW once the target stands there as a file of ours: only then may a failure remove it.
DWORD CALLBACK NoteTarget(LARGE_INTEGER, LARGE_INTEGER, LARGE_INTEGER, LARGE_INTEGER, DWORD, DWORD, HANDLE, HANDLE,
                          LPVOID targetIsOurs) {
    *static_cast<bool*>(targetIsOurs) = true;
    return PROGRESS_CONTINUE;
}

class WindowsFileSystem final : public FileSystem {
  public:
    Result<std::vector<DirectoryEntry>> List(const std::string& directory) const override;
    Result<FileInfo> Info(const std::string& path) const override;
    bool IsDirectory(const std::string& path) const override;
    Result<std::unique_ptr<InputFile>> OpenForReading(const std::string& path) const override;
    Result<std::unique_ptr<OutputFile>> CreateNew(const std::string& path) override;
    Status Copy(const std::string& from, const std::string& to) override;
    Status Rename(const std::string& from, const std::string& to) override;
    Status Replace(const std::string& from, const std::string& to) override;
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
    std::string HostPath(const std::string& path) const override { return path; }
    std::optional<std::string> PathFromHost(const std::string& hostPath) const override;
    std::string SourceFromHost(const std::string& hostPath) const override;

  private:
    Status PutInPlace(const std::string& from, const std::string& to);
};

std::string WindowsFileSystem::StoredPath(const std::string& path) const {
    const auto native = Native(path);
    const auto record = native ? FindRecord(*native) : std::nullopt;
    return record ? ParentDirectory(path) + FromWide(record->cFileName) : path;
}

Result<std::vector<DirectoryEntry>> WindowsFileSystem::List(const std::string& directory) const {
    const Result<std::wstring> native = Native(directory);
    if (!native)
        return native.status();
    WIN32_FIND_DATAW record{};
    const std::wstring pattern = native->ends_with(L'\\') ? *native + L"*" : *native + L"\\*";
    UniqueFind find(FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &record, FindExSearchNameMatch, nullptr,
                                     FIND_FIRST_EX_LARGE_FETCH));
    std::vector<DirectoryEntry> entries;
    if (find.get() == INVALID_HANDLE_VALUE) {
        (void)find.release();
        const DWORD code = GetLastError();
        // An empty drive has not even the entries "." and "..".
        if (code == ERROR_FILE_NOT_FOUND && IsDirectory(directory))
            return entries;
        const Result<Entry> entry = Existing(directory);
        return NativeFault(directory, entry && entry->info.kind == EntryKind::File ? ERROR_DIRECTORY : code);
    }
    do {
        const std::wstring_view name = record.cFileName;
        if (name != L"." && name != L"..")
            entries.push_back(
                {FromWide(name), MakeInfo(record.dwFileAttributes, record.dwReserved0, record.nFileSizeHigh,
                                          record.nFileSizeLow, record.ftLastWriteTime)});
    } while (FindNextFileW(find.get(), &record));
    if (GetLastError() != ERROR_NO_MORE_FILES)
        return NativeFault(directory);
    std::sort(entries.begin(), entries.end(),
              [](const DirectoryEntry& a, const DirectoryEntry& b) { return LessNoCase(a.name, b.name); });
    return entries;
}

Result<FileInfo> WindowsFileSystem::Info(const std::string& path) const {
    const Result<Entry> entry = EntryAt(NativeSource(path), path);
    if (!entry)
        return entry.status();
    return entry->info;
}

bool WindowsFileSystem::IsDirectory(const std::string& path) const {
    const Result<std::wstring> native = NativeSource(path);
    if (!native)
        return false;
    const DWORD attributes = GetFileAttributesW(native->c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
        return false;
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0)
        return true;
    // A link bears the flag of what it was made for; whether that is there, only following it tells.
    return Open(*native, FILE_READ_ATTRIBUTES, ShareAll, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS) != nullptr;
}

Result<std::unique_ptr<InputFile>> WindowsFileSystem::OpenForReading(const std::string& path) const {
    const Result<Entry> entry = OnlyFile(EntryAt(NativeSource(path), path), path);
    if (!entry)
        return entry.status();
    UniqueHandle handle = Open(entry->native, GENERIC_READ, ShareAll, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN);
    if (!handle)
        return NativeFault(path);
    return MakeInputFile(std::move(handle), path);
}

Result<std::unique_ptr<OutputFile>> WindowsFileSystem::CreateNew(const std::string& path) {
    const Result<std::wstring> native = NativeNew(path);
    if (!native)
        return native.status();
    // Without the flag for links, a link that leads nowhere would have its target made.
    UniqueHandle handle =
        Open(*native, GENERIC_WRITE, FILE_SHARE_READ, CREATE_NEW, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT);
    if (!handle) {
        const DWORD code = GetLastError();
        // A directory of that name is told as "access denied".
        if (code == ERROR_ACCESS_DENIED && GetFileAttributesW(native->c_str()) != INVALID_FILE_ATTRIBUTES)
            return NativeFault(path, ERROR_FILE_EXISTS);
        return NativeFault(path, code);
    }
    return MakeOutputFile(std::move(handle), path);
}

Status WindowsFileSystem::Copy(const std::string& from, const std::string& to) {
    const Result<Entry> source = OnlyFile(EntryAt(NativeSource(from), from), from);
    if (!source)
        return source.status();
    const Result<std::wstring> target = NativeNew(to);
    if (!target)
        return target.status();
    if (GetFileAttributesW(target->c_str()) != INVALID_FILE_ATTRIBUTES)
        return Fault(FileFault::Exists, to);

    bool targetIsOurs = false;
    if (!CopyFileExW(source->native.c_str(), target->c_str(), NoteTarget, &targetIsOurs, nullptr,
                     COPY_FILE_FAIL_IF_EXISTS | COPY_FILE_ALLOW_DECRYPTED_DESTINATION)) {
        Status failure = NativeFault(to);
        if (targetIsOurs) {
            SetFileAttributesW(target->c_str(), FILE_ATTRIBUTE_NORMAL);
            DeleteFileW(target->c_str());
        }
        return failure;
    }
    return {};
}

Status WindowsFileSystem::Rename(const std::string& from, const std::string& to) {
    const Result<Entry> source = Existing(from);
    if (!source)
        return source.status();
    const Result<std::wstring> target = NativeNew(to);
    if (!target)
        return target.status();
    if (!MoveWithPatience(source->native, *target, MOVEFILE_WRITE_THROUGH)) {
        const DWORD code = GetLastError();
        return NativeFault(FaultOfNative(code) == FileFault::Exists ? to : from, code);
    }
    return EqualNoCase(WithoutBackslash(from), WithoutBackslash(to)) ? EnsureCase(*target, to) : Status{};
}

// Written bytes wait in memory, whatever becomes of the file's name.
Status FlushFile(const std::string& path) {
    const Result<Entry> entry = Existing(path);
    if (!entry)
        return entry.status();
    // The names in a directory are kept in order by the volume's journal.
    if (entry->info.kind == EntryKind::Directory)
        return {};
    if (entry->info.kind == EntryKind::Link)
        return Fault(FileFault::IsLink, path);
    // Only one that may write may ask for it.
    if (entry->info.readOnly)
        SetFileAttributesW(entry->native.c_str(), entry->attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
    const UniqueHandle handle = Open(entry->native, GENERIC_WRITE, ShareAll, OPEN_EXISTING, 0);
    const DWORD code = GetLastError();
    if (entry->info.readOnly)
        SetFileAttributesW(entry->native.c_str(), entry->attributes);
    if (!handle)
        return NativeFault(path, code);
    return FlushFileBuffers(handle.get()) ? Status{} : NativeFault(path);
}

std::vector<Status> WindowsFileSystem::Flush(std::span<const std::string> paths) {
    std::vector<Status> outcomes(paths.size());
    ForEachTogether(paths.size(), [&](std::size_t i) { outcomes[i] = FlushFile(paths[i]); });
    return outcomes;
}

std::vector<Status> WindowsFileSystem::ReplaceAll(std::span<const Replacement> replacements) {
    std::vector<std::string> made;
    for (const Replacement& replacement : replacements)
        made.push_back(replacement.from);
    std::vector<Status> outcomes = Flush(made);
    for (std::size_t i = 0; i < replacements.size(); ++i) {
        if (outcomes[i])
            outcomes[i] = CheckUnchanged(replacements[i]);
        if (outcomes[i])
            outcomes[i] = PutInPlace(replacements[i].from, replacements[i].to);
    }
    return outcomes;
}

Status WindowsFileSystem::Replace(const std::string& from, const std::string& to) {
    const Status flushed = FlushFile(from);
    return flushed ? PutInPlace(from, to) : flushed;
}

Status WindowsFileSystem::PutInPlace(const std::string& from, const std::string& to) {
    const Result<Entry> source = OnlyFile(Existing(from), from);
    if (!source)
        return source.status();
    Result<std::wstring> target = NativeNew(to);
    if (!target)
        return target.status();
    const Result<Entry> present = OnlyFile(Existing(to), to);
    if (!present && present.fault() != FileFault::NotFound)
        return present.status();
    if (present) {
        // The file that is replaced keeps the letters of its name.
        if (const std::optional<WIN32_FIND_DATAW> record = FindRecord(*target))
            *target = target->substr(0, target->rfind(L'\\') + 1) + record->cFileName;
        // The system does not replace a read-only file.
        if (present->info.readOnly) {
            if (Status writable = SetReadOnly(to, false); !writable)
                return writable;
        }
    }
    if (!MoveWithPatience(source->native, *target, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        Status failure = NativeFault(to);
        if (present)
            SetFileAttributesW(target->c_str(), present->attributes);
        return failure;
    }
    return {};
}

Status WindowsFileSystem::Link(const std::string& from, const std::string& to) {
    const Result<Entry> source = OnlyFile(Existing(from), from);
    if (!source)
        return source.status();
    const Result<std::wstring> target = NativeNew(to);
    if (!target)
        return target.status();
    return CreateHardLinkW(target->c_str(), source->native.c_str(), nullptr) ? Status{} : NativeFault(to);
}

Status WindowsFileSystem::Delete(const std::string& path) {
    const Result<Entry> entry = Existing(path);
    if (!entry)
        return entry.status();
    if (entry->info.kind == EntryKind::Directory)
        return Fault(FileFault::Failed, path);
    // A link to a directory goes the way of directories, of which nothing but the link is removed.
    const bool isDirectory = (entry->attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (!(isDirectory ? RemoveDirectoryW(entry->native.c_str()) : DeleteFileW(entry->native.c_str())))
        return NativeFault(path);
    return {};
}

Status WindowsFileSystem::CreateDirectory(const std::string& path) {
    const Result<std::wstring> native = NativeNew(path);
    if (!native)
        return native.status();
    if (!CreateDirectoryW(native->c_str(), nullptr))
        return NativeFault(path);
    return {};
}

Status WindowsFileSystem::RemoveDirectory(const std::string& path) {
    const Result<Entry> entry = Existing(path);
    if (!entry)
        return entry.status();
    if (entry->info.kind == EntryKind::Link)
        return Fault(FileFault::IsLink, path);
    if (entry->info.kind == EntryKind::File)
        return NativeFault(path, ERROR_DIRECTORY);
    if (RemoveDirectoryW(entry->native.c_str()))
        return {};
    Status failure = NativeFault(path);
    // The mark of a directory with an icon of its own is in the way: once more without it.
    if (failure.fault == FileFault::Denied && (entry->attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        SetFileAttributesW(entry->native.c_str(), entry->attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
        if (RemoveDirectoryW(entry->native.c_str()))
            return {};
        failure = NativeFault(path);
        SetFileAttributesW(entry->native.c_str(), entry->attributes);
    }
    return failure;
}

Status WindowsFileSystem::ClearAttributes(const std::string& path) {
    return ChangeAttributes(path, FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM, 0);
}

Status WindowsFileSystem::SetReadOnly(const std::string& path, bool readOnly) {
    constexpr DWORD flag = FILE_ATTRIBUTE_READONLY;
    return readOnly ? ChangeAttributes(path, 0, flag) : ChangeAttributes(path, flag, 0);
}

Status WindowsFileSystem::SetTime(const std::string& path, FileTime time) {
    const Result<std::wstring> native = Native(path);
    if (!native)
        return native.status();
    const UniqueHandle handle = Open(*native, FILE_WRITE_ATTRIBUTES, ShareAll, OPEN_EXISTING, LinkFlags);
    const FILETIME lastWrite = ToNativeTime(time);
    if (!handle || !SetFileTime(handle.get(), nullptr, nullptr, &lastWrite))
        return NativeFault(path);
    return {};
}

Result<std::string> WindowsFileSystem::Attributes(const std::string& path) const {
    const Result<Entry> entry = Existing(path);
    if (!entry)
        return entry.status();
    if (entry->info.kind == EntryKind::Link)
        return std::string();
    std::array<char, 16> digits{};
    std::snprintf(digits.data(), digits.size(), "%lx", entry->attributes & SettableAttributes);
    return std::string(digits.data());
}

Status WindowsFileSystem::SetAttributes(const std::string& path, const std::string& attributes) {
    DWORD wanted = 0;
    const char* end = attributes.data() + attributes.size();
    if (const auto entry = Existing(path); entry && entry->info.kind == EntryKind::Link)
        return {};
    if (attributes.empty() || std::from_chars(attributes.data(), end, wanted, 16).ptr != end)
        return Fault(FileFault::Failed, path);
    return ChangeAttributes(path, SettableAttributes, wanted & SettableAttributes);
}

Status WindowsFileSystem::CopyAttributes(const std::string& from, const std::string& to) {
    const Result<Entry> source = Existing(from);
    if (!source)
        return source.status();
    if (Status timed = SetTime(to, source->info.time); !timed)
        return timed;
    return ChangeAttributes(to, SettableAttributes, source->attributes & SettableAttributes);
}

Result<std::uint64_t> WindowsFileSystem::FreeSpace(const std::string& directory) const {
    const Result<std::wstring> native = Native(directory);
    if (!native)
        return native.status();
    ULARGE_INTEGER available{};
    if (!GetDiskFreeSpaceExW(native->c_str(), &available, nullptr, nullptr))
        return NativeFault(directory);
    return std::uint64_t{available.QuadPart};
}

// The serial number of the volume that holds the path, or would hold it once it exists.
std::optional<DWORD> VolumeOf(std::string path) {
    for (; !path.empty(); path = ParentDirectory(path)) {
        const std::optional<std::wstring> native = ExtendedPath(path);
        if (!native)
            return std::nullopt;
        const UniqueHandle handle =
            Open(*native, FILE_READ_ATTRIBUTES, ShareAll, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
        BY_HANDLE_FILE_INFORMATION information{};
        if (handle && GetFileInformationByHandle(handle.get(), &information))
            return information.dwVolumeSerialNumber;
    }
    return std::nullopt;
}

bool WindowsFileSystem::SameVolume(const std::string& a, const std::string& b) const {
    const std::optional<DWORD> volumeOfA = VolumeOf(a);
    return volumeOfA && volumeOfA == VolumeOf(b);
}

std::vector<std::string> WindowsFileSystem::Drives() const {
    std::vector<std::string> drives;
    const DWORD present = GetLogicalDrives();
    for (unsigned letter = 0; letter < 26; ++letter)
        if ((present & (1u << letter)) != 0)
            drives.push_back({static_cast<char>('A' + letter), ':', '\\'});
    return drives;
}

// `\\?\C:\a` and `C:\a` -> `C:\a`; none for what is on no drive.
std::optional<std::string> PlainDrivePath(std::wstring_view native) {
    if (native.starts_with(L"\\\\?\\"))
        native.remove_prefix(4);
    const std::string path = FromWide(native);
    return IsDrivePath(path) ? std::optional(path) : std::nullopt;
}

// Slashes, relative paths and `..` become plain.
std::wstring FullPath(const std::wstring& path) {
    std::wstring full(32768, L'\0');
    full.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    return full;
}

std::optional<std::string> WindowsFileSystem::PathFromHost(const std::string& hostPath) const {
    const std::optional<std::wstring> wide = ToWide(hostPath);
    if (!wide)
        return std::nullopt;
    const std::wstring full = FullPath(*wide);
    // What is there has one name of its own, whatever junction, short name or substituted drive led there. A
    // share has none below a drive and keeps the one it was called by.
    const UniqueHandle handle = Open(full, FILE_READ_ATTRIBUTES, ShareAll, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
    if (handle) {
        std::wstring final(32768, L'\0');
        final.resize(std::min(final.size(), static_cast<std::size_t>(GetFinalPathNameByHandleW(
                                                handle.get(), final.data(), static_cast<DWORD>(final.size()), 0))));
        if (const auto path = PlainDrivePath(final))
            return path;
    }
    return PlainDrivePath(full);
}

std::string WindowsFileSystem::SourceFromHost(const std::string& hostPath) const {
    if (auto path = PathFromHost(hostPath))
        return std::move(*path);
    const std::optional<std::wstring> wide = ToWide(hostPath);
    return wide ? FromWide(FullPath(*wide)) : hostPath;
}

} // namespace

std::unique_ptr<FileSystem> MakeHostFileSystem() {
    return std::make_unique<WindowsFileSystem>();
}

} // namespace korvadex
