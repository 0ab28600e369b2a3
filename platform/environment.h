// What the session has given the program: variables, the current directory.
#pragma once

#include <string>

namespace korvadex {

// "" where it is not set.
std::string EnvironmentVariable(const std::string& name);

// A path of the host as seen from the current directory, without "." and "..".
std::string AbsoluteHostPath(const std::string& path);

// Where programs keep what belongs to the user, as the host names it.
std::string UserDataDirectory();

} // namespace korvadex
