// What this machine tells of the directories that a user may choose from.
#pragma once

#include "platform/file_system.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace korvadex {

// Directories end in a backslash; none of them need be there.
struct UserPlaces {
    // Where the user keeps things: the best place for new directories first.
    std::vector<std::string> homes;
    // Disks of the machine itself, as roots: nothing slow, nothing to be inserted.
    std::vector<std::string> drives;
    // What the set-up of a simulator has left word of.
    std::vector<std::string> simulators;
    // Directories for programs, where only administrators may write.
    std::vector<std::string> programs;
    // Directories whose files a service takes to other machines and back.
    std::vector<std::string> synchronised;
    // Whether the user may make entries in a directory that is there, by what the system says of it; nothing is tried.
    std::function<Status(const std::string&)> checkWritable;
};

// All but the homes. The files are to live as long.
UserPlaces FindUserPlaces(const FileSystem& files);

// The same drives for another thread: a file system serves one thread alone.
std::unique_ptr<FileSystem> MakeFileSystemLike(const FileSystem& files);

} // namespace korvadex
