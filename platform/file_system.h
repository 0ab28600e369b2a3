// The door to the disk: the same operations, names and results on Windows and on Linux.
//
// Paths are Windows paths (see windows_path.h), with or without a trailing backslash where they name a
// directory. A name that exists in another case is that name. Links (symbolic links, junctions) are entries
// of their own: listed, deleted, never followed by what works on an entry (Info, Copy, Delete); a directory
// on the way to an entry may be a link.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace korvadex {

// Why a file operation did not happen. NotFound is an answer, not a failure of the disk.
enum class FileFault {
    None,
    NotFound,
    Exists,       // the target is there already
    NotEmpty,     // the directory still holds entries
    Denied,       // read-only, or no permission
    ReadOnlyDisk, // the whole medium is read-only
    InUse,        // another program holds it
    DiskFull,
    OtherVolume, // a rename across two volumes
    BadName,     // the host cannot store this name or path
    IsLink,      // the operation does not follow links
    Changed,     // it is not as it was when it was read
    NotKept,     // nothing is kept aside here
    Failed       // anything else; the native code tells
};

// The outcome of one operation: what went wrong, on which path, and the host's own number for it.
struct [[nodiscard]] Status {
    FileFault fault = FileFault::None;
    std::string path;
    int nativeCode = 0;

    explicit operator bool() const { return fault == FileFault::None; }
};

// A plain sentence part for a message: "the disk is full", "access was denied" ...
std::string DescribeFault(FileFault fault);
// The same; where the fault tells nothing of the cause, with the host's number behind it: "the disk reported an error
// (5)".
std::string DescribeFault(const Status& status);

// A value, or the Status that says why there is none.
template<class T>
class [[nodiscard]] Result {
  public:
    Result(T value) : content(std::move(value)) {}
    Result(Status failure) : content(std::move(failure)) {}

    explicit operator bool() const { return std::holds_alternative<T>(content); }
    T& operator*() { return std::get<T>(content); }
    const T& operator*() const { return std::get<T>(content); }
    T* operator->() { return &std::get<T>(content); }
    const T* operator->() const { return &std::get<T>(content); }
    Status status() const { return *this ? Status{} : std::get<Status>(content); }
    FileFault fault() const { return *this ? FileFault::None : std::get<Status>(content).fault; }

  private:
    std::variant<T, Status> content;
};

// Time of last change, UTC; hosts keep it to 100 ns or better.
using FileTime = std::chrono::sys_time<std::chrono::nanoseconds>;

enum class EntryKind { File, Directory, Link };

struct FileInfo {
    EntryKind kind = EntryKind::File;
    std::uint64_t size = 0; // bytes; 0 for directories and links
    FileTime time{};
    bool readOnly = false;

    bool operator==(const FileInfo&) const = default;
};

struct DirectoryEntry {
    std::string name; // as stored on the disk
    FileInfo info;
    bool isMountPoint = false; // a directory in which another volume begins
};

class InputFile {
  public:
    virtual ~InputFile() = default;
    // Fills as much of the buffer as there is; 0 at the end of the file.
    virtual Result<std::size_t> Read(std::span<std::byte> buffer) = 0;
};

class OutputFile {
  public:
    virtual ~OutputFile() = default; // closes without a promise
    virtual Status Write(std::span<const std::byte> bytes) = 0;
    // All that was written so far is on the disk when this returns; the file stays open.
    virtual Status Flush() = 0;
    // Closes. With flush, everything is on the disk before this returns.
    virtual Status Close(bool flush) = 0;
};

// One file that is complete, and the file whose place it takes.
struct Replacement {
    std::string from, to;
    std::optional<FileInfo> seen = {}; // `to` as it was read: with another size or time it is left (Changed)
};

// What looks at the disk, that is all that is const, may be called on several threads at once while nothing is changed.
class FileSystem {
  public:
    virtual ~FileSystem() = default;

    // Name, kind, size and time of every entry in one pass, ordered without case by name.
    virtual Result<std::vector<DirectoryEntry>> List(const std::string& directory) const = 0;
    // The same, but of files perhaps nothing beside name and kind, where more takes longer.
    virtual Result<std::vector<DirectoryEntry>> ListKinds(const std::string& directory) const {
        return List(directory);
    }
    // The entry itself; a link is reported as a link.
    virtual Result<FileInfo> Info(const std::string& path) const = 0;
    // The path with its last name as it is stored on the disk; as given where nothing is there.
    virtual std::string StoredPath(const std::string& path) const = 0;
    // True when the path names a directory, also through a link (a location may be one).
    virtual bool IsDirectory(const std::string& path) const = 0;

    virtual Result<std::unique_ptr<InputFile>> OpenForReading(const std::string& path) const = 0;
    // A new, empty file. Exists when the name is taken, in whatever case.
    virtual Result<std::unique_ptr<OutputFile>> CreateNew(const std::string& path) = 0;

