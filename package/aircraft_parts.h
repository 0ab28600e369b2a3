// Several aircraft that an archive has brought into Staging together: which of its files belong to which.
#pragma once

#include "package/walk.h"

#include <map>
#include <string>
#include <vector>

namespace korvadex {

// What was unpacked from an archive, as it was directly after that: what came there from elsewhere is not among it.
struct ArchiveContents {
    std::string directory; // in Staging, ends in a backslash
    std::vector<FileEntry> files = {};
    std::vector<std::string> directories = {}; // below it, full paths without a trailing backslash
    // What was unpacked from a nested archive, by its directory (folded, ends in a backslash): where that archive was.
    std::map<std::string, std::string> nested = {};
};

// A directory with an aircraft.cfg. A file belongs to the innermost one above it; what a nested archive without one
// holds belongs where that archive was. All other files belong to all.
struct AircraftPart {
    std::string directory; // full path, ends in a backslash
    std::string name = {}; // the directory within the archive: "Jets\Lear", "." for the archive's own
    // Its title, of several configurations that of the first; without one the name of its directory or archive.
    std::string caption = {};
    std::size_t configurations = 0;
    std::size_t files = 0; // of its own
};

// By directory.
std::vector<AircraftPart> FindAircraftParts(const FileSystem& files, const ArchiveContents& contents);

// Deletes what belongs to the other parts, and the directories that this leaves empty. What has changed since it was
// unpacked stays. Gives what is left of them, each with the reason.
std::vector<std::string> DeleteOtherParts(FileSystem& files, const ArchiveContents& contents,
                                          const std::vector<AircraftPart>& parts, std::size_t kept);

} // namespace korvadex
