// A disk that fails on demand: the real file system, of which the n-th change goes wrong, or every change
// from the n-th on, as when the program is killed there.
#pragma once

#include "platform/file_system.h"

#include <climits>
#include <functional>

namespace korvadex::test {

// Everything that alters the disk is a change: CreateNew, each Write, Flush and Close of the file it gave,
// Copy, Rename, Replace, Flush, Link, Delete, SetAside, the directory operations and those on attributes and times.
// Changes count from 1.
class FaultyFiles : public FileSystem {
  public:
    // Gives the fault of a change; it is named as its routine is ("Write"), with the path that it alters.
    using Rule = std::function<FileFault(const std::string& change, const std::string& path)>;

    explicit FaultyFiles(FileSystem& realFiles) : real(realFiles) {}

    // One change fails and is not made (a Write leaves half of its bytes, as a full disk does).
    void FailAt(int change, FileFault fault) {
        FailWhere([=, this](auto&, auto&) { return changes == change ? fault : FileFault::None; });
    }
    // That change and all after it fail: nothing is cleaned up any more.
    void StopAt(int change, FileFault fault = FileFault::Failed) {
        FailWhere([=, this](auto&, auto&) { return changes >= change ? fault : FileFault::None; });
    }
    // Every change for which this gives a fault other than None fails.
    void FailWhere(Rule newRule) { rule = std::move(newRule); }
    // Every change of this name whose path has this in it fails.
    void FailOn(const std::string& change, const std::string& part, FileFault fault) {
        FailWhere([=](auto& made, auto& path) {
            return made == change && path.find(part) != std::string::npos ? fault : FileFault::None;
        });
    }
    // What FreeSpace and MakeRoom answer; none asks the real disk.
    std::optional<std::uint64_t> freeSpace;
    // When set (a path that ends in a backslash), all below it counts as a disk of its own: nothing is
    // renamed into it or out of it.
    std::string volume;
    std::string unreadable;             // a directory (with a trailing backslash) that cannot be listed, or a file
    mutable int readsRefused = INT_MAX; // so often, if it is a file

    int Changes() const { return changes; }

    using Path = const std::string&;
    Result<std::vector<DirectoryEntry>> List(Path directory) const override {
        if (directory == unreadable)
            return Status{FileFault::Denied, directory};
        return real.List(directory);
    }
    Result<FileInfo> Info(Path path) const override { return real.Info(path); }
    bool IsDirectory(Path path) const override { return real.IsDirectory(path); }
    Result<std::unique_ptr<InputFile>> OpenForReading(Path path) const override {
        if (IsRefused(path))
            return Status{FileFault::Denied, path};
        return real.OpenForReading(path);
    }
    Result<std::unique_ptr<OutputFile>> CreateNew(Path path) override;
    Status Copy(Path from, Path to) override { return Change("Copy", to, &FileSystem::Copy, from, to); }
    Status Rename(Path from, Path to) override {
        return Move("Rename", from, to, [&] { return real.Rename(from, to); });
    }
    Status Replace(Path from, Path to) override {
        return Move("Replace", from, to, [&] { return real.Replace(from, to); });
    }
    void BeginFlush(Path path) override { real.BeginFlush(path); }
    std::vector<Status> Flush(std::span<const std::string> paths) override;
    std::vector<Status> ReplaceAll(std::span<const Replacement> replacements) override;
    Status Link(Path from, Path to) override {
        return Move("Link", from, to, [&] { return real.Link(from, to); });
    }
    Status SetAside(Path path) override { return Change("SetAside", path, &FileSystem::SetAside, path); }
    Status Delete(Path path) override { return Change("Delete", path, &FileSystem::Delete, path); }
    Status CreateDirectory(Path path) override {
        return Change("CreateDirectory", path, &FileSystem::CreateDirectory, path);
    }
    Status RemoveDirectory(Path path) override {
        return Change("RemoveDirectory", path, &FileSystem::RemoveDirectory, path);
    }
    Status ClearAttributes(Path path) override {
        return Change("ClearAttributes", path, &FileSystem::ClearAttributes, path);
    }
    Status SetReadOnly(Path path, bool readOnly) override {
        return Change("SetReadOnly", path, &FileSystem::SetReadOnly, path, readOnly);
    }
    Status SetTime(Path path, FileTime time) override {
        return Change("SetTime", path, &FileSystem::SetTime, path, time);
    }
    Result<std::string> Attributes(Path path) const override { return real.Attributes(path); }
    Status SetAttributes(Path path, Path attributes) override {
        return Change("SetAttributes", path, &FileSystem::SetAttributes, path, attributes);
    }
    Status CopyAttributes(Path from, Path to) override {
        return Change("CopyAttributes", to, &FileSystem::CopyAttributes, from, to);
    }
    Result<std::uint64_t> FreeSpace(Path directory) const override {
        return freeSpace ? *freeSpace : real.FreeSpace(directory);
    }
    Result<std::uint64_t> MakeRoom(Path directory, std::uint64_t bytes) override {
        return freeSpace ? *freeSpace : real.MakeRoom(directory, bytes);
    }
    bool SameVolume(Path a, Path b) const override { return !CrossesVolumes(a, b) && real.SameVolume(a, b); }
    std::vector<std::string> Drives() const override { return real.Drives(); }
    std::string StoredPath(Path path) const override { return real.StoredPath(path); }
    // A library that opens the file itself does not find it either.
    std::string HostPath(Path path) const override { return real.HostPath(path) + (IsRefused(path) ? "~" : ""); }
    std::optional<std::string> PathFromHost(Path hostPath) const override { return real.PathFromHost(hostPath); }
    std::string SourceFromHost(Path hostPath) const override { return real.SourceFromHost(hostPath); }

  private:
    class Output;

    bool IsRefused(Path path) const { return path == unreadable && readsRefused-- > 0; }

    // Counts a change and tells what becomes of it.
    Status Count(const char* what, Path path);
    template<class Routine, class... Arguments>
    Status Change(const char* what, Path path, Routine routine, const Arguments&... arguments) {
        Status status = Count(what, path);
        return status ? (real.*routine)(arguments...) : status;
    }
    Status Move(const char* what, Path from, Path to, const std::function<Status()>& move);
    bool CrossesVolumes(Path a, Path b) const;

    FileSystem& real;
    int changes = 0;
    Rule rule;
};

// Does the work again and again, each time stopped one change later, until it goes through undisturbed; the number of
// stops.
int StopAtEachChange(FileSystem& files, const std::function<void(FaultyFiles&)>& work);

} // namespace korvadex::test
