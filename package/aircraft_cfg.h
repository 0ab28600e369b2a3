// Reading aircraft.cfg, and reducing an aircraft with several configurations to the one that the user wants.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

#include <optional>

namespace korvadex {

// Lines beyond this one are not looked at; where the file is rewritten they are carried over unchanged.
inline constexpr std::size_t MaxConfigLines = 2000;
// The title of an aircraft.cfg that holds more than one configuration.
inline constexpr std::string_view MultipleTitle = "MULTI";
// What is shown in its place while Staging holds one.
inline constexpr const char* ChoiceOpenTitle = "A configuration is still to be chosen  (F5)";

inline constexpr const char* UnreadTitle = "aircraft.cfg could not be read  (F5)";
// Why isChoiceOpen, in whole sentences.
std::string DescribeOpenChoice(const LoadedPackage& package);

// The text and the title.
AircraftCfg ReadAircraftCfg(const FileSystem& files, const std::string& path);

// One [fltsim.N] section; values trimmed.
struct Configuration {
    std::string section; // "fltsim.0"
    std::string title, model, panel, sound, texture;
};
std::vector<Configuration> ReadConfigurations(const AircraftCfg& cfg);

// Staging only. Lets the user pick one of several configurations (a single one, such as [fltsim.1], is taken
// without a question), rewrites the file with that one as [fltsim.0] and empties the directories that only the
// others used. After a pick the name that an import remembered no longer applies: its file is deleted. None
// when nothing was picked; failures are reported and change nothing. tree: all of Staging.
struct KeptConfiguration {
    std::string title;
    bool wasAsked = false;
};
std::optional<KeptConfiguration> ChooseConfiguration(CommandContext& context, const AircraftCfg& cfg, const Tree& tree);

bool HasTitle(const AircraftCfg& cfg);
// The text with the new title in every line that has one; none when the title has a letter that the file cannot hold.
std::optional<ConfigText> WithTitle(const AircraftCfg& cfg, const std::string& title);
// Writes that. Whatever fails, the file is as it was: BadName, or InUse when it was changed since it was read.
Status RewriteTitle(CommandContext& context, const AircraftCfg& cfg, const std::string& title);

// Takes the values of model, panel, sound and texture out of the file. One that needs no change is not written.
void ClearVariationValues(CommandContext& context, const AircraftCfg& cfg);

} // namespace korvadex
