// The three directories that the program works on, and how far a walk may go.
#pragma once

#include <string>
#include <string_view>

namespace korvadex {

// Each ends in a backslash, or is empty while nothing was entered.
struct Locations {
    std::string StagingDir;
    std::string HangarDir;
    std::string MsfsDir;

    // Of the simulator; each ends in a backslash.
    std::string Aircraft() const { return MsfsDir + "aircraft\\"; }
    std::string Gauges() const { return MsfsDir + "gauges\\"; }

    // The longest of the three that the path lies in; "" when it lies in none.
    std::string RootOf(std::string_view path) const;
};

// Capacities of the directory and file lists; the settings file can only raise them.
struct WalkLimits {
    int DirMax = 500;
    int FileMax = 5000;

    bool operator==(const WalkLimits&) const = default;
};
// For what must not be cut.
inline constexpr WalkLimits Unlimited{.DirMax = 1 << 30, .FileMax = 1 << 30};

} // namespace korvadex
