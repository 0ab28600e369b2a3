// Loading a package of the Hangar, or Staging, for the main window.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

namespace korvadex {

struct LoadOutcome {
    // A configuration was chosen: the package name field is emptied.
    bool isConfigurationChosen = false;
    // Two files of one name in a Hangar package: nothing was loaded.
    std::vector<std::string> twins;
};

// Loads the directory `path` (ends in a backslash) into package, from nothing. In Staging it settles
// duplicate names, reduces aircraft.cfg and warns of executables.
LoadOutcome LoadPackage(CommandContext& context, const std::string& path, bool isStaging,
                        LoadedPackage& package);

// True when the tree on disk is no longer the one that was loaded (names, sizes or times).
bool HasChangedOnDisk(const FileSystem& files, const LoadedPackage& package);

// Staging can hold one aircraft only: asks for removal while there are several aircraft.cfg files. To be
// called before Staging is loaded. Throws ProgramEnd when the user keeps them.
void CheckSingleAircraftCfg(CommandContext& context);

} // namespace korvadex
