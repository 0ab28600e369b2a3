// Which component group a file belongs to, by its name alone.
#pragma once

#include "package/loaded_package.h"
#include "package/walk.h"

#include <span>

namespace korvadex {

struct FilePattern {
    std::string_view text;
    FileMode mode = FileMode::Extension;
};

// What a group collects, in this order. "bmp" is left out: CollectGroup splits it between Panel and Texture.
std::span<const FilePattern> PatternsOf(Group group);

// The files of a group in the order of collection, each once. For Unrecognized every file (links too) that no
// recognition test accepts.
FileList CollectGroup(const Tree& tree, Group group, const PanelBitmapNames& names, const WalkLimits& limits);

// True when the folded file name passes a recognition test; some such names are in no group (mypanel.cfg).
bool IsRecognized(std::string_view key);

} // namespace korvadex
