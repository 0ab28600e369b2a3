// The editor for what the simulator shows of an aircraft and what air traffic control calls it.
#pragma once

#include "media/info_offers.h"
#include "media/info_text.h"
#include "package/command_context.h"
#include "package/loaded_package.h"

#include <functional>
#include <optional>
#include <string>

namespace korvadex {

struct InfoForm {
    std::string aircraft; // whose information it is, for the caption
    AircraftInfo info;
    // False: the file has no [fltsim.N] section; the fields that belong there are disabled.
    bool hasConfiguration = true;
    InfoOffers offers; // to begin with
    // To be called again and again while the window stands, a few milliseconds each, until it gives the offers.
    std::function<std::optional<InfoOffers>()> gather;
    // cmdApply with what the fields hold. True closes the dialog; false leaves it open, after a message.
    std::function<bool(const AircraftInfo& entered)> accept;
    // The window is about to be closed without cmdApply or cmdCancel. False leaves it open.
    std::function<bool(const AircraftInfo& entered)> mayClose;
};

// Shows frmInfo for the aircraft.cfg of the loaded package, and writes what was entered into it. Whatever fails, the
// file is as it was and the dialog stays open with what was typed.
void EditAircraftInfo(CommandContext& context, const LoadedPackage& package);

} // namespace korvadex
