#include "app/first_locations.h"

#include "app/hangar_listing.h"
#include "app/location_advice.h"
#include "app/settings.h"
#include "package/file_primitives.h"
#include "platform/windows_path.h"
#include "sim/run_simulator.h"

#include <functional>

namespace korvadex {

namespace {

constexpr const char* UsualNames[] = {
    "FS2002",   "Flight Simulator 2002",   "FS2000",   "Flight Simulator 2000", "Combat Flight Simulator 2",
    "CFS2",     "Combat Flight Simulator", "CFS",      "Flight Simulator 98",   "FS98",
    "FLTSIM98", "Flight Simulator 95",     "FLTSIM95", "Flight Simulator",      "MSFS"};
constexpr const char* UsualPlaces[] = {"",
                                       "Program Files (x86)\\Microsoft Games\\",
                                       "Program Files\\Microsoft Games\\",
                                       "Microsoft Games\\",
                                       "Games\\",
                                       "Program Files (x86)\\",
                                       "Program Files\\"};

std::string FindSimulator(const FileSystem& files, const UserPlaces& places) {
    const auto isOne = [&](const std::string& directory) {
        return files.IsDirectory(directory + "aircraft\\") && SettingsCanHold(directory) &&
               !FindSimulatorProgram(files, directory).empty();
    };
    for (const auto& directory : places.simulators)
        if (isOne(directory))
            return directory;
    for (const std::string name : UsualNames)
        for (const auto& drive : places.drives)
            for (const auto* place : UsualPlaces)
                if (const auto directory = drive + place + name + "\\"; isOne(directory))
                    return directory;
    return "";
}

// Where the user's own directories are to be made; "" when no place is good.
std::string FindGround(const FileSystem& files, const UserPlaces& places, const std::string& simulator) {
    std::vector<std::string> candidates;
    if (!simulator.empty()) {
        for (const auto& home : places.homes)
            if (files.SameVolume(home, simulator))
                candidates.push_back(home);
        candidates.push_back(simulator.substr(0, 3));
    }
    candidates.insert(candidates.end(), places.homes.begin(), places.homes.end());
    candidates.insert(candidates.end(), places.drives.begin(), places.drives.end());
    for (const auto& directory : candidates)
        if (SettingsCanHold(directory) && IsGoodGround(files, places, directory))
            return directory;
    return "";
}

// The first of "...Hangar", "...Hangar 2" and so on that is not there or that serves.
std::string FirstFit(const FileSystem& files, const std::string& directory,
                     const std::function<bool(const std::string&)>& serves) {
    for (int number = 1; number < 10; ++number) {
        const auto path = number == 1 ? directory : directory + " " + std::to_string(number);
        if (files.Info(path).fault() == FileFault::NotFound || (files.IsDirectory(path) && serves(path + "\\")))
            return path + "\\";
    }
    return "";
}

} // namespace

Locations ProposeLocations(const FileSystem& files, const UserPlaces& places) {
    Locations proposed;
    proposed.MsfsDir = FindSimulator(files, places);
    const auto ground = FindGround(files, places, proposed.MsfsDir);
    if (ground.empty())
        return proposed;
    proposed.StagingDir = FirstFit(files, ground + "Korvadex Staging", [&](const std::string& path) {
        return StagingIsEmpty(files, {.StagingDir = path, .HangarDir = "", .MsfsDir = ""});
    });
    proposed.HangarDir = FirstFit(files, ground + "Korvadex Hangar",
                                  [&](const std::string& path) { return FindNoHangarContent(files, path).empty(); });
    return proposed;
}

} // namespace korvadex
