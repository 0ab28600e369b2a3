// Who uses the panel or the sound of a package by an alias.
//
// A kind is the word "panel" or "sound".
#pragma once

#include "package/command_context.h"
#include "package/config_text.h"
#include "sim/config_search.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

struct AliasUsers {
    std::vector<std::string> paths; // of the configuration files that mention it
    std::vector<Unseen> unseen;     // what may do so as well

    bool AreNone() const { return paths.empty() && unseen.empty(); }
};

// What the alias of another aircraft says, in lower case with "_" for blanks: "my_lear\panel".
std::string AliasText(std::string_view packageName, std::string_view kind);

// The users below root (ending in a backslash), but for those below leaveOut. The package's name counts with any of its
// blanks written as "_", and the other way round.
AliasUsers FindAliasUsers(CommandContext& context, const std::string& root, std::string_view packageName,
                          const std::string& kind, const std::string& leaveOut);

// frmFileList with the owners of these configuration files below root, if there are any.
void ShowAliasUsers(CommandContext& context, const std::string& root, const std::string& kind,
                    const std::vector<std::string>& paths);

// "It could not be found out whether another aircraft uses the panel in this package, because ...", with the names and
// the next step.
std::string DescribeUnseenUsers(const std::string& kind, const std::vector<Unseen>& unseen);

// A configuration with another alias; none when that has a letter which the file cannot hold.
std::optional<ConfigText> WithAlias(ConfigText text, const std::string& newAlias);

// Replaces the alias line of a configuration file.
Status RewriteAliasLine(CommandContext& context, const std::string& newAlias, const std::string& path);

} // namespace korvadex
