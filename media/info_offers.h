// What the combo boxes of frmInfo offer: the values that other aircraft have for the same keys, and a few common ones.
#pragma once

#include "package/locations.h"
#include "platform/file_system.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

// What its combo boxes offer, each sorted without case.
struct InfoOffers {
    std::vector<std::string> atcAirlines = {}, manufacturers = {}, atcTypes = {}, atcModels = {};
};

// Reads the aircraft.cfg of every package of the Hangar and of every aircraft of the simulator, each once, in pieces
// so that a window can stand meanwhile.
class InfoOfferSearch {
  public:
    InfoOfferSearch(const FileSystem& files, const Locations& locations);

    // Goes on for about this long. False when everything has been read.
    bool Continue(std::chrono::milliseconds time);
    // As found so far; no value twice, whatever its case.
    InfoOffers Offers() const;

  private:
    using Values = std::map<std::string, std::string>; // folded -> as written

    void ListNext();
    void ReadNext();
    void Take(std::string_view bytes);

    const FileSystem& files;
    std::vector<std::string> categories; // directories of aircraft that are still to be listed
    std::vector<std::string> aircraft;   // directories whose file is still to be read
    std::vector<char> buffer;
    std::array<Values, 4> values; // by key
};

} // namespace korvadex
