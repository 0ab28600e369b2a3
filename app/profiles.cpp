#include "app/profiles.h"

#include "app/locations_entry.h"
#include "platform/windows_path.h"

namespace korvadex {

std::array<std::string, ProfileCount> ProfileEditor::Names() const {
    std::array<std::string, ProfileCount> names;
    for (std::size_t slot = 0; slot < names.size(); ++slot)
        names[slot] = settings.LocationProfiles[slot].name;
    return names;
}

bool ProfileEditor::CanModify(int slot) {
    if (slot != settings.CurrentProfile)
        return true;
    user.Tell("You cannot modify a profile that is currently in use here.  "
              "Please use the 'Locations' option to modify the current profile.",
              MessageIcon::Exclamation);
    return false;
}

LocationProfile ProfileEditor::Entry(int slot) const {
    return settings.LocationProfiles.at(static_cast<std::size_t>(slot));
}

bool ProfileEditor::IsGoodName(int slot, const std::string& name) {
    const auto refuse = [&](const char* text) {
        user.Tell(text, MessageIcon::Exclamation);
        return false;
    };
    if (name.empty())
        return refuse("Please enter a Profile Name.");
    bool isGood = true;
    for (int other = 0; other < static_cast<int>(settings.LocationProfiles.size()); ++other)
        if (other != slot && EqualNoCase(Entry(other).name, name))
            isGood = refuse("The Profile Name you've entered already exists.");
    if (isGood && !SettingsCanHold(name))
        return refuse("The Profile Name you've entered has a character that cannot be kept in kx.ini.  "
                      "Please use a simpler name.");
    return isGood;
}

bool ProfileEditor::Accept(int slot, LocationProfile& entry) {
    entry.name = Trim(entry.name);
    entry.StagingDir = AddBackslash(entry.StagingDir);
    entry.HangarDir = AddBackslash(entry.HangarDir);
    entry.MsfsDir = AddBackslash(entry.MsfsDir);
    // The directories are looked at also after a bad name, so that everything wrong is said at once.
    const bool isNamed = IsGoodName(slot, entry.name);
    const bool areGood =
        AreGoodLocations(files, user, settings, {entry.StagingDir, entry.HangarDir, entry.MsfsDir}, true);
    if (!isNamed || !areGood || !CanModify(slot))
        return false;
    auto& profile = settings.LocationProfiles.at(static_cast<std::size_t>(slot));
    entry.firstPackage = profile.firstPackage;
    entry.lastPackage = profile.lastPackage;
    profile = entry;
    return true;
}

void ProfileEditor::Clear(int slot) {
    if (CanModify(slot))
        settings.LocationProfiles.at(static_cast<std::size_t>(slot)) = {};
}

} // namespace korvadex
