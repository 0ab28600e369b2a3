// What a command has done, file by file.
#pragma once

#include "journal/record.h"

#include <string>
#include <vector>

namespace korvadex {

enum class ChangeKind { Came, Went, Changed, Renamed };

struct FileChange {
    ChangeKind kind;
    std::string path;         // of a directory with its backslash
    std::string newPath = {}; // of what was renamed

    bool operator==(const FileChange&) const = default;
};

// What the records come to, by path: each file that came or went in a directory, and the directory itself where it is
// empty. What is kept is looked up on the disk. isReversed: they are those of the undo of the command.
std::vector<FileChange> ListFileChanges(const FileSystem& files, const Journal& journal, bool isReversed);

} // namespace korvadex
