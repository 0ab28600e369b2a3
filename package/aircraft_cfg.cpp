#include "package/aircraft_cfg.h"

#include "package/config_readers.h"
#include "package/config_text.h"
#include "package/file_primitives.h"
#include "package/reduce_staging.h"
#include "package/scratch.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <array>

namespace korvadex {

namespace {

constexpr std::array<std::string_view, 4> VariationKeys = {"model", "panel", "sound", "texture"};

// The lines that are looked at.
std::size_t LineCount(const AircraftCfg& cfg) {
    return std::min(cfg.text.lines.size(), MaxConfigLines);
}

constexpr std::size_t FirstDigit = std::string_view("fltsim.").size();

// "fltsim.1" of a line that begins a configuration; "" for any other line.
std::string_view ConfigurationSection(std::string_view line) {
    const std::string_view section = SectionOf(line);
    return StartsWithNoCase(section, "fltsim.") ? section : "";
}

// A line that gives one of the four a value loses it.
void ClearVariation(ConfigText& text, std::size_t number) {
    const std::string& line = text.lines[number].text;
    const bool isVariation =
        std::ranges::any_of(VariationKeys, [&](std::string_view key) { return HasKey(line, key); });
    if (isVariation && !ValueOf(line).empty())
        static_cast<void>(text.SetText(number, line.substr(0, line.find('=') + 1)));
}

// The text with the chosen section alone, as the first.
ConfigText Reduced(const AircraftCfg& cfg, std::size_t chosen) {
    ConfigText text = cfg.text;
    std::vector<ConfigLine> kept;
    std::size_t sections = 0;
    bool isInSection = false;
    for (std::size_t number = 0; number < text.lines.size(); ++number) {
        const std::string line = text.lines[number].text;
        const bool isLookedAt = number < MaxConfigLines;
        if (isLookedAt && !SectionOf(line).empty()) {
            const std::string_view section = ConfigurationSection(line);
            isInSection = !section.empty();
            sections += isInSection ? 1 : 0;
            if (isInSection && sections == chosen + 1) {
                const auto at = static_cast<std::size_t>(section.data() - line.data());
                std::string renumbered = line;
                renumbered.replace(at + FirstDigit, section.size() - FirstDigit, "0");
                static_cast<void>(text.SetText(number, renumbered));
            }
        } else if (isLookedAt && isInSection) {
            ClearVariation(text, number);
        }
        if (!isLookedAt || !isInSection || sections == chosen + 1)
            kept.push_back(std::move(text.lines[number]));
    }
    text.lines = std::move(kept);
    return text;
}

// In the place of what was read.
Status Write(CommandContext& context, const AircraftCfg& cfg, const ConfigText& text) {
    const auto before = ReadBytes(context.files, cfg.path);
    if (!before)
        return before.status();
    if (!text.IsText())
        return {FileFault::Failed, cfg.path, 0};
    if (*before != cfg.text.Bytes()) // changed since
        return {FileFault::InUse, cfg.path, 0};
    const std::string bytes = text.Bytes();
    return bytes == *before ? Status{} : RewriteBytes(context.files, context.locations, cfg.path, bytes);
}

void ReportWriteFailure(CommandContext& context, const AircraftCfg& cfg, const Status& status) {
    context.user.Tell(
        "The file " + cfg.path + " could not be written (" + DescribeFault(status.fault) +
            ").  It was left as it is.  Please make sure that it can be written and that the disk has "
            "room, and show Staging again.",
        MessageIcon::Exclamation);
}

} // namespace

AircraftCfg ReadAircraftCfg(const FileSystem& files, const std::string& path) {
    AircraftCfg cfg;
    cfg.path = path;
    auto text = ReadConfigText(files, path);
    if (!text)
        return cfg;
    cfg.text = std::move(*text);
    for (std::size_t number = 0; number < LineCount(cfg); ++number) {
        const std::string& line = cfg.text.lines[number].text;
        if (HasKey(line, "title") && cfg.title != MultipleTitle)
            cfg.title = ValueOf(line);
        if (ConfigurationSection(line).substr(0, FirstDigit + 1).ends_with(".1"))
            cfg.title = MultipleTitle;
    }
    return cfg;
}

std::vector<Configuration> ReadConfigurations(const AircraftCfg& cfg) {
    std::vector<Configuration> configurations;
    bool isInSection = false;
    for (std::size_t number = 0; number < LineCount(cfg); ++number) {
        const std::string& line = cfg.text.lines[number].text;
        if (!SectionOf(line).empty()) {
            const std::string_view section = ConfigurationSection(line);
            isInSection = !section.empty();
            if (isInSection)
                configurations.emplace_back().section = section;
        }
        if (!isInSection)
            continue;
        Configuration& row = configurations.back();
        const std::pair<std::string_view, std::string*> columns[] = {{"title", &row.title},
                                                                     {"model", &row.model},
                                                                     {"panel", &row.panel},
                                                                     {"sound", &row.sound},
                                                                     {"texture", &row.texture}};
        for (const auto& [key, value] : columns) {
            if (HasKey(line, key))
                *value = ValueOf(line);
        }
    }
    return configurations;
}

std::optional<KeptConfiguration> ChooseConfiguration(CommandContext& context, const AircraftCfg& cfg) {
    const auto configurations = ReadConfigurations(cfg);
    const auto saved = CollectDirectories(context.files, context.locations.StagingDir, false, context.limits);
    std::size_t chosen = 0;
    if (configurations.empty())
        return std::nullopt;
    if (saved.cut != ListCut::None) {
        context.user.Tell("The configurations of " + cfg.path +
                              " cannot be told apart.  Nothing was changed.\r\n\r\n" +
                              DescribeCut(saved.cut, context.limits),
                          MessageIcon::Exclamation);
        return std::nullopt;
    }
    if (configurations.size() > 1) {
        std::vector<std::string> items;
        for (const auto& row : configurations)
            items.push_back(row.title + "  (" + row.section + ")");
        const auto picked = context.user.ChooseConfiguration(items);
        if (!picked)
            return std::nullopt;
        chosen = static_cast<std::size_t>(*picked);
    }

    // The directories go only once the file that stops naming them is on disk.
    if (const Status status = Write(context, cfg, Reduced(cfg, chosen)); !status) {
        ReportWriteFailure(context, cfg, status);
        return std::nullopt;
    }
    const bool wasAsked = configurations.size() > 1;
    if (wasAsked)
        DeleteFileForced(context.files, context.locations.StagingDir + std::string(ImportNameFile));
    EmptyUnusedDirectories(context, saved, cfg.path, configurations, chosen);
    return KeptConfiguration{configurations[chosen].title, wasAsked};
}

Status RewriteTitle(CommandContext& context, const AircraftCfg& cfg, const std::string& title) {
    ConfigText text = cfg.text;
    for (std::size_t number = 0; number < LineCount(cfg); ++number) {
        const std::string& line = text.lines[number].text;
        if (HasKey(line, "title") && !text.SetText(number, WithValue(line, Trim(title))))
            return {FileFault::BadName, cfg.path, 0};
    }
    return Write(context, cfg, text);
}

void ClearVariationValues(CommandContext& context, const AircraftCfg& cfg) {
    ConfigText text = cfg.text;
    for (std::size_t number = 0; number < LineCount(cfg); ++number)
        ClearVariation(text, number);
    if (text.Bytes() == cfg.text.Bytes())
        return;
    if (const Status status = Write(context, cfg, text); !status)
        ReportWriteFailure(context, cfg, status);
}

} // namespace korvadex
