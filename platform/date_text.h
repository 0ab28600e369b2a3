// Dates as the user of this system writes them.
#pragma once

#include "platform/file_system.h"

#include <string>

namespace korvadex {

// Short date and time in local time, by the system's settings.
std::string ShortDateTime(FileTime time);

// Zip archives keep local time to two seconds in two 16-bit words (MS-DOS date and time).
FileTime FileTimeFromDos(unsigned date, unsigned time);

} // namespace korvadex
