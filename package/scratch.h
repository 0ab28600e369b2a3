// Where half-done work lives until it is whole: names that no list shows, on the volume of what they become.
#pragma once

#include "package/locations.h"
#include "platform/file_system.h"

#include <string>
#include <utility>

namespace korvadex {

// A free name for something that will take the place of target (a file or a directory), without a trailing
// backslash, and its directory made: <location>\~kx~scratch\<random number>~<name>, or beside the target when the
// location's own scratch directory lies on another volume or the target lies in no location. Call
// ReleaseScratch afterwards.
Result<std::string> MakeScratchName(FileSystem& files, const Locations& locations, const std::string& target);

// Deletes what is left under a scratch name, and its scratch directory when that is empty. Refuses any other
// name.
void ReleaseScratch(FileSystem& files, const std::string& scratch);

// Calls it when it goes, however the work ends.
class ScratchScope {
  public:
    ScratchScope(FileSystem& fileSystem, std::string scratchName) : files(fileSystem), name(std::move(scratchName)) {}
    ~ScratchScope() { ReleaseScratch(files, name); }
    ScratchScope(const ScratchScope&) = delete;
    ScratchScope& operator=(const ScratchScope&) = delete;

  private:
    FileSystem& files;
    const std::string name;
};

// The directories, each with its backslash, with what an interrupted run has left in the locations (and beside
// installed aircraft and packages).
std::vector<std::string> ScratchDirectories(const FileSystem& files, const Locations& locations);
// Removes them.
void CleanScratch(FileSystem& files, const Locations& locations);
// The same in one directory, such as that of the settings file.
void CleanScratchIn(FileSystem& files, const std::string& directory);

// Text or bytes in place whole, through a scratch name of the right location.
Status RewriteBytes(FileSystem& files, const Locations& locations, const std::string& path, std::string_view bytes);
Status RewriteLines(FileSystem& files, const Locations& locations, const std::string& path,
                    const std::vector<std::string>& lines);
// A copy of the file `from`, with its time and attributes, in the place of the file `to`.
Status ReplaceByCopy(FileSystem& files, const Locations& locations, const std::string& from, const std::string& to);

} // namespace korvadex
