// A file that one program at a time has for itself: on this machine or, where it lies on a share, on any.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace korvadex {

// Who has it, and since when by his clock; "" for what is not known.
struct LockHolder {
    std::string user, machine, since;
    std::string directory; // of his settings, as his host names it

    bool operator==(const LockHolder&) const = default;
};

// Held until it is destroyed. The system lets go of it when the process ends, however that ends.
class FileLock {
  public:
    // The file goes, unless it has the mark of one who was cut off and was not signed since.
    virtual ~FileLock() = default;
    // Writes there who has it, so that it survives a power cut. May be called again.
    virtual void Sign(const LockHolder& holder) = 0;
    // Whether what this path of the host leads to is the locked file: not so when that has gone, or another has taken
    // its place.
    virtual bool IsAt(const std::string& hostPath) const = 0;
};

enum class LockOutcome {
    Taken,
    HeldByOther, // another process, or another FileLock of this one
    CannotWrite, // no file can be made there: a read-only medium, no permission, no room, the directory is gone
    NoLocks      // the volume offers none, or what stands there is a link or no file at all
};

struct LockAttempt {
    LockOutcome outcome = LockOutcome::NoLocks;
    std::unique_ptr<FileLock> lock = {}; // where it was taken
    LockHolder holder = {};              // where another one has it
    LockHolder left = {};                // where it was taken: whose mark was there, as he was cut off
};

// Makes the file at this path of the host, or takes one that a dead process has left; what stands in it stays until it
// is signed. Does not wait, follows no link.
LockAttempt TakeFileLock(const std::string& hostPath);

// What stands in the file.
std::string TextOf(const LockHolder& holder);
LockHolder HolderOf(std::string_view text);

constexpr std::size_t LongestHolderText = 8192;

// This process, now, with its settings there.
LockHolder ThisHolder(std::string directory = {});

} // namespace korvadex
