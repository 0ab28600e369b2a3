// A disk that fails on demand: the real file system, of which the n-th change goes wrong, or every change
// from the n-th on, as when the program is killed there.
#pragma once

#include "platform/file_system.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace korvadex::test {

// Everything that alters the disk is a change: CreateNew, each Write and Close of the file it gave, Copy,
// Rename, Replace, Delete, the directory operations and those on attributes and times. Changes count from 1.
class FaultyFiles : public FileSystem {
  public:
    explicit FaultyFiles(FileSystem& realFiles) : real(realFiles) {}

    // One change fails and is not made (a Write leaves half of its bytes, as a full disk does).
    void FailAt(int change, FileFault fault);
    // That change and all after it fail: nothing is cleaned up any more.
    void StopAt(int change, FileFault fault = FileFault::Failed);
    // Every change for which this gives a fault other than None fails. What is done is named as in Log():
    // "Write".
    void FailWhere(std::function<FileFault(const std::string& change, const std::string& path)> rule);
    // What FreeSpace answers; none asks the real disk.
    std::optional<std::uint64_t> freeSpace;
    // When set (a path that ends in a backslash), all below it counts as a disk of its own: nothing is
    // renamed into it or out of it.
    std::string volume;

    int Changes() const { return static_cast<int>(log.size()); }
    // "Replace C:\a -> C:\b", "Write C:\a" ... in order, failed ones included.
    const std::vector<std::string>& Log() const { return log; }

    Result<std::vector<DirectoryEntry>> List(const std::string& directory) const override;
    Result<FileInfo> Info(const std::string& path) const override;
    bool IsDirectory(const std::string& path) const override;
    Result<std::unique_ptr<InputFile>> OpenForReading(const std::string& path) const override;
    Result<std::unique_ptr<OutputFile>> CreateNew(const std::string& path) override;
    Status Copy(const std::string& from, const std::string& to) override;
    Status Rename(const std::string& from, const std::string& to) override;
    Status Replace(const std::string& from, const std::string& to) override;
    Status Delete(const std::string& path) override;
    Status CreateDirectory(const std::string& path) override;
    Status RemoveDirectory(const std::string& path) override;
    Status ClearAttributes(const std::string& path) override;
    Status SetReadOnly(const std::string& path, bool readOnly) override;
    Status SetTime(const std::string& path, FileTime time) override;
    Status CopyAttributes(const std::string& from, const std::string& to) override;
    Result<std::uint64_t> FreeSpace(const std::string& directory) const override;
    bool SameVolume(const std::string& a, const std::string& b) const override;
    std::vector<std::string> Drives() const override;
    std::string HostPath(const std::string& path) const override;
    std::optional<std::string> PathFromHost(const std::string& hostPath) const override;

  private:
    class Output;

    // Counts a change and tells what becomes of it.
    Status Change(const char* what, const std::string& path, const std::string& to = "");
    bool CrossesVolumes(const std::string& a, const std::string& b) const;

    FileSystem& real;
    std::vector<std::string> log;
    int failing = 0, stopping = 0;
    FileFault failFault = FileFault::Failed, stopFault = FileFault::Failed;
    std::function<FileFault(const std::string&, const std::string&)> rule;
};

} // namespace korvadex::test
