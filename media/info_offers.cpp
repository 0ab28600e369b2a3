#include "media/info_offers.h"

#include "package/config_text.h"
#include "package/file_primitives.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <span>

namespace korvadex {

namespace {

enum Key : std::size_t { AtcAirline, Manufacturer, AtcType, AtcModel };
constexpr std::array<std::string_view, 4> Keys = {"atc_airline", "ui_manufacturer", "atc_type", "atc_model"};

// Of a larger file the beginning is enough; the sections in question stand there.
constexpr std::size_t BufferSize = 64 * 1024;
// A longer value is no name that someone wants to choose.
constexpr std::size_t MaxValueLength = 80;

struct CommonValue {
    Key key;
    std::string_view text;
};
constexpr CommonValue CommonValues[] = {
    {AtcAirline, "Air Taxi"},
    {AtcAirline, "Ambulance"},
    {AtcAirline, "Cargo"},
    {AtcAirline, "Charter"},
    {AtcAirline, "Coast Guard"},
    {AtcAirline, "Commuter"},
    {AtcAirline, "Express"},
    {AtcAirline, "Rescue"},
    {AtcAirline, "Shuttle"},
    {AtcAirline, "Survey"},
    {Manufacturer, "Experimental"},
    {Manufacturer, "Fictional"},
    {Manufacturer, "Homebuilt"},
    {Manufacturer, "Military"},
    {Manufacturer, "Vintage"},
    {AtcType, "AMPHIBIAN"},
    {AtcType, "EXPERIMENTAL"},
    {AtcType, "GLIDER"},
    {AtcType, "HELICOPTER"},
    {AtcType, "HOMEBUILT"},
    {AtcType, "MILITARY"},
    {AtcType, "ULTRALIGHT"},
    {AtcModel, "A320"},
    {AtcModel, "B737"},
    {AtcModel, "B747"},
    {AtcModel, "B777"},
    {AtcModel, "C172"},
    {AtcModel, "C182"},
    {AtcModel, "C208"},
    {AtcModel, "DC3"},
    {AtcModel, "GLID"},
    {AtcModel, "MD80"},
    {AtcModel, "PA28"},
};

} // namespace

InfoOfferSearch::InfoOfferSearch(const FileSystem& fileSystem, const Locations& locations)
    : files(fileSystem), buffer(BufferSize) {
    for (const auto& common : CommonValues)
        values[common.key].emplace(FoldCase(common.text), common.text);
    for (const auto& name : SubdirectoryNames(files, locations.HangarDir))
        categories.push_back(locations.HangarDir + name + "\\");
    categories.push_back(locations.Aircraft());
}

bool InfoOfferSearch::Continue(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (!categories.empty() || !aircraft.empty()) {
        if (aircraft.empty())
            ListNext();
        else
            ReadNext();
        if (std::chrono::steady_clock::now() >= end)
            break;
    }
    return !categories.empty() || !aircraft.empty();
}

void InfoOfferSearch::ListNext() {
    const std::string directory = std::move(categories.back());
    categories.pop_back();
    for (const auto& name : SubdirectoryNames(files, directory))
        aircraft.push_back(directory + name + "\\");
}

void InfoOfferSearch::ReadNext() {
    const auto file = files.OpenForReading(aircraft.back() + "aircraft.cfg");
    aircraft.pop_back();
    std::size_t size = 0;
    while (file && size < buffer.size()) {
        const auto count = (*file)->Read(std::as_writable_bytes(std::span(buffer).subspan(size)));
        if (!count || *count == 0)
            break;
        size += *count;
    }
    Take(std::string_view(buffer.data(), size));
}

void InfoOfferSearch::Take(std::string_view bytes) {
    for (const ConfigLine& line : ParseConfig(bytes).lines) {
        const std::string_view key = KeyOf(line.text);
        const auto known =
            std::ranges::find_if(Keys, [&](std::string_view wanted) { return EqualNoCase(key, wanted); });
        if (known == Keys.end())
            continue;
        const std::string value(ValueOf(line.text));
        if (!value.empty() && value.size() <= MaxValueLength)
            values[static_cast<std::size_t>(known - Keys.begin())].emplace(FoldCase(value), value);
    }
}

InfoOffers InfoOfferSearch::Offers() const {
    const auto texts = [&](Key key) {
        std::vector<std::string> list;
        for (const auto& [folded, text] : values[key])
            list.push_back(text);
        return list;
    };
    return {texts(AtcAirline), texts(Manufacturer), texts(AtcType), texts(AtcModel)};
}

} // namespace korvadex
