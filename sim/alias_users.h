// Who uses the panel or the sound of a package by an alias, and which gauges a panel.cfg names.
#pragma once

#include "package/command_context.h"
#include "package/config_text.h"
#include "package/loaded_package.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

struct AliasSearch {
    std::string root;               // a directory ending in a backslash
    std::string fileName;           // "panel.cfg" or "sound.cfg"
    std::vector<std::string> texts; // a line that contains one of them matches, without case
    bool showList = false;          // list the users in frmFileList
    bool gaugeLinesOnly = false;    // the line must also contain "gauge"
    std::string leaveOut{};         // a directory (ending in a backslash) whose files do not count
};

// True when a configuration below root matches, and also when a limit of the walk or an unreadable file kept
// the search from being complete: a guard must not rely on what was not looked at.
bool FindAliasUsers(CommandContext& context, const AliasSearch& search);

// Shows frmFileList with the owners of these configuration files below root, if there are any.
void ShowAliasUsers(CommandContext& context, const std::string& root, const std::string& fileName,
                    const std::vector<std::string>& paths);

// A configuration with another alias; none when that has a letter which the file cannot hold.
std::optional<ConfigText> WithAlias(ConfigText text, const std::string& newAlias);

// Replaces the alias line of a configuration file.
Status RewriteAliasLine(CommandContext& context, const std::string& newAlias, const std::string& path);

} // namespace korvadex
