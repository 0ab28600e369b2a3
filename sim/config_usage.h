// Who below a directory uses what, found out once for many commands.
#pragma once

#include "package/command_context.h"
#include "sim/alias_users.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace korvadex {

class ConfigUsage {
  public:
    // Reads every panel.cfg and sound.cfg below root (ends in a backslash), each once.
    ConfigUsage(CommandContext& context, const std::string& root, const std::vector<std::string>& packageNames,
                const std::vector<std::string>& gaugeNames = {});

    // As FindAliasUsers below the root.
    AliasUsers FindUsers(std::string_view packageName, const std::string& kind, const std::string& leaveOut) const;
    // The directory (ending in a backslash) is gone, and what it used is no longer used by it.
    void Forget(const std::string& directory);

  protected:
    using Users = std::unordered_map<std::string, std::vector<std::size_t>>; // text -> files

    // The files that have the text and are still there, outside of leaveOut.
    std::vector<std::string> Remaining(const Users& users, const std::string& text, const std::string& leaveOut) const;

    Users gaugeUsers;                                            // by the names that were given
    std::unordered_map<std::string, std::vector<Unseen>> unseen; // by kind

  private:
    void Read(CommandContext& context, const std::string& root, const std::string& kind,
              const std::vector<std::string>& packageNames, const std::vector<std::string>& gauges);

    struct File {
        std::string path;
        bool isGone = false;
    };
    std::vector<File> files;
    Users aliasUsers;
};

} // namespace korvadex
