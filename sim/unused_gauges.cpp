#include "sim/unused_gauges.h"

#include "package/file_primitives.h"
#include "package/name_list.h"
#include "package/progress.h"
#include "package/walk.h"
#include "platform/windows_path.h"
#include "sim/gauge_use.h"
#include "sim/gauges.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>

namespace korvadex {

namespace {

std::vector<std::string> NamesOf(const std::vector<FileEntry>& gauges) {
    std::vector<std::string> names;
    for (const FileEntry& gauge : gauges)
        names.push_back(GaugeName(gauge.path));
    return names;
}

// The gauges of the simulator, the packed ones behind the others.
struct Gauges {
    void List(const FileSystem& files, const std::string& directory, const WalkLimits& limits) {
        const Tree tree = WalkTree(files, directory, WalkFor::Names);
        for (const std::string_view extension : {"gau", "cab"}) {
            FileList list = CollectFiles(tree, extension, FileMode::Extension, limits);
            if (list.cut != ListCut::None)
                cut = list.cut;
            std::ranges::move(list.entries, std::back_inserter(entries));
        }
    }

    std::vector<FileEntry> entries;
    ListCut cut = ListCut::None;
};

void TellNotSearched(CommandContext& context, const std::vector<Unseen>& unseen) {
    context.user.Tell(
        "Not every panel.cfg file below " + context.locations.MsfsDir +
            "aircraft\\ could be looked at.  To be on the safe side, every gauge is taken as used.\r\n\r\n" +
            ListUnseen(unseen),
        MessageIcon::Exclamation);
}

std::vector<FileEntry> FindUnused(CommandContext& context,
                                  const std::function<void(int value, int maximum)>& progress) {
    Gauges gauges;
    const auto listNames = [&] {
        gauges.List(context.files, context.locations.Gauges(), context.limits);
        return NamesOf(gauges.entries);
    };
    // The time goes into the panels; the bar shows it in gauges.
    const GaugeUse::Progress inGauges = [&](int done, int total) {
        const int count = static_cast<int>(gauges.entries.size());
        progress(std::max(1, static_cast<int>(static_cast<std::int64_t>(count) * done / std::max(1, total))),
                 std::max(1, count));
    };
    const GaugeUse use(context, listNames, inGauges);
    if (gauges.cut != ListCut::None)
        context.display.ShowStatus(DescribeCut(gauges.cut, context.limits));
    if (!use.NotSearched().empty()) {
        TellNotSearched(context, use.NotSearched());
        return {};
    }
    std::vector<FileEntry> unused;
    for (std::size_t i = 0; i < gauges.entries.size(); ++i) {
        FileEntry& gauge = gauges.entries[i];
        if (use.IsUsed(i) || IsStockGauge(gauge.Name()))
            continue;
        if (const auto info = context.files.Info(gauge.path))
            gauge.info = *info; // which is compared before it is deleted
        unused.push_back(gauge);
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
        std::vector<FileEntry> chosen;
        for (const int row : rows)
            chosen.push_back(unused[static_cast<std::size_t>(row)]);
        std::optional<ProgressBar> bar;
        const GaugeUse use(
            context, [&] { return NamesOf(chosen); },
            [&](int done, int total) {
                if (!bar)
                    bar.emplace(context.display, total);
                bar->Set(done);
            });
        if (!use.NotSearched().empty()) {
            TellNotSearched(context, use.NotSearched());
            return;
        }
        bar.reset();
        std::vector<std::string> kept, remaining;
        std::vector<int> gone;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const FileEntry& gauge = chosen[i];
            const auto now = context.files.Info(gauge.path);
            std::string reason;
            if (use.IsUsed(i))
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
