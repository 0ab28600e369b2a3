// Gauges that stood in the simulator before a package that brings the same ones was installed: the removal of
// the package leaves them there. Their names are kept in the installed directory and go with it.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

inline constexpr std::string_view FoundGaugesFile = "kx_gauges.txt";

// The names that this file in a directory (ends in a backslash) holds. Without a name none is written.
std::vector<std::string> ReadFoundGauges(const FileSystem& files, const std::string& directory);
Status NoteFoundGauges(CommandContext& context, const std::string& directory,
                       const std::vector<std::string>& names);

// The file names of those gauges of the package, before its installation. One that a panel of the simulator
// names is none of them: it goes with the last aircraft that needs it, as ever.
std::vector<std::string> FindGaugesThere(CommandContext& context, const LoadedPackage& package);

// The package's gauges without those of these names.
std::vector<FileEntry> GaugesOtherThan(const LoadedPackage& package, const std::vector<std::string>& names);

} // namespace korvadex
