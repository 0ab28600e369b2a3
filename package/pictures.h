// The pictures of a package in the order in which they are shown.
#pragma once

#include "package/walk.h"

#include <string>
#include <vector>

namespace korvadex {

// The picture to be shown first bears its base name in parentheses: (shot1).jpg.
bool IsMarkedFirst(const std::string& fileName);

// Paths by file name without case, the marked picture first.
std::vector<std::string> ListPictures(const std::vector<FileEntry>& images);

} // namespace korvadex
