// Letting a package use the panel or the sound of another one, and giving it back its own.
//
// A kind is the word "panel" or "sound".
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

#include <string>
#include <string_view>

namespace korvadex {

// The package that the last create command of each kind has taken, for a later paste. None at start, never saved.
struct HeldAliases {
    PackageRef HeldPanelAlias, HeldSoundAlias;

    const PackageRef& Of(std::string_view kind) const { return kind == "panel" ? HeldPanelAlias : HeldSoundAlias; }
    PackageRef& Of(std::string_view kind) { return kind == "panel" ? HeldPanelAlias : HeldSoundAlias; }
    // The package has another name now, or none when it is gone.
    void FollowPackage(const PackageRef& package, const PackageRef& renamed);
};

void CreateAlias(CommandContext& context, const std::string& kind, const LoadedPackage& package, HeldAliases& held);
// Nothing that the package has is lost: its configuration becomes old<kind>.cfg, or, where another one bears
// that name already and this is no alias file, old<kind>(1).cfg.
Changes PasteAlias(CommandContext& context, const std::string& kind, const LoadedPackage& package,
                   const PackageRef& lender);
Changes RestoreOldConfig(CommandContext& context, const std::string& kind, const LoadedPackage& package);

} // namespace korvadex
