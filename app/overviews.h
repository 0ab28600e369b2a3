// The five overviews of the collection that the list window shows: all packages, those installed, those
// without pictures, those of one category, and the categories.
#pragma once

#include "app/hangar_listing.h"
#include "package/command_context.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

// The caption of the list window is an overview's identity.
inline constexpr std::string_view PackageListCaption = "Package List";
inline constexpr std::string_view InstalledListCaption = "Packages Installed in MSFS";
inline constexpr std::string_view NoImagesListCaption = "Packages with no Images";
inline constexpr std::string_view CategoryPackagesCaption = "Packages in "; // and the category
inline constexpr std::string_view CategoryListCaption = "Package Categories";

// How many lines an overview may have.
inline constexpr std::size_t MaxOverviewLines = 2000;

// As the list window shows it: "Lear", "< Lear >" when installed, " -->  Jets" for a category.
std::string LineText(const ListLine& line);

struct Overview {
    std::string caption;
    std::vector<ListLine> lines;

    bool IsTooLong() const { return lines.size() > MaxOverviewLines; }
};

Overview BuildPackageList(const HangarListing& hangar);
Overview BuildInstalledList(const HangarListing& hangar);
// Looks into the pictures' directory of every package.
Overview BuildNoImagesList(const HangarListing& hangar, const FileSystem& files, const Locations& locations);
Overview BuildCategoryPackageList(const HangarListing& hangar, std::string_view category);
Overview BuildCategoryList(const HangarListing& hangar);

// The one of that very caption; none when the caption is not an overview's.
std::optional<Overview> BuildOverview(std::string_view caption, const HangarListing& hangar, const FileSystem& files,
                                      const Locations& locations);

} // namespace korvadex
