// Managing the location profiles: naming, changing and clearing those that are not in use.
#pragma once

#include "app/settings.h"
#include "package/dialogs.h"

#include <array>
#include <string>

namespace korvadex {

// What frmLocationProfiles and frmLocationProfileModify do; they hold the widgets. Slots count from 0.
// kx.ini is written by the caller.
class ProfileEditor {
  public:
    ProfileEditor(FileSystem& fileSystem, UserDialogs& userDialogs, Settings& programSettings)
        : files(fileSystem), user(userDialogs), settings(programSettings) {}

    const Settings& GetSettings() const { return settings; }
    // "" for a free slot.
    std::array<std::string, ProfileCount> Names() const;
    // False, after a message, for the profile in use.
    bool CanModify(int slot);
    // What frmLocationProfileModify begins with.
    LocationProfile Entry(int slot) const;
    // Takes the name and the three directories into the slot when all are good. Otherwise everything that is
    // wrong was said, and the slot is as it was. Either way entry comes back as it was judged: the name
    // trimmed, the directories with their backslashes.
    bool Accept(int slot, LocationProfile& entry);
    // Frees the slot.
    void Clear(int slot);

  private:
    bool IsGoodName(int slot, const std::string& name);

    FileSystem& files;
    UserDialogs& user;
    Settings& settings;
};

} // namespace korvadex
