#include "app/overviews.h"

#include "package/pictures.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

ListLine Heading(const HangarCategory& category) {
    return {.package = {category.name, ""}};
}

ListLine LineOf(const HangarCategory& category, const HangarPackage& package) {
    return {{category.name, package.name}, package.isInstalled};
}

// The packages that are wanted, below the lines of their categories; a category without any does not appear.
template<class Wanted>
Overview ByCategory(std::string_view caption, const HangarListing& hangar, Wanted isWanted) {
    Overview overview{std::string(caption), {}};
    auto& lines = overview.lines;
    for (const auto& category : hangar) {
        const std::size_t before = lines.size();
        lines.insert(lines.end(), {ListLine{}, Heading(category), ListLine{}});
        const std::size_t heading = lines.size();
        for (const auto& package : category.packages)
            if (isWanted(category, package))
                lines.push_back(LineOf(category, package));
        if (lines.size() == heading)
            lines.resize(before);
    }
    return overview;
}

} // namespace

std::string LineText(const ListLine& line) {
    if (!line.text.empty())
        return line.text;
    if (line.package.name.empty())
        return line.IsHeading() ? " -->  " + line.package.category : "";
    return line.isInstalled ? "< " + line.package.name + " >" : line.package.name;
}

Overview BuildPackageList(const HangarListing& hangar) {
    return ByCategory(PackageListCaption, hangar, [](const HangarCategory&, const HangarPackage&) { return true; });
}

Overview BuildInstalledList(const HangarListing& hangar) {
    Overview overview{std::string(InstalledListCaption), {}};
    for (const auto& category : hangar)
        for (const auto& package : category.packages)
            if (package.isInstalled)
                overview.lines.push_back(LineOf(category, package));
    // Of two packages of one name the category that comes first stays first.
    std::ranges::stable_sort(overview.lines, LessNoCase, [](const ListLine& line) { return line.package.name; });
    return overview;
}

Overview BuildNoImagesList(const HangarListing& hangar, const FileSystem& files, const Locations& locations) {
    return ByCategory(NoImagesListCaption, hangar, [&](const HangarCategory& category, const HangarPackage& package) {
        return PackagePictures(files, PackageRef{category.name, package.name}.Directory(locations), WalkLimits{})
            .empty();
    });
}

Overview BuildCategoryPackageList(const HangarListing& hangar, std::string_view category) {
    Overview overview{std::string(CategoryPackagesCaption) + std::string(category), {}};
    for (const auto& listed : hangar)
        if (listed.name == category)
            for (const auto& package : listed.packages)
                overview.lines.push_back({.package = {listed.name, package.name}});
    return overview;
}

Overview BuildCategoryList(const HangarListing& hangar) {
    Overview overview{std::string(CategoryListCaption), {}};
    for (const auto& category : hangar)
        overview.lines.push_back(Heading(category));
    return overview;
}

std::optional<Overview> BuildOverview(std::string_view caption, const HangarListing& hangar, const FileSystem& files,
                                      const Locations& locations) {
    if (caption == PackageListCaption)
        return BuildPackageList(hangar);
    if (caption == InstalledListCaption)
        return BuildInstalledList(hangar);
    if (caption == NoImagesListCaption)
        return BuildNoImagesList(hangar, files, locations);
    if (caption == CategoryListCaption)
        return BuildCategoryList(hangar);
    if (caption.starts_with(CategoryPackagesCaption))
        return BuildCategoryPackageList(hangar, caption.substr(CategoryPackagesCaption.size()));
    return std::nullopt;
}

} // namespace korvadex
