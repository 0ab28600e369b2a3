#include "sim/gauges.h"

#include "package/file_primitives.h"
#include "package/name_list.h"
#include "package/progress.h"
#include "platform/windows_path.h"
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
constexpr std::array<std::string_view, 5> StockGaugeParts = {"schweizer.", "sopwith.", "cessna_182.", "cessna_182_rg.",
                                                             "generic."};

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

void TellRemainingGauges(CommandContext& context, const std::vector<std::string>& remaining) {
    if (remaining.empty())
        return;
    context.user.Tell("The following gauges could not be removed ...\r\n\r\n" + ListNames(remaining) +
                          "\r\n\r\nPlease close the program that uses them (Flight Simulator, perhaps), "
                          "or make sure that you may write there, and delete them from the list of unused gauges.",
                      MessageIcon::Exclamation);
}

bool CheckGaugesDirectory(CommandContext& context, const std::string& root) {
    if (context.files.IsDirectory(root + "gauges"))
        return true;
    context.user.Tell(root + "gauges directory does not exist.  Please verify Flight Simulator directory location.",
                      MessageIcon::Exclamation);
    return false;
}

bool InstallGauges(CommandContext& context, const std::vector<FileEntry>& gauges, const std::string& root,
                   SharedFiles& placed) {
    if (!CheckGaugesDirectory(context, root))
        return false;
    std::vector<std::string> sources;
    for (const FileEntry& gauge : gauges)
        sources.push_back(gauge.path);
    ProgressBar progress(context.display, static_cast<int>(sources.size()));
    const Status status = placed.Place(root + "gauges\\", sources, ".gau", [&] { progress.Step(); });
    if (!status)
        TellCopyFailed(context, status);
    return bool(status);
}

} // namespace korvadex
