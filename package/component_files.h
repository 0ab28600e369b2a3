// Opening and deleting single files of a component list.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

#include <vector>

namespace korvadex {

// Opens the file: .1st, .cfg and .diz in the editor, the rest with the system's program for it.
void OpenComponentFile(CommandContext& context, const std::string& path);

// Deletes the files at these positions of a group's list, after the guards and the question.
Changes DeleteComponentFiles(CommandContext& context, const LoadedPackage& package, int group,
                             const std::vector<int>& positions);

} // namespace korvadex
