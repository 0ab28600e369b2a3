// Whether the places that a command works on are there: sticks are pulled, packages are deleted elsewhere.
#pragma once

#include "package/locations.h"
#include "platform/file_system.h"

#include <initializer_list>
#include <string>

namespace korvadex {

enum class Place { Staging, Hangar, Simulator };

// Of the first of these places that cannot be looked at: "The Hangar directory C:\Hangar\ is not there". ""
// when all can.
std::string DescribeGone(const FileSystem& files, const Locations& locations, std::initializer_list<Place> places);
// The end of such a sentence, and what to do.
std::string GoneAdvice();

// The same of a package of the Hangar: "it no longer seems to be in the Hangar".
std::string DescribeGonePackage(const FileSystem& files, const std::string& directory);

} // namespace korvadex
