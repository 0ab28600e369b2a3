// The categories that a new Hangar begins with.
#pragma once

#include <array>

namespace korvadex {

inline constexpr std::array DefaultCategories = {
    "Aircraft - Heavy Jets",  "Aircraft - Heavy Props", "Aircraft - Light Jets", "Aircraft - Light Props",
    "Aircraft - Helicopters", "Aircraft - Military",    "Panels - Heavy Jets",   "Panels - Light Jets",
    "Panels - Heavy Props",   "Panels - Light Props",   "Sounds - Heavy Jets",   "Sounds - Light Jets",
    "Sounds - Heavy Props",   "Sounds - Light Props"};

} // namespace korvadex
