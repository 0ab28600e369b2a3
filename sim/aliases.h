// Letting a package use the panel or the sound of another one, and giving it back its own.
//
// A kind is the word "panel" or "sound".
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

#include <string>
#include <string_view>

namespace korvadex {

// What the last create command of each kind holds for a later paste: "Lear\panel". Empty at start, never saved.
struct HeldAliases {
    std::string HeldPanelAlias, HeldSoundAlias;

    const std::string& Of(std::string_view kind) const { return kind == "panel" ? HeldPanelAlias : HeldSoundAlias; }
    std::string& Of(std::string_view kind) { return kind == "panel" ? HeldPanelAlias : HeldSoundAlias; }
    // The package has another name now; "" when it is gone.
    void FollowPackage(const std::string& name, const std::string& newName);
};

// All work on the package that the main window shows.
void CreateAlias(CommandContext& context, const std::string& kind, const LoadedPackage& package, HeldAliases& held);
// Nothing that the package has is lost: its configuration becomes old<kind>.cfg, or, where another one bears
// that name already and this is no alias file, old<kind>(1).cfg.
void PasteAlias(CommandContext& context, const std::string& kind, const LoadedPackage& package,
                const std::string& heldAlias);
void RestoreOldConfig(CommandContext& context, const std::string& kind, const LoadedPackage& package);

} // namespace korvadex
