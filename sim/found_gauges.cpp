#include "sim/found_gauges.h"

#include "package/config_readers.h"
#include "package/scratch.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"
#include "sim/gauges.h"
#include "sim/name_matcher.h"
#include "sim/shared_files.h"

#include <algorithm>
#include <utility>

namespace korvadex {

std::vector<std::string> ReadFoundGauges(const FileSystem& files, const std::string& directory) {
    auto names = ReadConfigLines(files, directory + std::string(FoundGaugesFile));
    return names ? std::move(*names) : std::vector<std::string>();
}

Status NoteFoundGauges(CommandContext& context, const std::string& directory,
                       const std::vector<std::string>& names) {
    return names.empty() ? Status{}
                         : RewriteLines(context.files, context.locations,
                                        directory + std::string(FoundGaugesFile), names);
}

std::vector<std::string> FindGaugesThere(CommandContext& context, const LoadedPackage& package) {
    std::vector<std::string> there, names;
    for (const FileEntry& gauge : package.ComponentFiles[Gauges]) {
        const std::string name = gauge.Name();
        const std::string path = context.locations.MsfsDir + "gauges\\" + name;
        // One of other bytes is never taken for the package's, and a name that no panel.cfg could hold cannot be noted.
        if (IsStockGauge(name) || !context.files.Info(path) || !JoinLines({name}) ||
            !HoldsUnpackedBytes(context, gauge.path, path))
            continue;
        there.push_back(name);
        names.push_back(GaugeName(name));
    }
    if (there.empty())
        return {};
    NameMatcher used(names);
    // What could not be looked at may name a gauge; then this one stays, whoever brought it.
    static_cast<void>(FindGaugesInUse(context, context.locations.MsfsDir, used));
    std::vector<std::string> unnamed;
    for (std::size_t i = 0; i < there.size(); ++i) {
        if (!used.IsFound(i))
            unnamed.push_back(there[i]);
    }
    return unnamed;
}

std::vector<FileEntry> GaugesOtherThan(const LoadedPackage& package, const std::vector<std::string>& names) {
    std::vector<FileEntry> gauges = package.ComponentFiles[Gauges];
    std::erase_if(gauges, [&](const FileEntry& gauge) {
        return std::ranges::any_of(names,
                                   [&](const std::string& name) { return EqualNoCase(name, gauge.Name()); });
    });
    return gauges;
}

} // namespace korvadex
