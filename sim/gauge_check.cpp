#include "sim/gauge_check.h"

#include "package/config_readers.h"
#include "package/file_primitives.h"
#include "platform/windows_path.h"
#include "sim/shared_files.h"

#include <algorithm>
#include <optional>
#include <set>
#include <unordered_map>

namespace korvadex {

namespace {

constexpr std::string_view LineBreak = "\r\n";

// The gauge that a line of a panel.cfg names, none when it is no gauge line:
//   gauge05=Cessna!Airspeed, 10,20  -> cessna (a cabinet and a gauge in it)
//   gauge12=myclock,100,20          -> myclock
std::optional<std::string> GaugeOnLine(std::string_view line) {
    const std::string lowerLine = FoldCase(line);
    if (!KeyOf(lowerLine).starts_with("gauge"))
        return std::nullopt;
    const std::string_view value = ValueOf(lowerLine);
    const std::size_t end = std::min(value.find('!'), value.size());
    return std::string(TrimBlanks(value.substr(0, end < value.size() ? end : value.find(','))));
}

// The simulator's gauge files by lower-case file name, those of one name in the order of the walk.
class GaugeStock {
  public:
    explicit GaugeStock(CommandContext& context) {
        const Tree tree = WalkTree(context.files, context.locations.Gauges());
        for (const std::string_view extension : {"gau", "cab"}) {
            const FileList found = CollectFiles(tree, extension, FileMode::Extension, context.limits);
            if (found.cut != ListCut::None)
                context.display.ShowStatus(DescribeCut(found.cut, context.limits));
            for (const FileEntry& entry : found.entries) {
                if (entry.info.size > 0) // a power cut leaves some without a byte, which show nothing
                    pathsByName[entry.key].push_back(entry.path);
            }
        }
    }

    // A cabinet satisfies a line just as a single gauge does; where both exist the line may mean either. The
    // gauge may be named with its directory: "sub\clock".
    std::vector<std::string> Find(const std::string& gauge) const {
        std::vector<std::string> paths;
        for (const std::string_view extension : {".gau", ".cab"}) {
            const std::string ending = "\\" + gauge + std::string(extension);
            const auto named = pathsByName.find(LastPathComponent(ending));
            if (named == pathsByName.end())
                continue;
            const auto path = std::ranges::find_if(
                named->second, [&](const std::string& candidate) { return EndsWithNoCase(candidate, ending); });
            if (path != named->second.end())
                paths.push_back(*path);
        }
        return paths;
    }

