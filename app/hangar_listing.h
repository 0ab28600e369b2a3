// What stands in the Hangar and which of it is installed: for the choosers, the overviews and the counts.
#pragma once

#include "package/file_primitives.h"

#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

struct HangarPackage {
    std::string name;
    bool isInstalled = false;

    bool operator==(const HangarPackage&) const = default;
};
struct HangarCategory {
    std::string name;
    std::vector<HangarPackage> packages; // ordered by name, without case

    bool operator==(const HangarCategory&) const = default;
};
using HangarListing = std::vector<HangarCategory>;

// The packages of one category, however many.
HangarCategory ListCategory(const FileSystem& files, const Locations& locations, const std::string& category,
                            const SimAircraft& simAircraft);
// Those of these categories, in their order: one listing of each, and one of the simulator's aircraft.
HangarListing ListHangar(const FileSystem& files, const Locations& locations,
                         const std::vector<std::string>& categories);

// What in a directory no Hangar would hold: a file that lies loose in it or in a category, what stands in a package
// that has neither an aircraft nor a directory of a component group, a directory that cannot be read. Its path, or ""
// when there is none.
std::string FindNoHangarContent(const FileSystem& files, const std::string& directory);

// "12 packages  -  3 installed in MSFS", "12 packages  -  MSFS is not there"
std::string DescribeCounts(const HangarListing& hangar, bool isSimulatorThere);

} // namespace korvadex
