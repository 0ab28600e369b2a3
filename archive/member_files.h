// The files and directories that an archive brings, below the directory that it is unpacked into and nowhere
// else.
#pragma once

#include "archive/unpack.h"

#include <memory>
#include <set>
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

// Each file is written under a scratch name and gets its own when it is whole.
class MemberFiles {
  public:
    MemberFiles(UnpackDisk unpackDisk, std::string_view extractDirectory);
    ~MemberFiles(); // what is not finished is deleted
    MemberFiles(const MemberFiles&) = delete;
    MemberFiles& operator=(const MemberFiles&) = delete;

    // Where a member of these components lies.
    std::string PathOf(std::span<const std::string> components) const;
    // The directories of these components, made where they are missing; real ones, not links.
    MemberOutcome MakeDirectories(std::span<const std::string> components);

    // Whether a file stands at path already; anything else there is in the way.
    MemberOutcome LookAt(const std::string& path, bool& isTaken);
    // Opens the file that is to stand at path, in the place of the one there or, otherwise, where none is.
    MemberOutcome Create(const std::string& path, bool replaces);
    MemberOutcome Write(std::span<const std::byte> bytes);
    // Closes what was opened, gives it its time and puts it in its place.
    MemberOutcome Finish(FileTime time);
    // Deletes what was opened and is not finished.
    void Abandon();

    // Removes the directories that were made, as far as they are empty.
    void RemoveMadeDirectories();
    // The files that were put in their places, and the directories that have changed: all that is to be flushed.
    std::vector<std::string> Written() const;
    // Bytes free where the members go, these if they can be had; none when the disk does not say.
    Result<std::uint64_t> MakeRoom(std::uint64_t bytes);

  private:
    MemberOutcome EnsureDirectory(const std::string& path);
    MemberOutcome MakeScratch();

    UnpackDisk disk;
    std::string directory;                 // ends in a backslash
    std::string root;                      // the location it lies in: that one may be a link, nothing below may
    std::unordered_set<std::string> known; // directories that stand, in lower case
    std::vector<std::string> made;         // in the order of making
    std::vector<std::string> finished;     // files
    std::set<std::string> changed;         // directories
    std::string scratch;                   // a directory, once there is one
    std::unique_ptr<OutputFile> file;
    std::string filePath, finalPath;
    bool isReplacing = false;
};

} // namespace korvadex
