// The package (or Staging) that the main window shows: its files by component group, its title, its aliases.
#pragma once

#include "package/config_text.h"
#include "package/package_ref.h"
#include "package/walk.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

enum Group : int { Images, Aircraft, Panel, Gauges, Model, Texture, Sound, Documentation, Miscellaneous, Unrecognized };
inline constexpr int GroupCount = 10;
// Also the names of a package's sub-directories in the Hangar.
inline constexpr std::array<std::string_view, GroupCount> ComponentGroupNames = {
    "Images",  "Aircraft", "Panel",         "Gauges",        "Model",
    "Texture", "Sound",    "Documentation", "Miscellaneous", "Unrecognized Files"};

// The aircraft.cfg last read.
struct AircraftCfg {
    std::string path;  // "" when the package has none
    ConfigText text;   // no line when it could not be read
    std::string title; // "", the title, or "MULTI"
    Status read;       // whether it could
};

// "9999" stands for a package without a recorded size.
inline constexpr std::string_view UnknownCompression = "9999";

struct LoadedPackage {
    std::string path; // with a trailing backslash; "" when nothing is loaded
    bool isStaging = false;
    PackageRef ref; // none in Staging
    // By group; the entry at position p is shown at position p of lstComponents(group).
    std::array<std::vector<FileEntry>, GroupCount> ComponentFiles;
    Tree tree; // as on disk after loading: every file
    AircraftCfg aircraftCfg;
    std::string aircraftTitle; // what the name field shows
    // Staging: none of several configurations is kept yet, or it is not known whether there are several; and nothing
    // was renamed, deleted or settled.
    bool isChoiceOpen = false;
    std::string PackagePanelAlias, PackageSoundAlias; // lower case; "" when the package has its own
    std::string panelText, soundText;                 // what the alias fields show
    PanelBitmapNames panelBitmapNames;
    std::vector<std::string> pictures; // paths, the one marked (name).jpg first
    bool isCompressed = false;
    std::string compressionCode = std::string(UnknownCompression);
    ListCut cut = ListCut::None; // a list that a limit cut: nothing may be copied or deleted from it

    std::uint64_t SizeInBytes() const;
    int SizeInMeg() const; // bytes / 1,024,000, rounded
    // A file of the package whose file name equals name, without case.
    bool PackageHasFile(std::string_view name) const;
    // The listed file of that name, its full path; "" when there is none.
    std::string FindComponentFile(std::string_view name) const;
};

} // namespace korvadex
