#include "package/classification.h"

#include <algorithm>
#include <array>
#include <iterator>

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
    const auto fileMax = static_cast<std::size_t>(limits.FileMax);
    const std::span<const FilePattern> patterns = PatternsOf(group);
    const std::span<const FileEntry> first(tree.files.data(), std::min(tree.files.size(), fileMax));
    FileList list{{}, tree.isLevelCut ? ListCut::Level : ListCut::None};
    if (group == Unrecognized) {
        std::ranges::copy_if(first, std::back_inserter(list.entries), [](const FileEntry& file) {
            return file.info.kind != EntryKind::File || !IsRecognized(file.key);
        });
        list.cut = first.size() < tree.files.size() ? ListCut::FileMax : list.cut;
        return list;
    }
    // No list holds a file twice: it stands where the first of its patterns does, the bitmaps behind all others.
    std::vector<std::vector<const FileEntry*>> found(patterns.size() + 1);
    const auto isWantedBitmap = [&](const FileEntry& file) {
        return (group == Panel || group == Texture) && MatchesPattern(file.key, "bmp", FileMode::Extension) &&
               names.contains(file.key) == (group == Panel);
    };
    for (const FileEntry& file : tree.files) {
        if (file.info.kind != EntryKind::File)
            continue;
        const auto pattern = std::ranges::find_if(patterns, [&](const FilePattern& candidate) {
            return MatchesPattern(file.key, candidate.text, candidate.mode);
        });
        if (pattern == patterns.end() && !isWantedBitmap(file))
            continue;
        auto& alike = found[static_cast<std::size_t>(pattern - patterns.begin())];
        if (alike.empty() || alike.back()->path != file.path) // two names on the disk may be shown as one
            alike.push_back(&file);
    }
    for (const auto& files : found) {
        for (const FileEntry* file : files) {
            if (list.entries.size() == fileMax) {
                list.cut = ListCut::FileMax;
                return list;
            }
            list.entries.push_back(*file);
        }
    }
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
