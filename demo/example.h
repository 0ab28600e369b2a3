// The ready-made example: a drive with a small simulator, a Hangar and add-on archives, for someone who wants
// to try the program without a simulator, and for the tests that go the whole road of an add-on.
//
// Every name in it is invented. Two runs of one build give the same bytes and the same times.
#pragma once

#include "platform/file_system.h"

#include <string>

namespace korvadex::demo {

// Directories, relative to the root.
inline constexpr const char* AppDirectory = "Korvadex\\";
inline constexpr const char* StagingDirectory = "Staging\\";
inline constexpr const char* HangarDirectory = "Hangar\\";
inline constexpr const char* SimDirectory = "FS2002\\";
inline constexpr const char* DownloadsDirectory = "Downloads\\";

// Archives in Downloads\.
inline constexpr const char* PlainArchive = "Taymere 60.zip";
inline constexpr const char* NestedArchive = "Skerrow_Amphibian_v2.zip";
inline constexpr const char* TwoLiveriesArchive = "Brindle-8 two liveries.zip";

// Packages in the Hangar.
inline constexpr const char* LightPropsCategory = "Aircraft - Light Props";
inline constexpr const char* HeavyPropsCategory = "Aircraft - Heavy Props";
inline constexpr const char* HelicoptersCategory = "Aircraft - Helicopters";
inline constexpr const char* CompletePackage = "Pellmoor P12";       // in LightPropsCategory
inline constexpr const char* AliasPackage = "Pellmoor P12 Floats";   // in LightPropsCategory
inline constexpr const char* MissingGaugePackage = "Orvane Courier"; // in HeavyPropsCategory
inline constexpr const char* InstalledPackage = "Quillon Rotor 3";   // in HelicoptersCategory

// Makes the example below root: an existing directory, ending in a backslash ("C:\"), that holds none of the
// directories above. Throws std::runtime_error with the path and the reason when a file cannot be written.
void MakeExample(FileSystem& files, const std::string& root);

} // namespace korvadex::demo
