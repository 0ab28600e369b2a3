// Gauges in the simulator that no aircraft needs any more: found, shown, and deleted where the user says so.
#pragma once

#include "package/command_context.h"

namespace korvadex {

// Asks, searches and shows frmUnusedGauges. The search itself deletes nothing.
void ListUnusedGauges(CommandContext& context);

} // namespace korvadex
