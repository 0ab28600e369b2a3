#include "sim/gauges.h"

#include "package/file_primitives.h"
#include "platform/windows_path.h"
#include "sim/config_search.h"
#include "sim/progress.h"
#include "sim/shared_files.h"

#include <algorithm>
#include <array>

namespace korvadex {

namespace {

constexpr std::array<std::string_view, 15> StockGauges = {
    "fw190a.gau",       "bf109e.gau",       "hurricane_1.gau",
    "p47d.gau",         "p51d.gau",         "bendix_king_radios_open.gau",
    "spitfire_mki.gau", "a6m2_zero.gau",    "a6m5_zero.gau",
    "cfs2hud.gau",      "f4f4_wildcat.gau", "f6f3_hellcat.gau",
    "minicontrols.gau", "n1k2j_george.gau", "p38f_lightning.gau"};
constexpr std::array<std::string_view, 5> StockGaugeParts = {"schweizer.", "sopwith.", "cessna_182.",
                                                             "cessna_182_rg.", "generic."};

// For each gauge name, whether a panel of some aircraft below root names it. One pass over the panel.cfg
// files answers for all of them; where something could not be looked at, every gauge counts as used.
std::vector<bool> GaugesInUse(CommandContext& context, const std::string& root,
                              const std::vector<std::string>& names) {
    std::vector<bool> isUsed(names.size(), false);
    std::size_t unusedCount = names.size();
    const Tree aircraft = WalkTree(context.files, root + "aircraft\\");
    const bool isComplete = VisitConfigFiles(
        context, aircraft, "panel.cfg", "", [&](const FileEntry&, const std::vector<std::string>& lines) {
            for (const std::string& line : lines) {
                if (!IsGaugeLine(line))
                    continue;
                for (std::size_t i = 0; i < names.size(); ++i) {
                    if (!isUsed[i] && line.find(names[i]) != std::string::npos) {
                        isUsed[i] = true;
                        --unusedCount;
                    }
                }
            }
            return unusedCount == 0 ? Visit::Stop : Visit::Continue;
        });
    if (!isComplete)
        isUsed.assign(names.size(), true);
    return isUsed;
}

bool InstallGauges(CommandContext& context, const std::vector<FileEntry>& gauges,
                   const std::string& directory, SharedFiles& placed) {
    std::vector<std::string> sources;
    for (const FileEntry& gauge : gauges)
        sources.push_back(gauge.path);
    ProgressBar progress(context.window, static_cast<int>(sources.size()));
    const Status status = placed.Place(directory, sources, ".gau", [&] { progress.Step(); });
    if (!status)
        TellCopyFailed(context, status);
    return bool(status);
}

void RemoveGauges(CommandContext& context, const std::vector<FileEntry>& gauges, const std::string& root,
                  const std::string& directory) {
    std::vector<std::string> names;
    for (const FileEntry& gauge : gauges)
        names.push_back(GaugeName(gauge.path));
    const std::vector<bool> isUsed = GaugesInUse(context, root, names);

    ProgressBar progress(context.window, static_cast<int>(gauges.size()));
    for (std::size_t i = 0; i < gauges.size(); ++i) {
        progress.Step();
        const std::string fileName = gauges[i].Name();
        const std::string installed = directory + fileName;
        if (isUsed[i] || IsStockGauge(fileName))
            continue;
        const auto info = context.files.Info(installed);
        // A gauge of the same name with other bytes came from elsewhere.
        if (info && info->kind == EntryKind::File && HoldsUnpackedBytes(context, gauges[i].path, installed))
            DeleteFileForced(context.files, installed);
    }
}

} // namespace

std::string GaugeName(std::string_view path) {
    const std::string name = FoldCase(LastPathComponent(path));
    return name.substr(0, name.find('.'));
}

bool IsStockGauge(std::string_view fileName) {
    const std::string name = FoldCase(fileName);
    return std::ranges::find(StockGauges, name) != StockGauges.end() ||
           std::ranges::any_of(StockGaugeParts,
                               [&](std::string_view stock) { return name.find(stock) != std::string::npos; });
}

bool CheckGaugesDirectory(CommandContext& context, const std::string& root) {
    if (context.files.IsDirectory(root + "gauges"))
        return true;
    context.user.Tell(
        root + "gauges directory does not exist.  Please verify Flight Simulator directory location.",
        MessageIcon::Exclamation);
    return false;
}

bool PlaceGauges(CommandContext& context, const LoadedPackage& package, const std::string& root,
                 GaugeMode mode, SharedFiles* placed) {
    if (!CheckGaugesDirectory(context, root))
        return false;
    const std::vector<FileEntry>& gauges = package.ComponentFiles[Gauges];
    const std::string directory = root + "gauges\\";
    if (mode == GaugeMode::Remove) {
        RemoveGauges(context, gauges, root, directory);
        return true;
    }
    if (placed)
        return InstallGauges(context, gauges, directory, *placed);
    SharedFiles added(context);
    const bool isPlaced = InstallGauges(context, gauges, directory, added);
    if (!isPlaced)
        added.TakeBack();
    return isPlaced;
}

} // namespace korvadex
