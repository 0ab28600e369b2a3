// Keeping a package of the Hangar packed: its bitmaps and gauges, each an archive of itself, and a marker file
// that says so.
#pragma once

#include "archive/in_place_work.h"
#include "package/command_context.h"

#include <string>
#include <vector>

namespace korvadex {

// One package after the other. While the files of one are written, those of the next are read and packed or unpacked.
class Compression {
  public:
    // The directories of the packages (each ends in a backslash), in the order of their turns.
    Compression(CommandContext& commandContext, bool compress, std::vector<std::string> packagePaths);
    Compression(const Compression&) = delete;
    Compression& operator=(const Compression&) = delete;

    // The turn of a package: packs (compress) or unpacks every .bmp and .gau below the directory; the marker then
    // stands when any of them is packed. What is in the wanted state already stays as it is, so that an interrupted run
    // is finished by the next. Gives back what was not done and why, a text for each file; a single text when a limit
    // of the walk would leave files out: then nothing was done.
    std::vector<std::string> Take(const std::string& packagePath);

    const bool isCompressing;

  private:
    std::vector<std::string> Foresee(const std::string& packagePath) const;

    CommandContext& context;
    const std::vector<std::string> packages;
    InPlaceWork work;
};

// The same for one package.
std::vector<std::string> CompressPackage(CommandContext& context, const std::string& packagePath, bool compress);

// True when the directory holds a .bmp or .gau that is not packed.
bool HasFilesToPack(CommandContext& context, const std::string& packagePath);

} // namespace korvadex
