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
    context.user.Tell("The file " + cfg.path + " could not be written (" + DescribeFault(status) +
                          ").  It was left as it is.  "
                          "Please make sure that it can be written and that the disk has room, and show Staging again.",
                      MessageIcon::Exclamation);
}

// Which directories belong to which configuration can be told from a whole listing only.
bool CanReduce(CommandContext& context, const AircraftCfg& cfg, const Tree& tree) {
    const ListCut cut = CollectDirectories(tree, context.limits).cut;
    const std::string reason = cut != ListCut::None ? DescribeCut(cut, context.limits)
                               : !tree.unreadable.empty()
                                   ? "The directory " + tree.unreadable.front() + " could not be read."
                                   : "";
    if (!reason.empty())
        context.user.Tell("The configurations of " + cfg.path + " cannot be told apart.  Nothing was changed.\r\n\r\n" +
                              reason,
                          MessageIcon::Exclamation);
    return reason.empty();
}

} // namespace

std::string DescribeOpenChoice(const LoadedPackage& package) {
    const AircraftCfg& cfg = package.aircraftCfg;
    return cfg.read ? "This aircraft has several configurations.  One of them has to be chosen first."
                    : "The file " + cfg.path + " could not be read (" + DescribeFault(cfg.read) +
                          "), so that it is not known whether this aircraft has several configurations.";
}

AircraftCfg ReadAircraftCfg(const FileSystem& files, const std::string& path) {
    AircraftCfg cfg;
    cfg.path = path;
    auto text = ReadConfigText(files, path);
    cfg.read = text.status();
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

std::optional<KeptConfiguration> ChooseConfiguration(CommandContext& context, const AircraftCfg& cfg,
                                                     const Tree& tree) {
    const auto configurations = ReadConfigurations(cfg);
    if (configurations.empty() || !CanReduce(context, cfg, tree))
        return std::nullopt;
    const bool asks = configurations.size() > 1;
    std::size_t chosen = 0;
    Tree now = tree;
    if (asks) {
        const auto picked = context.user.ChooseConfiguration(ConfigurationRows(tree, cfg.path, configurations));
        if (!picked)
            return std::nullopt;
        chosen = static_cast<std::size_t>(*picked);
        // The disk may have changed while the user thought about it.
        if (ReadAircraftCfg(context.files, cfg.path).text.Bytes() != cfg.text.Bytes()) {
            context.user.Tell(
                "The file " + cfg.path +
                    " was changed by another program.  Nothing was changed here.  Please press F5 and choose again.",
                MessageIcon::Exclamation);
            return std::nullopt;
        }
        now = WalkTree(context.files, tree.root);
        if (!CanReduce(context, cfg, now))
            return std::nullopt;
    }

    // Nothing is deleted before the file that stops naming it is on disk, and that one is written only when all the
    // rest can go: what stayed behind would be taken for a part of the kept configuration.
    Reduction reduction(context, now, cfg.path, configurations, chosen);
    if (!reduction.SetAside())
        return std::nullopt;
    if (const Status status = Write(context, cfg, Reduced(cfg, chosen)); !status) {
        reduction.PutBack();
        ReportWriteFailure(context, cfg, status);
        return std::nullopt;
    }
    reduction.Discard();
    if (asks)
        DeleteFileForced(context.files, context.locations.StagingDir + std::string(ImportNameFile));
    return KeptConfiguration{configurations[chosen].title, asks};
}

bool HasTitle(const AircraftCfg& cfg) {
    return std::ranges::any_of(cfg.text.lines, [](const ConfigLine& line) { return HasKey(line.text, "title"); });
}

std::optional<ConfigText> WithTitle(const AircraftCfg& cfg, const std::string& title) {
    ConfigText text = cfg.text;
    for (std::size_t number = 0; number < LineCount(cfg); ++number) {
        const std::string& line = text.lines[number].text;
        if (HasKey(line, "title") && !text.SetText(number, WithValue(line, Trim(title))))
            return std::nullopt;
    }
    return text;
}

Status RewriteTitle(CommandContext& context, const AircraftCfg& cfg, const std::string& title) {
    const auto text = WithTitle(cfg, title);
    return text ? Write(context, cfg, *text) : Status{FileFault::BadName, cfg.path, 0};
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
