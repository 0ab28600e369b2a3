// What came of a command for many packages, as the list window shows it: first those that were left, each with the
// reason, then those that were done.
#pragma once

#include "app/batch_run.h"
#include "app/overviews.h"

#include <string>
#include <vector>

namespace korvadex {

// "11 of 12 packages were installed."; done: "installed".
std::string CountDone(const std::string& done, const std::vector<Turn>& turns, const std::string& what = "package");
Overview BuildReport(const std::string& caption, const std::string& headline, const std::string& done,
                     const std::vector<Turn>& turns, const FileSystem& files, const Locations& locations);
// "Done." where nothing is to be said about any of them; else, where not all were done, the headline and what has
// become of the others.
void TellReport(UserDialogs& user, const std::string& headline, const std::string& ofTheOthers,
                const std::vector<Turn>& turns);

// "1 package", "12 packages"
std::string Counted(std::size_t count, const std::string& what = "package");

} // namespace korvadex
