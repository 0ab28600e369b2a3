#include "app/hangar_listing.h"

#include "package/classification.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

// What stands in a package's own directory.
bool IsOfPackage(std::string_view name, bool isDirectory) {
    if (!isDirectory)
        return EqualNoCase(name, "aircraft.cfg") || EndsWithNoCase(name, ".air");
    return std::ranges::any_of(ComponentGroupNames, [&](const auto& group) { return EqualNoCase(group, name); });
}

// levels: how many levels of directories come before the packages' own content.
std::string FindNoHangarContent(const FileSystem& files, const std::string& directory, int levels) {
    auto entries = files.List(directory);
    if (!entries)
        return directory;
    std::erase_if(*entries,
                  [](const DirectoryEntry& entry) { return IsOwnName(entry.name) || IsFileManagersFile(entry.name); });
    const auto isDirectory = [&](const DirectoryEntry& entry) { return IsSubdirectory(files, directory, entry); };
    if (levels == 0) {
        const bool isPackage = entries->empty() || std::ranges::any_of(*entries, [&](const auto& entry) {
                                   return IsOfPackage(entry.name, isDirectory(entry));
                               });
        return isPackage ? "" : directory + entries->front().name;
    }
    for (const auto& entry : *entries) {
        if (!isDirectory(entry))
            return directory + entry.name;
        if (auto found = FindNoHangarContent(files, directory + entry.name + "\\", levels - 1); !found.empty())
            return found;
    }
    return "";
}

} // namespace

HangarCategory ListCategory(const FileSystem& files, const Locations& locations, const std::string& category,
                            const SimAircraft& simAircraft) {
    HangarCategory listing{category, {}};
    for (auto& name : SubdirectoryNames(files, locations.HangarDir + category + "\\")) {
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

std::string FindNoHangarContent(const FileSystem& files, const std::string& directory) {
    return FindNoHangarContent(files, directory, 2);
}

std::string DescribeCounts(const HangarListing& hangar, bool isSimulatorThere) {
    std::size_t count = 0;
    std::ptrdiff_t installed = 0;
    for (const auto& category : hangar) {
        count += category.packages.size();
        installed += std::ranges::count_if(category.packages, &HangarPackage::isInstalled);
    }
    return std::to_string(count) + (count == 1 ? " package  -  " : " packages  -  ") +
           (isSimulatorThere ? std::to_string(installed) + " installed in MSFS" : "MSFS is not there");
}

} // namespace korvadex
