// Complete files that replace old ones, each atomically, many together: a disk confirms many in the time of one.
#pragma once

#include "package/command_context.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace korvadex {

// The new files get the times and attributes of the old ones. What fails leaves the old file, and so does a file that
// has changed since it was looked at.
class ReplaceBatch {
  public:
    explicit ReplaceBatch(CommandContext& commandContext) : context(commandContext) {}
    ReplaceBatch(const ReplaceBatch&) = delete;
    ReplaceBatch& operator=(const ReplaceBatch&) = delete;
    ~ReplaceBatch() { Release(); }

    // A scratch directory of this batch alone, on the file's volume, in which its name is free. It is the
    // simulator's wherever that lies on the same volume.
    Result<std::string> DirectoryFor(const std::string& path);
    // The file at directory & own name is to be deleted if it is still there.
    void Drop(const std::string& directory, const std::string& path);
    // The file at directory & own name is complete. seen: the old one, as it was when it was read.
    Status Add(const std::string& directory, const std::string& path, const FileInfo& seen);
    bool IsFull() const { return waiting.size() >= MaxFiles || bytes >= MaxBytes; }
    // Puts all of them in their places.
    void Commit();

    // What did not take its place, with the old file's path in each.
    const std::vector<Status>& Failures() const { return failures; }

  private:
    static constexpr std::size_t MaxFiles = 256;
    static constexpr std::uint64_t MaxBytes = 256u << 20;

    void Release();

    CommandContext& context;
    std::vector<Replacement> waiting;
    std::vector<Status> failures;
    std::map<std::string, std::string> directories; // by what they lie in
    std::uint64_t bytes = 0;
};

} // namespace korvadex