  private:
    std::unordered_map<std::string, std::vector<std::string>> pathsByName;
};

std::string JoinText(std::initializer_list<std::string_view> lines) {
    std::string text;
    for (const std::string_view line : lines) {
        text += line;
        text += LineBreak;
    }
    return text;
}

} // namespace

PanelCheck CrossCheckPanel(CommandContext& context, const std::string& path) {
    PanelCheck check;
    const auto lines = ReadConfigLines(context.files, path);
    if (!lines) {
        context.user.Tell(path + " could not be read (" + DescribeFault(lines.status()) +
                              "), so that its gauges were not checked.",
                          MessageIcon::Exclamation);
        return check;
    }
    check.isRead = true;
    std::set<std::string> seen;
    std::optional<GaugeStock> stock; // read at the first gauge line: an alias file needs none
    for (const std::string& line : *lines) {
        const auto gauge = GaugeOnLine(line);
        if (!gauge)
            continue;
        if (!stock)
            stock.emplace(context);
        check.PanelNoGauges = false;
        if (gauge->empty() || !seen.insert(*gauge).second)
            continue;
        const std::vector<std::string> found = stock->Find(*gauge);
        for (const std::string& used : found) {
            if (std::ranges::find(check.used, used) == check.used.end())
                check.used.push_back(used);
        }
        if (found.empty())
            check.missing.push_back(*gauge + ".gau");
    }
    return check;
}

namespace {

// What there is to say below a report: "" unless the panel is another aircraft's, and that is not there.
std::string MissingLender(const CommandContext& context, const std::string& panel) {
    LoadedPackage borrower;
    ReadPanelAlias(context.files, panel, borrower);
    const std::string& alias = borrower.PackagePanelAlias;
    if (alias.empty() || !FindSimAircraftDirectory(context.files, context.locations, alias).empty())
        return "";
    return JoinText({"", "", "The panel " + alias + ", which it uses via alias,",
                     "is not installed in MSFS.  Please install", "the package that contains this panel or it"}) +
           "will not be visible in MSFS.";
}

// The beginning of a report, and what it says where no gauge is missing.
std::string StatusHeading(std::string_view name, const PanelCheck& check) {
    const std::string heading = JoinText({std::string(name) + " ...", ""});
    if (!check.isRead)
        return heading + JoinText({"The panel.cfg file could not be read.  Crosscheck bypassed.", ""});
    if (check.PanelNoGauges)
        return heading + JoinText({"Panel alias used.  Crosscheck bypassed.", ""});
    return check.missing.empty() ? heading + JoinText({"Crosscheck complete.  PASSED.", ""}) : heading;
}

std::string MissingGauges(const PanelCheck& check) {
    std::string lines;
    for (const std::string& gauge : check.missing)
        lines += JoinText({gauge});
    return lines;
}

std::string InstallStatusText(std::string_view package, const PanelCheck& check) {
    const std::string heading = StatusHeading(package, check);
    if (check.missing.empty())
        return heading + "Installation complete.";
    return heading +
           JoinText({"Possible problem ...", "", "This package uses the following gauge files",
                     "which aren't currently installed in MSFS.", "Please install the package(s) which contains",
                     "these gauge files or they will not be", "visible when panel is loaded in MSFS ...", ""}) +
           MissingGauges(check) + JoinText({""}) + "Installation complete with warning.";
}

std::string ImportStatusText(std::string_view aircraft, const PanelCheck& check) {
    const std::string heading = StatusHeading(aircraft, check);
    if (check.missing.empty())
        return heading + "Import will now continue ...";
    return heading +
           JoinText({"Possible problem ...", "", "This package uses the following gauge files",
                     "which aren't currently installed in MSFS", "and therefore will not be imported ...", ""}) +
           MissingGauges(check) +
           JoinText({"", "Import will now continue despite warning", "but it is recommended that you redo import",
                     "once all needed gauges are installed in"}) +
           "MSFS.";
}

} // namespace

bool ShowInstallCheck(CommandContext& context, const std::string& package, const std::string& panel) {
    const PanelCheck check = CrossCheckPanel(context, panel);
    if (check.isRead)
        context.display.NoteMissingGauges(package, check.missing);
    context.user.ShowInstallStatus(InstallStatusText(package, check) + MissingLender(context, panel));
    return check.isRead;
}

void RunImportGaugeStep(CommandContext& context, const std::string& aircraft) {
    const std::string& staging = context.locations.StagingDir;
    const FileList panels = CollectFiles(WalkTree(context.files, staging), "panel.cfg", FileMode::Name, context.limits);
    std::vector<std::string> usedGauges;
    if (!panels.entries.empty()) {
        const std::string& panel = panels.entries.front().path;
        const PanelCheck check = CrossCheckPanel(context, panel);
        context.user.ShowImportStatus(ImportStatusText(aircraft, check) + MissingLender(context, panel));
        usedGauges = check.used;
    }

    SharedFiles imported(context);
    const std::string directory = staging + "gauges\\";
    Status status = usedGauges.empty() ? Status{} : imported.EnsureDirectory(directory);
    if (status)
        status = imported.Place(directory, usedGauges);
    if (status)
        status = FlushFiles(context.files, imported.PathsToFlush());
    if (status)
        context.user.Tell("Done.");
    else
        context.user.Tell("The gauges could not be copied to Staging.\r\n\r\n" + status.path +
                              "\r\n\r\nThe reason: " + DescribeFault(status) + ".  " + NextStep(status.fault),
                          MessageIcon::Exclamation);
}

} // namespace korvadex
