// Which pictures a package has, in the order in which they are shown.
#pragma once

#include "package/walk.h"
#include "platform/file_system.h"

#include <string>
#include <vector>

namespace korvadex {

// The picture to be shown first bears its base name in parentheses: (shot1).jpg.
bool IsMarkedFirst(const std::string& fileName);

// Paths by file name without case, the marked picture first.
std::vector<std::string> ListPictures(const std::vector<FileEntry>& images);

// Those below the images directory of a package that is not loaded; its own directory ends in a backslash. A link
// is no images directory.
std::vector<std::string> PackagePictures(const FileSystem& files, const std::string& packageDirectory,
                                         const WalkLimits& limits);

} // namespace korvadex
