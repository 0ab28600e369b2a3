// The settings file kx.ini: location profiles, the last archive's directory, window geometry and limits.
#pragma once

#include "journal/history.h"
#include "package/locations.h"
#include "platform/file_system.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

struct LocationProfile {
    std::string name; // "" for a free slot
    std::string StagingDir, HangarDir, MsfsDir;
    std::string firstPackage; // "category\package"
    std::string lastPackage;  // the one shown last; kept while there is no first one

    bool operator==(const LocationProfile&) const = default;
};

// In twips (1440 to the inch; 15 to a device-independent pixel).
struct WindowGeometry {
    double top = 0, left = 0, height = 0, width = 0;

    bool operator==(const WindowGeometry&) const = default;
};
// What the file said of the main window; a value that was not given (or not acceptable) is left as designed.
struct SavedGeometry {
    std::optional<double> top, left, height, width;
};
// How the main window shares its room, 0 as designed; and what the gallery beside it shows.
struct WindowLayout {
    double collectionWidth = 0; // in twips
    double pictureShare = 0;    // of the picture and the fields above the lists, in per cent
    double queueShare = 0;      // of the queue below the collection, in per cent
    bool isMaximised = false;
    bool isOnePicturePerPackage = false;

    bool operator==(const WindowLayout&) const = default;
};
struct ScreenSize {
    double height = 0, width = 0; // twips
};

// A key of kx.ini has one digit for the profile, and for the archive.
inline constexpr std::size_t ProfileCount = 10, MostLastArchives = 10;

inline constexpr int MostHistoryCommands = 1000, MostHistoryMegabytes = 1'000'000;
constexpr std::uint64_t BytesOf(int megabytes) {
    return static_cast<std::uint64_t>(megabytes) << 20;
}
constexpr int MegabytesOf(std::uint64_t bytes) {
    return static_cast<int>(bytes >> 20);
}

// What the file keeps, but for the main window's geometry.
struct SettingsValues {
    std::array<LocationProfile, ProfileCount> LocationProfiles;
    int CurrentProfile = 0;
    bool AskLocationAtStart = false;
    std::string LastZipPath;
    std::vector<std::string> lastArchives; // paths, the last one first
    WindowGeometry ListWindowGeometry;
    WalkLimits limits;
    HistoryLimits historyLimits;
    std::optional<bool> isCollectionShown; // none: the user has not said yet
    WindowLayout layout;

    bool operator==(const SettingsValues&) const = default;
};

struct Settings : SettingsValues {
    std::string AppDir; // with a trailing backslash
    Locations locations;
    SavedGeometry mainWindow;
    SettingsValues kept; // as read or last saved: what differs from them was changed by this run

    LocationProfile& ActiveProfile() { return LocationProfiles.at(static_cast<std::size_t>(CurrentProfile)); }
    std::string& FirstPackage() { return ActiveProfile().firstPackage; }
    // The name of the profile in use; "" when it is the only one and has got none from the user.
    std::string ProfileToName() const;
    // It becomes the last archive.
    void NoteArchive(const std::string& path);
};

inline constexpr std::string_view SettingsFileName = "kx.ini";

// Reads AppDir\kx.ini and derives the active profile. False when there is no such file: a first run. A file
// that is there and cannot be read is a failure, so that nobody takes it for a first run and writes over it.
Result<bool> LoadSettings(const FileSystem& files, const ScreenSize& screen, Settings& settings);

// Rewrites the file whole. What this run did not change is taken from the file as it is now, and lines of no
// known key are kept. Nothing is written while a location is empty. Without a main window geometry (it is
// minimised) the geometry lines are left out. BadName when a value cannot be stored; whatever fails, the file is
// as it was.
Status SaveSettings(FileSystem& files, Settings& settings, const std::optional<WindowGeometry>& mainWindow);

// True when a profile's value comes back from the file as it is: one line without blanks around it, in the
// characters of the system's code page.
bool SettingsCanHold(std::string_view text);

} // namespace korvadex
