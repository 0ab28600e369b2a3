// The few questions and deletions that every command uses.
#pragma once

#include "package/command_context.h"
#include "package/walk.h"

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

// Clears the attributes, then deletes; false when the file is still there.
bool DeleteFileForced(FileSystem& files, const std::string& path);
// The same; "" when the file is gone, else its path and the reason: "C:\a.txt (access was denied)".
std::string DeleteOrExplain(FileSystem& files, const std::string& path);
// The same for a file that was listed: one that has changed since stays, as it is another one by now.
std::string DeleteListed(FileSystem& files, const FileEntry& listed);
// Removes a directory that holds nothing but what file managers write there; true when it is gone.
bool RemoveEmptyDirectory(FileSystem& files, const std::string& path);

// All that was written to these files and directories is on the disk when this returns; otherwise the first fault.
Status FlushFiles(FileSystem& files, const std::vector<std::string>& paths);

// Deletes a file, a link or a directory with all in it: in one step, whole or not at all, where the disk keeps what
// goes (SetAside), else one by one. Links go as links. The file `last` in the directory (a full path) goes when all the
// rest has gone. Gives what is left, but for directories that hold what is named already.
std::vector<Status> DeleteAll(FileSystem& files, const std::string& path, const std::string& last = {});
// The same for each entry of the directory, which stays.
std::vector<Status> DeleteContents(FileSystem& files, const std::string& directory);

// Only trees within a location may go, none that holds a location, and never the places that collections hang
// from.
bool MayBeDeleted(const Locations& locations, const std::string& path);

// Deletes a directory of a full drive-letter path that holds no location, or all that is in Staging, which stays;
// otherwise a critical message, and the program ends (ProgramEnd).
std::vector<Status> DeleteTree(CommandContext& context, const std::string& path, const std::string& last = {});

// "Done.", or what could not be deleted and what to do about it.
void TellDeleted(CommandContext& context, const std::vector<std::string>& remaining);
void TellDeleted(CommandContext& context, const std::vector<Status>& remaining);

// The directories in a directory, and the links to directories; see IsSubdirectory.
std::vector<std::string> SubdirectoryNames(const FileSystem& files, const std::string& path);
bool HasSubdirectory(const FileSystem& files, const std::string& parentPath, std::string_view name);
// No entry at all but what no list shows.
bool StagingIsEmpty(const FileSystem& files, const Locations& locations);

std::string SpacesToUnderscores(std::string_view text);
std::string UnderscoresToSpaces(std::string_view text);

// The name under which a package stands below the simulator's aircraft directory: its own, or with blanks as
// "_" (which overrides when both exist); "" when it is not there.
std::string FindSimAircraftDirectory(const FileSystem& files, const Locations& locations, std::string_view name);
// The same with the two parts of the path given: directory ends in a backslash.
std::string FindSimAircraftDirectory(const FileSystem& files, std::string_view directory, std::string_view name);

// The same answers for many packages, from one listing of the simulator's aircraft directory.
class SimAircraft {
  public:
    SimAircraft(const FileSystem& files, const Locations& locations);
    std::string FindDirectory(std::string_view name) const;
    bool Holds(std::string_view name) const { return !FindDirectory(name).empty(); }

  private:
    const FileSystem& files;
    const std::string directory;
    bool isListed = false;       // otherwise the disk is asked for each name
    std::set<std::string> names; // in lower case
};

} // namespace korvadex
