// Reducing Staging to one of the configurations of its aircraft.
#pragma once

#include "package/aircraft_cfg.h"

namespace korvadex {

// The first directory of the saved list whose last component ends with `ending`, without case; "" when none
// does.
std::string FindSavedDirectory(const DirectoryList& saved, std::string_view ending);

// A row of frmMultipleCfg.
struct ConfigurationRow {
    std::string text;    // "Lear red  (fltsim.1)"
    std::string detail;  // "Texture: red", "" for none
    std::string picture; // the path of a picture of it, "" for none
};

// What frmMultipleCfg shows of each configuration. tree: all of Staging.
std::vector<ConfigurationRow> ConfigurationRows(const Tree& tree, const std::string& cfgPath,
                                                const std::vector<Configuration>& configurations);

// Takes away what only the configurations not chosen use: at first to scratch names, from where all of it can come
// back.
class Reduction {
  public:
    // tree: all of Staging.
    Reduction(CommandContext& context, const Tree& tree, const std::string& cfgPath,
              const std::vector<Configuration>& configurations, std::size_t chosen);

    // All or nothing; false after a message.
    bool SetAside();
    void PutBack();
    void Discard(); // the directories stay, empty

  private:
    struct Moved {
        std::string path, scratch;
        bool isDirectory;
    };

    CommandContext& context;
    std::vector<std::string> directories, files; // full paths without a trailing backslash
    std::vector<Moved> moved;
};

} // namespace korvadex
