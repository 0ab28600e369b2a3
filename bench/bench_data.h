// What the benchmarks work on: packages of bitmaps that compress as real liveries do, made on the spot.
#pragma once

#include <filesystem>

namespace korvadex::bench {

// A package as the Hangar keeps it: configuration files, a panel with gauges, sounds, and 200 MB of textures.
void MakeBitmapPackage(const std::filesystem::path& directory);
// Packages of textures alone. Painted ones are worn liveries as the simulators of that time take them, most with 256
// colours, some with 16 or 24 bits to a pixel; flat ones are liveries and panels as they are drawn, and small pieces.
enum class TextureKind { Painted, Flat };
void MakeTextures(const std::filesystem::path& directory, TextureKind kind);
// A package of 5,000 small files in the usual directories, no two of one name.
void MakeManyFilesPackage(const std::filesystem::path& directory);
// Of the sizes at which unpacking changes its ways: 63 MB that pack to half (the most that is held in memory at once),
// and 200 MB of textures.
void MakeHeldFile(const std::filesystem::path& path);
void MakeLargeFile(const std::filesystem::path& path);
// A zip archive of everything below a directory, deflated at the usual level.
void MakeArchive(const std::filesystem::path& directory, const std::filesystem::path& archive);

struct TreeSize {
    std::uintmax_t files = 0, bytes = 0;
    bool operator==(const TreeSize&) const = default;
};
TreeSize SizeOf(const std::filesystem::path& directory);

} // namespace korvadex::bench
