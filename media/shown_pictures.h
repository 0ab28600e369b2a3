// The pictures of the loaded package in the main window: going from one to the next, deleting one, making one
// the first.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

#include <optional>
#include <string>

namespace korvadex {

// The current image index counts from 1; 0 means that the package has no picture. Both wrap round.
int NextImage(const LoadedPackage& package, int index);
int PreviousImage(const LoadedPackage& package, int index);
// Its path; "" for 0.
std::string ImageAt(const LoadedPackage& package, int index);

// Asks, then deletes the picture unless it is another one by then. True when the package is to be loaded again.
bool DeleteImage(CommandContext& context, const std::string& path);
// To be called when the package was loaded again: a Hangar package without pictures keeps no empty images
// directory.
void RemoveEmptyImagesDirectory(FileSystem& files, LoadedPackage& package);

// Gives the picture the mark, "(shot1).jpg", and takes it off every other: these get their plain name, or the
// next free number. The new path; none, after a message, when a file could not be renamed. The package is to
// be loaded again in both cases.
std::optional<std::string> MakeFirstImage(CommandContext& context, const LoadedPackage& package,
                                          const std::string& path);

} // namespace korvadex
