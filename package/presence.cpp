#include "package/presence.h"

namespace korvadex {

namespace {

std::string DescribeUnlisted(const std::string& directory, const Status& status) {
    return directory +
           (status.fault == FileFault::NotFound ? " is not there" : " cannot be read (" + DescribeFault(status) + ")");
}

std::string DescribeGone(const FileSystem& files, const std::string& what, const std::string& directory) {
    const auto entries = files.List(directory);
    return entries ? "" : "The " + what + " directory " + DescribeUnlisted(directory, entries.status());
}

std::string DescribeGoneSimulator(const FileSystem& files, const std::string& directory) {
    std::string gone = DescribeGone(files, "MSFS", directory);
    const std::string aircraft = directory + "aircraft";
    // A simulator without aircraft has this directory made; one behind a link may be on a disk of its own.
    if (gone.empty() && files.Info(aircraft).fault() != FileFault::NotFound)
        gone = DescribeGone(files, "MSFS", aircraft + "\\");
    return gone;
}

} // namespace

std::string DescribeGone(const FileSystem& files, const Locations& locations, std::initializer_list<Place> places) {
    for (const Place place : places) {
        const std::string gone = place == Place::Staging  ? DescribeGone(files, "Staging", locations.StagingDir)
                                 : place == Place::Hangar ? DescribeGone(files, "Hangar", locations.HangarDir)
                                                          : DescribeGoneSimulator(files, locations.MsfsDir);
        if (!gone.empty())
            return gone;
    }
    return "";
}

std::string GoneAdvice() {
    return ".  Please make sure that its drive is connected and can be read, "
           "or choose another directory with 'Locations' in the File menu.";
}

std::string DescribeGonePackage(const FileSystem& files, const std::string& directory) {
    const auto entries = files.List(directory);
    if (entries)
        return "";
    return entries.fault() == FileFault::NotFound ? "it no longer seems to be in the Hangar"
                                                  : DescribeUnlisted(directory, entries.status());
}

} // namespace korvadex
