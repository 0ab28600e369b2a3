// The ready-made example: a drive with a small simulator, a Hangar and add-on archives, for someone who wants
// to try the program without a simulator, and for the tests that go the whole road of an add-on.
//
// Every name in it is invented. Two runs give the same bytes and the same times.
//
//   Korvadex\kx.ini     the settings: one profile that points at the directories below
//   Staging\            empty
//   Hangar\             the fourteen default categories, with
//     Aircraft - Light Props\Pellmoor P12          complete: own panel, two gauges, effect, documents, pictures
//     Aircraft - Light Props\Pellmoor P12 Floats   panel and sound by alias from Pellmoor P12
//     Aircraft - Heavy Props\Orvane Courier        its panel names orvane_radar.gau, which is nowhere
//     Aircraft - Helicopters\Quillon Rotor 3       many documents and pictures; installed in the simulator
//   FS2002\             fs2002.exe, aircraft (three of the simulator's own, and Quillon_Rotor_3), gauges,
//                       effects, modules, sound
//   Downloads\          three archives:
//
//   Taymere 60.zip                 plain; no entries for directories, mixed case, a name beyond ASCII
//     Grüße vom Autor.txt
//     Taymere 60.jpg
//     Effects/taymere_smoke.fx
//     Gauges/Taymere.cab, Taymere_ASI.gau
//     Taymere 60/aircraft.cfg, Taymere60.AIR, taymere60_check.txt
//     Taymere 60/Model/model.cfg, Taymere60.mdl
//     Taymere 60/Panel/panel.cfg, Taymere_Panel.bmp
//     Taymere 60/Sound/sound.cfg, Taymere hum.wav, taymere_horn.wav (a gauge's: sound.cfg does not name it)
//     Taymere 60/Texture/taymere_fuselage.bmp, Taymere_Wing.BMP
//
//   Skerrow_Amphibian_v2.zip       holds another archive; entries for directories
//     Read Me.txt
//     skerrow.jpg, skerrow on the lake.jpg
//     skerrow panel.zip
//       Read Me.txt (another one)
//       gauges/Skerrow.cab, skerrow_water.gau
//       panel/panel.cfg, skerrow_main.bmp
//     FS2002/aircraft/Skerrow/aircraft.cfg, skerrow.air
//     FS2002/aircraft/Skerrow/model/model.cfg, skerrow.mdl
//     FS2002/aircraft/Skerrow/sound/sound.cfg, skerrow_engine.wav
//     FS2002/aircraft/Skerrow/texture/skerrow_hull.bmp, skerrow_wing.bmp
//
//   Brindle-8 two liveries.zip     two configurations; its panel names brindle_radar.gau, which is nowhere
//     brindle8_blue.jpg, brindle8_red.jpg
//     brindle8.htm
//     Brindle8/aircraft.cfg        [fltsim.0] "Brindle 8 Blue" (texture=), [fltsim.1] "Brindle 8 Red" (texture=red)
//     Brindle8/brindle8.air
//     Brindle8/gauges/Brindle.cab
//     Brindle8/model/model.cfg, brindle8.mdl
//     Brindle8/panel/panel.cfg, brindle8_panel.bmp
//     Brindle8/sound/sound.cfg, brindle8_turbine.wav
//     Brindle8/texture/brindle8_fuselage.bmp, brindle8_tail.bmp
//     Brindle8/texture.red/brindle8_fuselage.bmp, brindle8_tail.bmp
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
inline constexpr const char* ProfileName = "FS2002";

// Archives in Downloads\, and what is in them.
inline constexpr const char* PlainArchive = "Taymere 60.zip";
inline constexpr const char* NestedArchive = "Skerrow_Amphibian_v2.zip";
inline constexpr const char* InnerArchive = "skerrow panel.zip"; // in NestedArchive
inline constexpr const char* TwoLiveriesArchive = "Brindle-8 two liveries.zip";
inline constexpr const char* FirstLivery = "Brindle 8 Blue";
inline constexpr const char* SecondLivery = "Brindle 8 Red";
inline constexpr const char* LiveriesMissingGauge = "brindle_radar.gau"; // as the cross-check names it

// Packages in the Hangar.
inline constexpr const char* LightPropsCategory = "Aircraft - Light Props";
inline constexpr const char* HeavyPropsCategory = "Aircraft - Heavy Props";
inline constexpr const char* HelicoptersCategory = "Aircraft - Helicopters";
inline constexpr const char* CompletePackage = "Pellmoor P12";       // in LightPropsCategory
inline constexpr const char* AliasPackage = "Pellmoor P12 Floats";   // in LightPropsCategory
inline constexpr const char* MissingGaugePackage = "Orvane Courier"; // in HeavyPropsCategory
inline constexpr const char* MissingGauge = "orvane_radar.gau";      // as the cross-check names it
inline constexpr const char* InstalledPackage = "Quillon Rotor 3";   // in HelicoptersCategory
inline constexpr const char* InstalledDirectory = "Quillon_Rotor_3"; // in FS2002\aircraft

// Makes the example below root: an existing directory, ending in a backslash ("C:\"), that holds none of the
// directories above. Throws std::runtime_error with the path and the reason when a file cannot be written.
void MakeExample(FileSystem& files, const std::string& root);

} // namespace korvadex::demo
