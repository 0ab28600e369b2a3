#include "sim/unused_gauges.h"

#include "package/file_primitives.h"
#include "package/name_list.h"
#include "package/walk.h"
#include "platform/windows_path.h"
#include "platform/workers.h"
#include "sim/gauges.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>

namespace korvadex {

namespace {

// The gauges, and which of them are in use.
struct GaugeSearch {
    GaugeSearch(const FileSystem& files, const std::string& directory, const WalkLimits& limits) {
        const Tree tree = WalkTree(files, directory);
        for (const std::string_view extension : {"gau", "cab"}) {
            FileList list = CollectFiles(tree, extension, FileMode::Extension, limits);
            if (list.cut != ListCut::None)
                cut = list.cut;
            std::ranges::move(list.entries, std::back_inserter(gauges));
        }
        std::vector<std::string> names;
        for (const FileEntry& gauge : gauges)
            names.push_back(GaugeName(gauge.path));
        used = NameMatcher(names);
    }

    std::vector<FileEntry> gauges;
    ListCut cut = ListCut::None;
    NameMatcher used{std::vector<std::string>()};
};

ConfigFiles Panels(const CommandContext& context) {
    return {context.files, context.locations.Aircraft(), {.fileName = "panel.cfg"}};
}

void TellNotSearched(CommandContext& context, const std::vector<Unseen>& unseen) {
    context.user.Tell(
        "Not every panel.cfg file below " + context.locations.MsfsDir +
            "aircraft\\ could be looked at.  To be on the safe side, every gauge is taken as used.\r\n\r\n" +
            ListUnseen(unseen),
        MessageIcon::Exclamation);
}

std::vector<FileEntry> FindUnused(CommandContext& context,
                                  const std::function<void(int value, int maximum)>& progress) {
    // The gauges are listed while the panels are looked for.
    struct NoTools {};
    std::unique_ptr<GaugeSearch> found;
    Workers<NoTools> workers(1);
    std::future<void> listed = workers.Start([&](NoTools&) {
        found = std::make_unique<GaugeSearch>(context.files, context.locations.Gauges(), context.limits);
    });
    ConfigFiles panels = Panels(context);
    listed.get();
    if (found->cut != ListCut::None)
        context.display.ShowStatus(DescribeCut(found->cut, context.limits));

    // The time goes into the panels; the bar shows it in gauges.
    const std::vector<FileEntry>& gauges = found->gauges;
    const int count = static_cast<int>(gauges.size());
    const ConfigProgress inGauges = [&](int done, int total) {
        progress(std::max(1, static_cast<int>(static_cast<std::int64_t>(count) * done / total)), std::max(1, count));
    };
    const auto unseen = FindGaugesInUse(context, panels, found->used, inGauges);
    if (!unseen.empty()) {
        TellNotSearched(context, unseen);
        return {};
    }
    std::vector<FileEntry> unused;
    for (std::size_t i = 0; i < gauges.size(); ++i) {
        if (!found->used.IsFound(i) && !IsStockGauge(gauges[i].Name()))
            unused.push_back(gauges[i]);
    }
    return unused;
}

// Those of one name are told apart by their directories.
std::vector<UnusedGauge> Shown(const CommandContext& context, const std::vector<FileEntry>& gauges) {
    std::map<std::string, int> sameName;
    for (const FileEntry& gauge : gauges)
        ++sameName[gauge.key];
    const std::size_t root = context.locations.Gauges().size();
    std::vector<UnusedGauge> shown;
    for (const FileEntry& gauge : gauges)
        shown.push_back({sameName[gauge.key] > 1 ? gauge.path.substr(root) : gauge.Name(), gauge.path});
    return shown;
}

// What the list of unused gauges deletes, and what it says of the rest.
class GaugeList {
  public:
    explicit GaugeList(CommandContext& command) : context(command) {}

    std::vector<UnusedGauge> Search(const std::function<void(int, int)>& progress) {
        unused = FindUnused(context, progress);
        return listed = Shown(context, unused);
    }

    std::vector<UnusedGauge> Remove(std::vector<int> rows) {
        std::erase_if(rows, [&](int row) { return row < 0 || row >= std::ssize(listed); });
        if (rows.empty()) {
            context.user.Tell("Please select the gauges first.");
            return listed;
        }
        if (!context.user.AskYesNo("Are you sure you want to remove these gauges?"))
            return listed;
        std::ranges::sort(rows);
        rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
        DeleteRows(rows);
        return listed;
    }

  private:
    void DeleteRows(const std::vector<int>& rows) {
        // An aircraft that names one of them may have been installed since the search.
        std::vector<std::string> names;
        for (const int row : rows)
            names.push_back(GaugeName(unused[static_cast<std::size_t>(row)].path));
        NameMatcher used(names);
        ConfigFiles panels = Panels(context);
        const auto unseen = FindGaugesInUse(context, panels, used);
        if (!unseen.empty()) {
            TellNotSearched(context, unseen);
            return;
        }
        std::vector<std::string> kept, remaining;
        std::vector<int> gone;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const FileEntry& gauge = unused[static_cast<std::size_t>(rows[i])];
            const auto now = context.files.Info(gauge.path);
            std::string reason;
            if (used.IsFound(i))
                kept.push_back(gauge.path + " (a panel uses it by now)");
            else if (now && *now != gauge.info)
                kept.push_back(gauge.path + " (it was changed by another program meanwhile)");
            else if (reason = DeleteOrExplain(context.files, gauge.path); !reason.empty())
                remaining.push_back(reason);
            else
                gone.push_back(rows[i]);
        }
        for (auto row = gone.rbegin(); row != gone.rend(); ++row) {
            unused.erase(unused.begin() + *row);
            listed.erase(listed.begin() + *row);
        }
        if (kept.empty() && remaining.empty())
            context.user.Tell("Done.");
        if (!kept.empty())
            context.user.Tell("The following gauges were not removed ...\r\n\r\n" + ListNames(kept) +
                                  "\r\n\r\nPlease open the list of unused gauges again to see what is unused now.",
                              MessageIcon::Exclamation);
        TellRemainingGauges(context, remaining);
    }

    CommandContext& context;
    std::vector<FileEntry> unused;
    std::vector<UnusedGauge> listed; // the same, as shown
};

} // namespace

void ListUnusedGauges(CommandContext& context) {
    if (!context.user.AskOkCancel(
            "This may take a minute or two.  During this time it will appear that the application is locked up.  "
            "Please be patient.  This process looks at every gauge to see if it is being utilized."))
        return;
    if (!CheckGaugesDirectory(context, context.locations.MsfsDir))
        return;
    GaugeList gauges(context);
    context.user.ShowUnusedGauges(
        {.search = [&](const std::function<void(int, int)>& progress) { return gauges.Search(progress); },
         .remove = [&](const std::vector<int>& rows) { return gauges.Remove(rows); }});
}

} // namespace korvadex
