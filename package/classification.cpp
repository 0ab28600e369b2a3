#include "package/classification.h"

#include <algorithm>
#include <array>
#include <unordered_set>

namespace korvadex {

namespace {

constexpr std::array<FilePattern, 2> ImagePatterns = {{{"jpg"}, {"gif"}}};
constexpr std::array<FilePattern, 9> AircraftPatterns = {{{"aircraft.cfg", FileMode::Name},
                                                          {"air"},
                                                          {"dp"},
                                                          {"cdp"},
                                                          {"", FileMode::CheckText},
                                                          {"", FileMode::KeysText},
                                                          {"", FileMode::NotesText},
                                                          {"", FileMode::RefText},
                                                          {"", FileMode::CheckConfig}}};
constexpr std::array<FilePattern, 5> PanelPatterns = {
    {{"panel.cfg", FileMode::Name}, {"oldpanel.cfg", FileMode::Name}, {"nel"}, {"adl"}, {"clk"}}};
constexpr std::array<FilePattern, 2> GaugePatterns = {{{"gau"}, {"cab"}}};
constexpr std::array<FilePattern, 4> ModelPatterns = {{{"model.cfg", FileMode::Name}, {"mdl"}, {"mpi"}, {"nmp"}}};
constexpr std::array<FilePattern, 6> TexturePatterns = {{{"af"}, {"cf"}, {"tx"}, {"r8"}, {"txr"}, {"bm6"}}};
constexpr std::array<FilePattern, 3> SoundPatterns = {
    {{"sound.cfg", FileMode::Name}, {"oldsound.cfg", FileMode::Name}, {"wav"}}};
constexpr std::array<FilePattern, 11> DocumentationPatterns = {
    {{"txt"}, {"1st"}, {"doc"}, {"hlp"}, {"html"}, {"htm"}, {"pdf"}, {"diz"}, {"rtf"}, {"wri"}, {"xls"}}};
constexpr std::array<FilePattern, 3> MiscellaneousPatterns = {{{"fx"}, {"dll"}, {"dat"}}};

// Names that end so are recognized although no group collects them: mypanel.cfg.
constexpr std::array<std::string_view, 4> RecognizedEndings = {"aircraft.cfg", "model.cfg", "panel.cfg", "sound.cfg"};

} // namespace

std::span<const FilePattern> PatternsOf(Group group) {
    switch (group) {
    case Images:
        return ImagePatterns;
    case Aircraft:
        return AircraftPatterns;
    case Panel:
        return PanelPatterns;
    case Gauges:
        return GaugePatterns;
    case Model:
        return ModelPatterns;
    case Texture:
        return TexturePatterns;
    case Sound:
        return SoundPatterns;
    case Documentation:
        return DocumentationPatterns;
    case Miscellaneous:
        return MiscellaneousPatterns;
    case Unrecognized:
        break;
    }
    return {};
}

FileList CollectGroup(const Tree& tree, Group group, const PanelBitmapNames& names, const WalkLimits& limits) {
    FileList list;
    const auto append = [&list](FileList more) {
        if (list.cut == ListCut::None)
            list.cut = more.cut;
        list.entries.insert(list.entries.end(), std::make_move_iterator(more.entries.begin()),
                            std::make_move_iterator(more.entries.end()));
    };
    if (group == Unrecognized) {
        append(CollectFiles(tree, "", FileMode::All, limits));
        std::erase_if(list.entries, [](const FileEntry& file) {
            return file.info.kind == EntryKind::File && IsRecognized(file.key);
        });
        return list;
    }
    for (const auto& pattern : PatternsOf(group))
        append(CollectFiles(tree, pattern.text, pattern.mode, limits));
    if (group == Panel || group == Texture)
        append(CollectBitmaps(tree, names, group == Panel, limits));

    // No list holds a file twice, nor more than its capacity.
    std::unordered_set<std::string_view> seen;
    std::vector<FileEntry> unique;
    for (const auto& file : list.entries) {
        if (seen.insert(file.path).second)
            unique.push_back(file);
    }
    if (unique.size() > static_cast<std::size_t>(limits.FileMax)) {
        unique.resize(static_cast<std::size_t>(limits.FileMax));
        list.cut = ListCut::FileMax;
    }
    list.entries = std::move(unique);
    return list;
}

bool IsRecognized(std::string_view key) {
    if (MatchesPattern(key, "bmp", FileMode::Extension) ||
        std::ranges::any_of(RecognizedEndings, [&](std::string_view ending) { return key.ends_with(ending); }))
        return true;
    for (int group = 0; group < GroupCount; ++group) {
        for (const auto& pattern : PatternsOf(static_cast<Group>(group))) {
            if (MatchesPattern(key, pattern.text, pattern.mode))
                return true;
        }
    }
    return false;
}

} // namespace korvadex
