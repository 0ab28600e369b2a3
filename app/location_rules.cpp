#include "app/location_rules.h"

#include "package/walk.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <array>

namespace korvadex {

namespace {

// A drive letter, a colon, a backslash and one character more.
constexpr std::size_t ShortestLocation = 4;

// Places of the simulator that every aircraft shares.
constexpr std::array MsfsPlaces = {"aircraft", "gauges", "effects", "modules", "sound"};

bool IsKnown(const Settings& settings, const std::string& path, std::string Locations::*location,
             std::string LocationProfile::*column) {
    return EqualNoCase(path, settings.locations.*location) ||
           std::ranges::any_of(settings.LocationProfiles,
                               [&](const LocationProfile& profile) { return EqualNoCase(path, profile.*column); });
}

class Conflicts {
  public:
    Conflicts(const FileSystem& fileSystem, const Locations& locations, const std::string& appDir)
        : files(fileSystem),
          msfsDir(locations.MsfsDir), staging{OneNameOf(locations.StagingDir), LocationKind::Staging},
          hangar{OneNameOf(locations.HangarDir), LocationKind::Hangar}, msfs{OneNameOf(locations.MsfsDir),
                                                                             LocationKind::Msfs},
          program(OneNameOf(appDir)) {}

    std::vector<LocationConflict> Find() {
        AddIfSame(staging, hangar);
        AddIfSame(staging, msfs);
        AddIfSame(hangar, msfs);
        for (const Place* own : {&staging, &hangar})
            if (!own->path.empty() && EqualNoCase(own->path, program))
                Add(ConflictKind::Same, *own, "Korvadex program");
        AddIfInside(hangar, staging);
        AddIfInside(msfs, staging);
        AddIfInside(staging, hangar);
        AddIfInside(msfs, hangar);
        for (const Place* own : {&staging, &hangar})
            if (IsInside(program, own->path))
                Add(ConflictKind::HoldsProgram, *own, "Korvadex program");
        AddIfInMsfsPlace(staging);
        AddIfInMsfsPlace(hangar);
        return std::move(found);
    }

  private:
    struct Place {
        std::string path;
        LocationKind kind;
    };

    std::string OneNameOf(const std::string& path) const {
        return path.empty() ? "" : AddBackslash(OneName(files, path));
    }
    static bool IsInside(const std::string& inner, const std::string& outer) {
        return !inner.empty() && !outer.empty() && IsAtOrBelow(inner, outer);
    }
    void Add(ConflictKind kind, const Place& place, const std::string& other,
             std::optional<LocationKind> otherLocation = {}) {
        found.push_back({kind, place.kind, other, otherLocation});
    }
    void AddIfSame(const Place& one, const Place& other) {
        if (!one.path.empty() && EqualNoCase(one.path, other.path))
            Add(ConflictKind::Same, one, NameOf(other.kind), other.kind);
    }
    void AddIfInside(const Place& inner, const Place& outer) {
        if (IsInside(inner.path, outer.path))
            Add(ConflictKind::Inside, inner, NameOf(outer.kind), outer.kind);
    }
    void AddIfInMsfsPlace(const Place& own) {
        for (const std::string name : MsfsPlaces)
            if (!msfsDir.empty() && IsInside(own.path, OneNameOf(msfsDir + name + "\\")))
                Add(ConflictKind::Inside, own, "'" + name + "' subdirectory of your MSFS installation");
    }

    const FileSystem& files;
    const std::string& msfsDir;
    const Place staging, hangar, msfs;
    const std::string program;
    std::vector<LocationConflict> found;
};

} // namespace

const char* NameOf(LocationKind kind) {
    switch (kind) {
    case LocationKind::Staging:
        return "Staging location";
    case LocationKind::Hangar:
        return "Hangar location";
    case LocationKind::Msfs:
        break;
    }
    return "MSFS installation";
}

bool IsLocationPath(std::string_view path) {
    if (path.size() < ShortestLocation || !IsDrivePath(path))
        return false;
    path.remove_prefix(3);
    for (std::size_t end; !path.empty(); path.remove_prefix(end + 1)) {
        end = path.find('\\'); // there is one behind each name
        const auto name = path.substr(0, end);
        if (!IsStorableName(name) || IsOwnName(name))
            return false;
    }
    return true;
}

bool IsKnownStaging(const Settings& settings, const std::string& path) {
    return IsKnown(settings, path, &Locations::StagingDir, &LocationProfile::StagingDir);
}

bool IsKnownHangar(const Settings& settings, const std::string& path) {
    return IsKnown(settings, path, &Locations::HangarDir, &LocationProfile::HangarDir);
}

std::vector<LocationConflict> FindConflicts(const FileSystem& files, const Locations& locations,
                                            const std::string& appDir) {
    return Conflicts(files, locations, appDir).Find();
}

} // namespace korvadex
