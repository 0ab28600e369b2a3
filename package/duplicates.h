// Files of one name in one component group: which of them stay, and under which names.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

#include <optional>

namespace korvadex {

// "Do this for all further duplicates": lives for one load.
struct DuplicateChoice {
    std::optional<bool> keepFirst;
};

// Orders files by name, those of one name by full path, without case.
void SortByName(std::vector<FileEntry>& files);

// Documents and pictures of one name: in Staging one of two with the same bytes is deleted; differing ones
// are renamed to name(1), name(2) ... A rename never replaces a file, and one that fails leaves the name. The
// tree follows. True when it has changed.
bool SettleDocuments(CommandContext& context, bool isStaging, std::vector<FileEntry>& files, Tree& tree);

// All other files of one name, in Staging: keeps one of each name, by rule or by question, and deletes the
// others from the disk, the list and the tree. One that cannot be deleted stays in all three. True when the tree has
// changed.
bool SettleStagingDuplicates(CommandContext& context, DuplicateChoice& choice, std::vector<FileEntry>& files,
                             Tree& tree);

// Those files of a sorted list that have one name, documents and pictures left out.
std::vector<std::string> FilesOfOneName(const std::vector<FileEntry>& files);

// Two files of one name in a Hangar package: a sign of a wrong Hangar location. Says so and ends the program.
[[noreturn]] void StopOnHangarDuplicate(CommandContext& context, const std::vector<std::string>& twins);

} // namespace korvadex
