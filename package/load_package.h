// Loading a package of the Hangar, or Staging, for the main window.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

namespace korvadex {

struct LoadOutcome {
    // A configuration was chosen: its title is proposed as the name of the package.
    bool isConfigurationChosen = false;
    // Two files of one name in a Hangar package: nothing was loaded.
    std::vector<std::string> twins;
};

// Whether a load of Staging asks which of several configurations to keep. Again: it follows another one in the same
// command, and does not warn a second time. AsItIs: nothing at all is settled on the disk, nor is it in a package.
enum class ChoiceQuestion { Ask, LeaveOpen, Again, AsItIs };

// Loads a package of the Hangar, from nothing.
LoadOutcome LoadPackage(CommandContext& context, const PackageRef& ref, LoadedPackage& package,
                        ChoiceQuestion question = ChoiceQuestion::LeaveOpen);
// The same of Staging. It reduces the aircraft to one configuration, then settles duplicate names, and warns of
// executables; as long as none of several configurations is kept, everything is listed as it is.
LoadOutcome LoadStaging(CommandContext& context, LoadedPackage& package, ChoiceQuestion question = ChoiceQuestion::Ask);

// True when the tree on disk is no longer the one that was loaded (names, sizes or times).
bool HasChangedOnDisk(const FileSystem& files, const LoadedPackage& package);

bool HasSeveralAircraftCfg(const CommandContext& context);
// Staging can hold one aircraft only: asks for removal while there are several aircraft.cfg files. To be
// called before Staging is loaded. Throws ProgramEnd when the user keeps them.
void CheckSingleAircraftCfg(CommandContext& context);

} // namespace korvadex
