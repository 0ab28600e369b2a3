#include "package/package_ref.h"

#include "package/file_primitives.h"
#include "platform/windows_path.h"

namespace korvadex {

std::string PackageRef::Text() const {
    return category.empty() ? name : category + "\\" + name;
}

std::string PackageRef::Directory(const Locations& locations) const {
    return IsNone() ? "" : locations.HangarDir + Text() + "\\";
}

std::vector<std::string> DirectoriesOf(const std::vector<PackageRef>& packages, const Locations& locations) {
    std::vector<std::string> directories;
    for (const PackageRef& package : packages)
        directories.push_back(package.Directory(locations));
    return directories;
}

PackageRef PackageRefOf(std::string_view text) {
    const std::size_t bar = text.find('\\');
    if (bar == std::string_view::npos)
        return {"", std::string(text)};
    return {std::string(text.substr(0, bar)), std::string(text.substr(bar + 1))};
}

bool FollowName(std::string& text, std::string_view from, std::string_view to) {
    if (!StartsWithNoCase(text, from) || (text.size() > from.size() && text[from.size()] != '\\'))
        return false;
    text.replace(0, from.size(), to);
    return true;
}

void FollowName(PackageRef& package, std::string_view from, std::string_view to) {
    std::string text = package.IsNone() ? package.category : package.Text();
    if (FollowName(text, from, to))
        package = package.IsNone() ? PackageRef{text, ""} : PackageRefOf(text);
}

bool IsInstalled(const FileSystem& files, const Locations& locations, const PackageRef& package) {
    return !FindSimAircraftDirectory(files, locations, package.name).empty();
}

} // namespace korvadex
