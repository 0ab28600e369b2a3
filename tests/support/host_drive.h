// What a temporary drive needs from the machine that runs the tests.
#pragma once

#include "platform/file_system.h"

#include <filesystem>
#include <memory>
#include <string>

namespace korvadex::test {

struct HostDrive {
    std::filesystem::path hostRoot; // a new, empty directory
    std::string root;               // the same as a Windows path, with a trailing backslash
    std::unique_ptr<FileSystem> files;
};

HostDrive MakeHostDrive();
// Removes the directory with all that a test left there, also what is read-only.
void RemoveHostDrive(const std::filesystem::path& hostRoot);

// Makes a link to a directory or file that exists; false where this machine cannot.
bool MakeHostLink(const FileSystem& files, const std::string& link, const std::string& target);

} // namespace korvadex::test
