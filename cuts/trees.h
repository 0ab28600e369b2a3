// What stands below a directory of the host, to be compared byte for byte, time for time.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace korvadex::test {

struct TreeEntry {
    std::string kind; // "file", "directory", "link", with the mode
    std::string attributes;
    std::string time;  // of a file; "new" when it is of this day, as it then depends on the run
    std::string bytes; // or where a link leads
    bool operator==(const TreeEntry&) const = default;
};
using HostTree = std::map<std::string, TreeEntry>; // by the path below the directory

// Without those of which isLeftOut is true, and all below them; it gets their paths below the directory. isExact: times
// of this day as well, and those of directories.
HostTree ReadTree(const std::string& directory, const std::function<bool(const std::string& path)>& isLeftOut,
                  bool isExact = false);
// "PATH: what is different" of each path.
std::vector<std::string> Differences(const HostTree& expected, const HostTree& there);

} // namespace korvadex::test
