// Which package of the Hangar something is about: what a command is given to work on.
#pragma once

#include "package/locations.h"
#include "platform/file_system.h"

#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

struct PackageRef {
    std::string category, name;

    bool operator==(const PackageRef&) const = default;
    bool IsNone() const { return name.empty(); }
    // "Jets\Lear", as kx.ini and the record of an installation name it.
    std::string Text() const;
    // Ends in a backslash; "" for none.
    std::string Directory(const Locations& locations) const;
};

// The directories of all of them.
std::vector<std::string> DirectoriesOf(const std::vector<PackageRef>& packages, const Locations& locations);

// "Jets\Lear" -> {"Jets", "Lear"}; "Lear" -> {"", "Lear"}, the package of that name in whatever category.
PackageRef PackageRefOf(std::string_view text);

// A package, or all packages of a category, stand in the Hangar at `to` instead of `from` ("Jets", "Jets\Lear"): the
// text of a package follows. False where it names another one.
bool FollowName(std::string& text, std::string_view from, std::string_view to);
void FollowName(PackageRef& package, std::string_view from, std::string_view to);

// True when the simulator has an aircraft of the package's name.
bool IsInstalled(const FileSystem& files, const Locations& locations, const PackageRef& package);

} // namespace korvadex
