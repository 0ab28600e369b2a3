// The files and directories that an archive brings, below the directory that it is unpacked into and nowhere
// else.
#pragma once

#include "archive/unzip_library.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace korvadex {

// What became of one step. An empty reason with a code other than 0 is told by the code alone.
struct MemberOutcome {
    int code = UnzipCode::Ok;
    std::string reason;    // why the member is left out
    bool stopsAll = false; // the disk is full or takes nothing: the other members would only fail as well

    bool IsFine() const { return code == UnzipCode::Ok && reason.empty(); }
};

class MemberFiles {
  public:
    MemberFiles(UnzipDisk unzipDisk, std::string_view extractDirectory);

    // Where a member of these components lies.
    std::string PathOf(std::span<const std::string> components) const;
    // The directories of these components, made where they are missing; real ones, not links.
    MemberOutcome MakeDirectories(std::span<const std::string> components);

    // Opens a new file at path, whose directory stands. isTaken: a file of that name is there already.
    MemberOutcome Create(const std::string& path, bool& isTaken);
    // Opens a file that takes the place of the one at path when it is finished.
    MemberOutcome CreateBeside(const std::string& path);
    MemberOutcome Write(std::span<const std::byte> bytes);
    // Closes what was opened, gives it its time and puts it in its place.
    MemberOutcome Finish(FileTime time);
    // Deletes what was opened and is not finished.
    void Abandon();

    // Removes the directories that were made, as far as they are empty.
    void RemoveMadeDirectories();
    // Bytes free where the members go; none when the disk does not say.
    Result<std::uint64_t> FreeSpace() const;

  private:
    MemberOutcome EnsureDirectory(const std::string& path);
    MemberOutcome Open(const std::string& path, Result<std::unique_ptr<OutputFile>> created);

    UnzipDisk disk;
    std::string directory; // ends in a backslash
    std::string root;      // the location it lies in: that one may be a link, nothing below may
    std::unordered_set<std::string> known; // directories that stand, in lower case
    std::vector<std::string> made;         // in the order of making
    std::unique_ptr<OutputFile> file;
    std::string filePath, finalPath; // the same, unless the file takes another one's place
};

} // namespace korvadex
