// The texts of frmInfo as they stand in an aircraft.cfg: read from it and put back.
//
// Those of the aircraft stand in the first [fltsim.N] section, the others in the first [General]; later sections
// of these names are not looked at.
#pragma once

#include "package/config_text.h"

#include <array>
#include <string>
#include <string_view>

namespace korvadex {

// frmInfo: the texts of aircraft.cfg that the simulator shows and that air traffic control speaks. Lines of the
// last two texts are separated by CR LF.
struct AircraftInfo {
    std::string atcId, atcAirline, atcFlightNumber, manufacturer, type, variation, atcType, atcModel;
    bool isHeavy = false, isEditable = false;
    std::string description, performance;

    bool operator==(const AircraftInfo&) const = default;
};
// Turns a text of several lines (ended by CR LF) into one line of the file, or back with decode; in place, and
// returned as well. "Range; 5/6" <-> "Range\s 5\/6".
std::string& EscapeConfigText(std::string& text, bool decode);

struct InfoField {
    std::string_view key;  // "atc_id"
    std::string_view name; // for messages: "tail number"
    std::string AircraftInfo::*text = nullptr;
    bool AircraftInfo::*flag = nullptr; // in place of a text
    bool hasLines = false;              // written escaped
};
// In the order in which they are written.
extern const std::array<InfoField, 8> ConfigurationFields;
extern const std::array<InfoField, 4> GeneralFields;

struct ConfigInfo {
    AircraftInfo info;
    bool hasConfiguration = false; // there is a [fltsim.N] section
};
// Of a key that stands in its section twice the first counts.
ConfigInfo ReadAircraftInfo(const ConfigText& text);

// Its bytes with these texts: in each of the two sections the managed keys stand together behind the last of
// the other lines, which all stay as they are, and so do the lines of those keys whose values are the same; one that is
// changed keeps its spelling. A missing [General] is added at the end; a missing [fltsim.N] is not. Every text must
// have its place in the encoding. Doing it again changes nothing.
std::string WithAircraftInfo(const ConfigText& text, const AircraftInfo& info);

} // namespace korvadex
