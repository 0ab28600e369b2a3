// Dates as the user of this system writes them.
#pragma once

#include "platform/file_system.h"

#include <string>

namespace korvadex {

// Short date and time in local time, by the system's settings.
std::string ShortDateTime(FileTime time);

} // namespace korvadex
