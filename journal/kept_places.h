// Where what commands take away is kept: on its own volume, in a directory that nothing else looks into.
#pragma once

#include "platform/file_system.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace korvadex {

// The directories that may hold what is kept, each with its backslash: the first one on a thing's volume does.
using KeptLocations = std::vector<std::string>;

// The kept things of one command:
//   <location>\~kx~kept\<command>\3\Lear      what was called Lear in the third directory from which something was kept
class KeptPlaces {
  public:
    // command: a name that no other has, of whatever installation.
    KeptPlaces(FileSystem& files, KeptLocations locations, std::string command);

    struct Place {
        std::string path;         // free, and its directory is there
        std::string newDirectory; // the directory of that path, when this thing is the first in it
    };
    // For the file, link or directory `path`.
    Result<Place> PlaceFor(const std::string& path);

    const KeptLocations& Locations() const { return locations; }
    // The directories <location>\~kx~kept\<command>\ that were made so far.
    const std::set<std::string>& Directories() const { return directories; }

  private:
    // With a backslash.
    std::string LocationFor(const std::string& parent) const;
    Result<std::string> NewDirectory(const std::string& parent);

    FileSystem& files;
    const KeptLocations locations;
    const std::string command;
    std::set<std::string> directories;
    std::map<std::string, std::string> current; // by the folded parent: the numbered directory for its things
};

// A file or a link, also a read-only one.
Status DeleteOne(FileSystem& files, const std::string& path);
// All that is kept of one command in this directory (one of KeptPlaces::Directories), and its parent when it is empty
// then. Links go as links, and what lies on another volume stays.
void DeleteKept(FileSystem& files, const std::string& directory);

// The same of one of the numbered directories in it.
void DeleteNumbered(FileSystem& files, const std::string& directory);

// There is no file in it, nor anything else but directories; or it is not there.
bool HoldsNothing(const FileSystem& files, const std::string& directory);

struct KeptSize {
    std::uint64_t files = 0, bytes = 0;
};
// Of the files at and below the path.
KeptSize SizeOf(const FileSystem& files, const std::string& path);
// Bytes of the files in these directories, each with its backslash.
std::uint64_t SizeOf(const FileSystem& files, const std::vector<std::string>& directories);

} // namespace korvadex