    // A new copy with time and attributes of the source; never replaces (Exists), leaves no half file behind.
    virtual Status Copy(const std::string& from, const std::string& to) = 0;
    // Renames a file or directory on one volume; never replaces (Exists). A change of case alone is possible.
    virtual Status Rename(const std::string& from, const std::string& to) = 0;
    // The same for many, none of which depends on another; an outcome for each. Quicker where each is written down.
    virtual std::vector<Status> RenameAll(std::span<const Replacement> renames);
    // Puts the file `from` in the place of the file `to` in one step, on disk when it returns. Where it
    // fails, `to` is as it was.
    virtual Status Replace(const std::string& from, const std::string& to) = 0;
    // A hint that the file will be put in place soon: the disk may begin to take its bytes.
    virtual void BeginFlush(const std::string& /*path*/) {}
    // All that was written to these files, and to directories (which names they hold), is on the disk when this
    // returns; an outcome for each. Far quicker for many at once than for one after another.
    virtual std::vector<Status> Flush(std::span<const std::string> paths) = 0;
    // The same as Replace for many files, whose bytes reach the disk together; an outcome for each.
    virtual std::vector<Status> ReplaceAll(std::span<const Replacement> replacements);
    // Gives the file a second name; never replaces (Exists). Failed or Denied where the volume has no such names.
    virtual Status Link(const std::string& from, const std::string& to) = 0;
    // Deletes a file or a link. A read-only file is refused (Denied) on every host.
    virtual Status Delete(const std::string& path) = 0;

    // Takes a file, a link or a directory with all in it away in one step, where this file system keeps what goes.
    // NotKept: it does not, and nothing has happened; any other fault: it should, and nothing has happened.
    virtual Status SetAside(const std::string& path);

    // One level; Exists when an entry of that name is there already.
    virtual Status CreateDirectory(const std::string& path) = 0;
    // Only when empty (NotEmpty).
    virtual Status RemoveDirectory(const std::string& path) = 0;

    // Clears read-only, hidden and system.
    virtual Status ClearAttributes(const std::string& path) = 0;
    virtual Status SetReadOnly(const std::string& path, bool readOnly) = 0;
    virtual Status SetTime(const std::string& path, FileTime time) = 0;
    // The host's own attributes of a file or directory as a short text without blanks, and the way back; "" for a
    // link, to which SetAttributes does nothing.
    virtual Result<std::string> Attributes(const std::string& path) const = 0;
    virtual Status SetAttributes(const std::string& path, const std::string& attributes) = 0;
    // Gives `to` the time and attributes of `from`.
    virtual Status CopyAttributes(const std::string& from, const std::string& to) = 0;

    // Bytes that the user may still write to the volume of that directory.
    virtual Result<std::uint64_t> FreeSpace(const std::string& directory) const = 0;
    // The same after giving up what is kept aside there, while there is room for fewer bytes than these.
    virtual Result<std::uint64_t> MakeRoom(const std::string& directory, std::uint64_t bytes);
    virtual bool SameVolume(const std::string& a, const std::string& b) const = 0;

    // Whether the file to be replaced is still as it was seen.
    Status CheckUnchanged(const Replacement& replacement) const;

    // The drives that can be named, as roots: "C:\", "Z:\".
    virtual std::vector<std::string> Drives() const = 0;
    // The path by which other programs of the host know a file, and back; none when no drive leads there.
    virtual std::string HostPath(const std::string& path) const = 0;
    virtual std::optional<std::string> PathFromHost(const std::string& hostPath) const = 0;
    // The same for a file that is only to be read. Where no drive leads, it is a path that Info, IsDirectory,
    // OpenForReading, HostPath and the source of Copy alone understand (`\\?\unix\home\a.zip`, `\\server\share\a.zip`);
    // for everything else it is a BadName.
    virtual std::string SourceFromHost(const std::string& hostPath) const = 0;
};

// Writes all of it, in pieces of a size that systems take fastest.
Status WriteAll(OutputFile& file, std::span<const std::byte> bytes);
// A new file of these bytes, not flushed. Exists when the name is taken; any other failure may leave a part of it.
Status WriteNew(FileSystem& files, const std::string& path, std::span<const std::byte> bytes);

// Makes a directory unless there is one, or a link to one. True when it was made now.
Result<bool> EnsureDirectory(FileSystem& files, const std::string& directory);
// The same where nothing may be put behind a link: that one is refused (IsLink).
Result<bool> EnsureRealDirectory(FileSystem& files, const std::string& directory);

// The file system of the machine that the program runs on.
std::unique_ptr<FileSystem> MakeHostFileSystem();

} // namespace korvadex
