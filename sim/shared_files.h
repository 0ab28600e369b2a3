// Files that a package puts beside those of other aircraft: gauges, sounds, effects, modules. What stands
// there is never touched; the rollback of a command that fails takes just what it has added.
#pragma once

#include "package/command_context.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

class SharedFiles {
  public:
    explicit SharedFiles(CommandContext& command) : context(command) {}

    // Makes the directory (one level) when it is missing.
    Status EnsureDirectory(const std::string& directory);

    // Copies each source into the directory (ends in a backslash) under its own name, unless a file of that
    // name is there; one without a single byte, as a power cut leaves them, is replaced. Packed files with the ending
    // are unpacked on the way. They appear when all of them are complete.
    Status Place(const std::string& directory, const std::vector<std::string>& sources,
                 std::string_view packedEnding = {}, const std::function<void()>& afterEach = {});

    // What was placed so far, full paths.
    const std::vector<std::string>& Placed() const { return placed; }
    // The files and directories that are to be flushed, so that what was placed is on the disk.
    std::vector<std::string> PathsToFlush() const;

    // Deletes what was placed and made so far.
    void Rollback();

  private:
    bool IsMissing(const std::string& source, const std::string& target) const;
    // After the renaming of the copy, which had this outcome.
    Status Settle(const std::string& copy, const std::string& target, Status status);
    Status PlaceThrough(const std::string& scratch, const std::string& directory,
                        const std::vector<std::string>& sources, std::string_view packedEnding,
                        const std::function<void()>& afterEach);

    CommandContext& context;
    std::vector<std::string> placed;
    std::vector<std::string> replaced;    // of those, where an empty file stood
    std::vector<std::string> directories; // made here
};

// Unpacks a copy of the package's file `source` if it is packed. A damaged one is reported and stays as it is; Failed
// when a sound one could not be unpacked.
Status UnpackCopy(CommandContext& context, const std::string& path, const std::string& source);

// True when the file holds the bytes of the package's file, unpacked where that one is packed. The package is
// not changed.
bool HoldsUnpackedBytes(CommandContext& context, const std::string& packageFile, const std::string& file);

// "The package could not be copied ...", with the file, the cause and what to do.
void TellCopyFailed(CommandContext& context, const Status& failure);

// What to do about a fault, as a sentence.
std::string NextStep(FileFault fault);

} // namespace korvadex
