// Which file of a package goes where, before anything is touched.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

#include <cstdint>
#include <string>
#include <vector>

namespace korvadex {

// The location that a package is copied into decides its layout.
enum class CopyRoot { Hangar, Staging, Msfs };

// A file that the program itself keeps in a package; what it records is not true of a copy: that is not compressed any
// more, and was not imported.
bool IsProgramFile(const FileEntry& file);

struct PlannedFile {
    std::string source;
    std::string relative; // below the new directory: "Panel\panel.cfg"
    int group = 0;
};

struct CopyPlan {
    // Below the new directory: its sub-directories and files, in the order of the groups. No two have one
    // name.
    std::vector<std::string> directories;
    std::vector<PlannedFile> files;
    // Sources that go beside those of other packages, where no file of the name is there: the sound, effects
    // and modules directories of the root. (Gauges see to themselves.)
    std::vector<std::string> sounds, effects, modules;
    // Gauges that stay behind because no panel.cfg of the package names them.
    std::vector<std::string> leftBehind;
    std::uint64_t bytes = 0; // of everything that may have to be written
};

CopyPlan PlanCopy(CommandContext& context, const LoadedPackage& package, CopyRoot root);

} // namespace korvadex
