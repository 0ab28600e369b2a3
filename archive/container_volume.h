// Archives that were cut into several files when they were made.
#pragma once

#include "archive/container_source.h"

#include <string_view>

namespace korvadex {

// True when the file tells, or its name does, that it is one of several.
bool IsOneOfSeveral(ContainerSource& source, std::string_view path);

} // namespace korvadex
