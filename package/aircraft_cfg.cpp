#include "package/aircraft_cfg.h"

#include "package/config_readers.h"
#include "package/file_primitives.h"
#include "package/reduce_staging.h"
#include "package/scratch.h"
#include "platform/code_page.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <array>

namespace korvadex {

namespace {

constexpr std::array<std::string_view, 4> VariationKeys = {"model=", "panel=", "sound=", "texture="};

bool BeginsWith(const std::string& line, std::string_view key) {
    return StartsWithNoCase(line, key);
}

std::string ValueOf(const std::string& line, std::string_view key) {
    return std::string(Trim(std::string_view(line).substr(key.size())));
}

// The key that the line assigns, as written in the line; "" when it is none of the four.
std::string VariationKeyOf(const std::string& line) {
    const auto key = std::find_if(VariationKeys.begin(), VariationKeys.end(),
                                  [&](std::string_view candidate) { return BeginsWith(line, candidate); });
    return key == VariationKeys.end() ? "" : line.substr(0, key->size());
}

std::string_view WithoutIndent(std::string_view line) {
    return line.substr(std::min(line.find_first_not_of(" \t"), line.size()));
}

bool BeginsSection(std::string_view line) {
    return WithoutIndent(line).starts_with("[");
}

// The text between the brackets of a "[fltsim.N]" line; "" for any other line. One that is a comment begins no
// configuration: with those not chosen, all that follows it would go.
std::string ConfigurationSection(const std::string& line) {
    if (WithoutIndent(line).starts_with(";") || WithoutIndent(line).starts_with("//"))
        return "";
    const std::string folded = FoldCase(line);
    const std::size_t open = folded.find("[fltsim.");
    const std::size_t close = line.find(']', open == std::string::npos ? 0 : open);
    if (open == std::string::npos || close == std::string::npos)
        return "";
    return line.substr(open + 1, close - open - 1);
}

// The stored lines with the chosen section alone, as the first.
std::vector<std::string> ReducedLines(const AircraftCfg& cfg, std::size_t chosen) {
    std::vector<std::string> lines;
    std::size_t sections = 0;
    bool isInSection = false;
    for (const auto& line : cfg.lines) {
        if (!ConfigurationSection(line).empty()) {
            isInSection = true;
            if (++sections == chosen + 1)
                lines.emplace_back("[fltsim.0]");
            continue;
        }
        if (BeginsSection(line))
            isInSection = false;
        if (isInSection && sections != chosen + 1)
            continue;
        const std::string key = isInSection ? VariationKeyOf(line) : "";
        lines.push_back(key.empty() ? line : key);
    }
    return lines;
}

// The lines in the place of those that were read; what the file holds beyond them stays byte for byte.
Status WriteLines(CommandContext& context, const AircraftCfg& cfg, const std::vector<std::string>& lines) {
    const auto before = ReadBytes(context.files, cfg.path);
    if (!before)
        return before.status();
    // Letters of two bytes are not lines of ours: they would be torn apart.
    if (before->find('\0') != std::string::npos)
        return {FileFault::Failed, cfg.path, 0};
    auto bytes = JoinLines(lines);
    if (!bytes)
        return {FileFault::BadName, cfg.path, 0};
    *bytes += before->substr(std::min(cfg.bytesRead, before->size()));
    return *bytes == *before ? Status{} : RewriteBytes(context.files, context.locations, cfg.path, *bytes);
}

void ReportWriteFailure(CommandContext& context, const AircraftCfg& cfg, const Status& status) {
    context.user.Tell(
        "The file " + cfg.path + " could not be written (" + DescribeFault(status.fault) +
            ").  It was left as it is.  Please make sure that it can be written and that the disk has "
            "room, and show Staging again.",
        MessageIcon::Exclamation);
}

// Which directories belong to which configuration can be told from a whole listing only.
bool CanReduce(CommandContext& context, const AircraftCfg& cfg, const Tree& tree) {
    const ListCut cut = CollectDirectories(tree, context.limits).cut;
    const std::string reason = cut != ListCut::None ? DescribeCut(cut, context.limits)
                               : tree.isUnreadable
                                   ? "The directory " + tree.unreadable + " could not be read."
                                   : "";
    if (!reason.empty())
        context.user.Tell("The configurations of " + cfg.path +
                              " cannot be told apart.  Nothing was changed.\r\n\r\n" + reason,
                          MessageIcon::Exclamation);
    return reason.empty();
}

} // namespace

AircraftCfg ReadAircraftCfg(const FileSystem& files, const std::string& path) {
    AircraftCfg cfg;
    cfg.path = path;
    const auto info = files.Info(path);
    if (!info || info->size > MaxConfigBytes)
        return cfg;
    const auto bytes = ReadBytes(files, path);
    if (!bytes)
        return cfg;
    std::string_view rest = *bytes;
    while (!rest.empty() && cfg.lines.size() < MaxConfigLines) {
        const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
        std::string line(TrimLeft(FromCodePage(rest.substr(0, end))));
        const std::size_t lineEnd = rest.substr(end).starts_with("\r\n") ? 2 : 1;
        rest.remove_prefix(std::min(end + lineEnd, rest.size()));
        if (line.empty() && cfg.lines.empty())
            continue;
        if (BeginsWith(line, "title=") && cfg.title != MultipleTitle)
            cfg.title = ValueOf(line, "title=");
        if (BeginsWith(line, "[fltsim.1"))
            cfg.title = MultipleTitle;
        cfg.lines.push_back(std::move(line));
    }
    cfg.bytesRead = bytes->size() - rest.size();
    return cfg;
}

std::vector<Configuration> ReadConfigurations(const AircraftCfg& cfg) {
    std::vector<Configuration> configurations;
    bool isInSection = false;
    for (const auto& line : cfg.lines) {
        if (std::string section = ConfigurationSection(line); !section.empty()) {
            configurations.emplace_back().section = std::move(section);
            isInSection = true;
            continue;
        }
        if (BeginsSection(line))
            isInSection = false;
        if (!isInSection)
            continue;
        Configuration& row = configurations.back();
        const std::pair<std::string_view, std::string*> columns[] = {{"title=", &row.title},
                                                                     {"model=", &row.model},
                                                                     {"panel=", &row.panel},
                                                                     {"sound=", &row.sound},
                                                                     {"texture=", &row.texture}};
        for (const auto& [key, value] : columns) {
            if (BeginsWith(line, key))
                *value = ValueOf(line, key);
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
        const auto picked =
            context.user.ChooseConfiguration(ConfigurationRows(tree, cfg.path, configurations));
        if (!picked)
            return std::nullopt;
        chosen = static_cast<std::size_t>(*picked);
        // The disk may have changed while the user thought about it.
        if (ReadAircraftCfg(context.files, cfg.path).lines != cfg.lines) {
            context.user.Tell(
                "The file " + cfg.path +
                    " was changed by another program.  Nothing was changed here.  Please press F5 and "
                    "choose again.",
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
    if (const Status status = WriteLines(context, cfg, ReducedLines(cfg, chosen)); !status) {
        reduction.PutBack();
        ReportWriteFailure(context, cfg, status);
        return std::nullopt;
    }
    reduction.Discard();
    if (asks)
        DeleteFileForced(context.files, context.locations.StagingDir + std::string(ImportNameFile));
    return KeptConfiguration{configurations[chosen].title, asks};
}

Status RewriteTitle(CommandContext& context, const AircraftCfg& cfg, const std::string& title) {
    std::vector<std::string> lines = cfg.lines;
    for (auto& line : lines) {
        if (BeginsWith(line, "title="))
            line = "title=" + title;
    }
    return WriteLines(context, cfg, lines);
}

void ClearVariationValues(CommandContext& context, const AircraftCfg& cfg) {
    const bool needsChange = std::any_of(cfg.lines.begin(), cfg.lines.end(), [](const std::string& line) {
        const std::string key = VariationKeyOf(line);
        return !key.empty() && key.size() != line.size();
    });
    if (!needsChange)
        return;
    std::vector<std::string> lines;
    for (const auto& line : cfg.lines) {
        const std::string key = VariationKeyOf(line);
        lines.push_back(key.empty() ? line : key);
    }
    if (const Status status = WriteLines(context, cfg, lines); !status)
        ReportWriteFailure(context, cfg, status);
}

} // namespace korvadex
