#include "package/locations.h"

#include "platform/windows_path.h"

namespace korvadex {

std::string Locations::RootOf(std::string_view path) const {
    std::string longest;
    for (const std::string* location : {&MsfsDir, &StagingDir, &HangarDir}) {
        if (IsAtOrBelow(path, *location) && location->size() > longest.size())
            longest = *location;
    }
    return longest;
}

} // namespace korvadex
