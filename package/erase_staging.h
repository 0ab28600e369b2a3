// Clearing one kind of component out of Staging: the panel, the aircraft's body or the sound.
#pragma once

#include "package/command_context.h"

namespace korvadex {

enum class StagingPart { Panel, Aircraft, Sound };

// Asks, deletes what belongs to the part anywhere below Staging, and says so. True when something may have
// been deleted: then Staging is to be shown again. Nothing is deleted when a directory or
// a configuration that tells which files belong to the part cannot be read.
bool ErasePartOfStaging(CommandContext& context, StagingPart part);

} // namespace korvadex
