// The dialogs that only the program itself shows, not its commands.
#pragma once

#include "app/settings.h"
#include "media/picture_import.h"
#include "package/aircraft_parts.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace korvadex {

// What the locations dialog takes in and gives back.
struct LocationsEntry {
    std::string profileText; // the text of cboLocationProfile
    Locations locations;
};
enum class LocationsFor { FirstStart, Start, Change };
struct LocationsForm {
    LocationsFor purpose = LocationsFor::Change;
    std::function<void()> openReadMe;
    std::function<bool()> checkOpenings; // as Program::CheckOpenings, while the dialog is open
};
class ProfileEditor;
class HistoryEditor;
class ProgramDialogs {
  public:
    virtual ~ProgramDialogs() = default;
    // False where wrong locations cannot be mended now.
    virtual bool CanEnterLocations() const { return true; }
    // frmLocations with the non-empty profiles of settings; at a first start, with what can be proposed where nothing
    // was entered yet. The check box changes settings.AskLocationAtStart at once. None when the dialog was closed
    // without cmdAccept.
    virtual std::optional<LocationsEntry> ShowLocations(Settings& settings, const LocationsForm& form) = 0;
    // frmLocationProfiles, and frmLocationProfileModify from there.
    virtual void ShowLocationProfiles(ProfileEditor& profiles) = 0;
    virtual void ShowHistory(HistoryEditor& history) = 0; // frmHistory
    // frmSeveralAircraft: the row picked, from 0. A dialog that was closed picks nothing.
    virtual std::optional<int> ChooseAircraft(const std::vector<AircraftPart>& parts) = 0;

    // One of these categories, or the name of a new one; none when the user cancelled.
    virtual std::optional<std::string> ChooseCategory(const std::string& prompt,
                                                      const std::vector<std::string>& categories,
                                                      const std::string& preset) = 0;
    // In which zip archives are searched for; the directory to open on may be "". "" when the user cancelled.
    virtual std::string ChooseArchiveDirectory(const std::string& directory) = 0;
    // Existing picture files, one or several; the directory to open on may be "". None of them: cancelled.
    virtual OfferedPictures ChoosePictures(const std::string& directory) = 0;
    // Picture files, or a picture, that lie on the clipboard.
    virtual OfferedPictures ClipboardPictures() = 0;
};

} // namespace korvadex
