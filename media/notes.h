// The notes that the user keeps with a package: one text file, edited in the system's text editor.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

#include <string_view>

namespace korvadex {

inline constexpr std::string_view NotesName = "kx_note.txt";

// Makes an empty notes file in the package's directory "Documentation", which is made where it is missing, and
// opens it. A file that stands there, listed or not, keeps what it holds.
Changes CreateNotes(CommandContext& context, const LoadedPackage& package);

// These work on the notes file that the package lists, wherever it lies.
Changes ReadNotes(CommandContext& context, const LoadedPackage& package);
Changes DeleteNotes(CommandContext& context, const LoadedPackage& package);

// Opens the directory of the package, of the category where none is loaded, or Staging, in the file manager.
void ExplorePackage(CommandContext& context, const LoadedPackage& package);

} // namespace korvadex
