// What loading learns from panel.cfg, sound.cfg and the compression marker.
#pragma once

#include "package/config_text.h"
#include "package/loaded_package.h"

namespace korvadex {

// The lines of a panel.cfg, sound.cfg, aircraft.cfg or a file of the program's own.
Result<std::vector<std::string>> ReadConfigLines(const FileSystem& files, const std::string& path);

// Read panel.cfg / oldpanel.cfg (sound.cfg / oldsound.cfg): the first "alias=" line of a file that is not the
// old one sets the alias; every name ending in ".bmp" joins the panel bitmap names.
void ReadPanelAlias(const FileSystem& files, const std::string& path, LoadedPackage& package);
void ReadSoundAlias(const FileSystem& files, const std::string& path, LoadedPackage& package);

// The bitmap names alone, added to names.
Status ReadPanelBitmapNames(const FileSystem& files, const std::string& path, PanelBitmapNames& names);

inline constexpr std::string_view CompressionMarkerName = "KX_Compression.txt";
inline constexpr std::string_view ImportNameFile = "KX_MSFSImportName.txt";
// The name that the import name file in Staging holds; "" when there is none.
std::string ReadImportName(const FileSystem& files, const Locations& locations);

// Reads KX_Compression.txt: the number before " Meg" becomes the compression code.
void ReadCompressionMarker(const FileSystem& files, const std::string& path, LoadedPackage& package);

} // namespace korvadex
