#include "app/hangar_listing.h"

#include <algorithm>

namespace korvadex {

HangarCategory ListCategory(const FileSystem& files, const Locations& locations, const std::string& category,
                            const SimAircraft& simAircraft) {
    HangarCategory listing{category, {}};
    for (auto& name : SubdirectoryNames(files, locations.HangarDir + category + "\\")) {
        // Nobody could tell it from an installed package of the name within.
        if (WithoutInstalledMarks(name) != name)
            continue;
        const bool isInstalled = simAircraft.Holds(name);
        listing.packages.push_back({std::move(name), isInstalled});
    }
    return listing;
}

HangarListing ListHangar(const FileSystem& files, const Locations& locations,
                         const std::vector<std::string>& categories) {
    const SimAircraft simAircraft(files, locations);
    HangarListing hangar;
    for (const auto& category : categories)
        hangar.push_back(ListCategory(files, locations, category, simAircraft));
    return hangar;
}

std::string PackageLine(const HangarPackage& package) {
    return package.isInstalled ? WithInstalledMarks(package.name) : package.name;
}

std::string DescribeCounts(const HangarListing& hangar) {
    std::size_t count = 0;
    std::ptrdiff_t installed = 0;
    for (const auto& category : hangar) {
        count += category.packages.size();
        installed += std::ranges::count_if(category.packages, &HangarPackage::isInstalled);
    }
    return std::to_string(count) + (count == 1 ? " package  -  " : " packages  -  ") +
           std::to_string(installed) + " installed in MSFS";
}

} // namespace korvadex
