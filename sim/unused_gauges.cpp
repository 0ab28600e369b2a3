#include "sim/unused_gauges.h"

#include "package/file_primitives.h"
#include "package/walk.h"
#include "platform/windows_path.h"
#include "sim/gauges.h"

#include <algorithm>
#include <map>
#include <set>

namespace korvadex {

namespace {

std::vector<FileEntry> CollectGauges(CommandContext& context) {
    const Tree tree = WalkTree(context.files, context.locations.MsfsDir + "gauges\\");
    std::vector<FileEntry> gauges;
    for (const std::string_view extension : {"gau", "cab"}) {
        const FileList list = CollectFiles(tree, extension, FileMode::Extension, context.limits);
        if (list.cut != ListCut::None)
            context.window.ShowStatus(DescribeCut(list.cut, context.limits));
        gauges.insert(gauges.end(), list.entries.begin(), list.entries.end());
    }
    return gauges;
}

std::vector<UnusedGauge> FindUnused(CommandContext& context,
                                    const std::function<void(int value, int maximum)>& progress) {
    const std::vector<FileEntry> gauges = CollectGauges(context);
    std::vector<std::string> names;
    for (const FileEntry& gauge : gauges)
        names.push_back(GaugeName(gauge.path));

    // The time goes into the panels; the bar shows it in gauges.
    const int count = static_cast<int>(gauges.size());
    const ConfigProgress inGauges = [&](int done, int total) {
        progress(std::max(1, static_cast<int>(static_cast<std::int64_t>(count) * done / total)),
                 std::max(1, count));
    };
    NameMatcher used(names);
    if (!FindGaugesInUse(context, context.locations.MsfsDir, used, "", inGauges)) {
        context.user.Tell("Not every panel.cfg file below " + context.locations.MsfsDir +
                              "aircraft\\ could be looked at.  To be on the safe side, every gauge is taken "
                              "as used.",
                          MessageIcon::Exclamation);
        return {};
    }
    std::vector<UnusedGauge> unused;
    std::map<std::string, int> sameName;
    for (std::size_t i = 0; i < gauges.size(); ++i) {
        if (used.IsFound(i) || IsStockGauge(gauges[i].Name()))
            continue;
        unused.push_back({gauges[i].Name(), gauges[i].path});
        ++sameName[gauges[i].key];
    }
    // Those of one name are told apart by their directories.
    const std::size_t root = (context.locations.MsfsDir + "gauges\\").size();
    for (UnusedGauge& gauge : unused)
        if (sameName[FoldCase(gauge.name)] > 1)
            gauge.name = gauge.path.substr(root);
    return unused;
}

class GaugeList {
  public:
    explicit GaugeList(CommandContext& command) : context(command) {}

    std::vector<UnusedGauge> Search(const std::function<void(int, int)>& progress) {
        listed = FindUnused(context, progress);
        return listed;
    }

    std::vector<UnusedGauge> Remove(std::vector<int> rows) {
        std::erase_if(rows, [&](int row) { return row < 0 || row >= std::ssize(listed); });
        if (rows.empty()) {
            context.user.Tell("Please select the gauges first.");
            return listed;
        }
        if (!context.user.AskYesNo("Are you sure you want to remove these gauges?"))
            return listed;
        // Collected again: an entry stands for its own path, and only while that is still a gauge's.
        std::set<std::string> present;
        for (const FileEntry& gauge : CollectGauges(context))
            present.insert(FoldCase(gauge.path));
        std::ranges::sort(rows, std::greater<>());
        rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
        std::vector<std::string> kept;
        for (const int row : rows) {
            const std::string path = listed[static_cast<std::size_t>(row)].path;
            const std::string reason =
                present.contains(FoldCase(path)) ? DeleteGauge(context, path) : std::string();
            if (reason.empty())
                listed.erase(listed.begin() + row);
            else
                kept.push_back(reason);
        }
        if (kept.empty())
            context.user.Tell("Done.");
        TellRemainingGauges(context, kept);
        return listed;
    }

  private:
    CommandContext& context;
    std::vector<UnusedGauge> listed;
};

} // namespace

void ListUnusedGauges(CommandContext& context) {
    if (!context.user.AskOkCancel(
            "This may take a minute or two.  During this time it will appear that the application is locked "
            "up.  Please be patient.  This process looks at every gauge to see if it is being utilized."))
        return;
    if (!CheckGaugesDirectory(context, context.locations.MsfsDir))
        return;
    GaugeList gauges(context);
    context.user.ShowUnusedGauges(
        {.search = [&](const std::function<void(int, int)>& progress) { return gauges.Search(progress); },
         .remove = [&](const std::vector<int>& rows) { return gauges.Remove(rows); }});
}

} // namespace korvadex
