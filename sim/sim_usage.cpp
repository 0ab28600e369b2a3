#include "sim/sim_usage.h"

#include "package/file_primitives.h"
#include "platform/windows_path.h"
#include "sim/config_search.h"
#include "sim/gauges.h"
#include "sim/name_matcher.h"

#include <algorithm>

namespace korvadex {

SimUsage::SimUsage(CommandContext& context, const std::vector<std::string>& packageNames) : owners(context) {
    std::vector<std::string> gauges;
    if (const auto entries = context.files.List(context.locations.Gauges())) {
        for (const DirectoryEntry& entry : *entries)
            gauges.push_back(GaugeName(entry.name));
    }
    for (const std::string& gauge : gauges)
        gaugeUsers[gauge];
    Read(context, "panel", packageNames, gauges);
    Read(context, "sound", packageNames, {});
}

void SimUsage::Read(CommandContext& context, const std::string& kind, const std::vector<std::string>& packageNames,
                    const std::vector<std::string>& gauges) {
    std::vector<std::string> texts;
    for (const std::string& name : packageNames)
        texts.push_back(AliasText(name, kind));
    NameMatcher aliasMatcher(texts), gaugeMatcher(gauges);
    aliasMatcher.TakeBlanksForUnderscores();
    unseen[kind] = VisitConfigFiles(context, WalkToSearch(context.files, context.locations.Aircraft()),
                                    {.fileName = kind + ".cfg"}, [&](const FileEntry& file, const LowerLines& lines) {
                                        for (const std::string_view line : lines) {
                                            aliasMatcher.Search(line);
                                            if (IsGaugeLine(line))
                                                gaugeMatcher.Search(line);
                                        }
                                        for (const std::size_t text : aliasMatcher.TakeFound())
                                            aliasUsers[texts[text]].push_back(files.size());
                                        for (const std::size_t gauge : gaugeMatcher.TakeFound())
                                            gaugeUsers[gauges[gauge]].push_back(files.size());
                                        files.push_back({file.path});
                                        return Visit::Continue;
                                    });
}

AliasUsers SimUsage::FindUsers(std::string_view packageName, const std::string& kind,
                               const std::string& leaveOut) const {
    AliasUsers users{Remaining(aliasUsers, AliasText(packageName, kind), leaveOut), unseen.at(kind)};
    std::erase_if(users.unseen, [&](const Unseen& thing) { return IsAtOrBelow(thing.path, leaveOut); });
    return users;
}

bool SimUsage::IsGaugeUsed(const std::string& gaugeName, const std::string& leaveOut) const {
    const auto isElsewhere = [&](const std::string& path) { return !IsAtOrBelow(path, leaveOut); };
    return !gaugeUsers.contains(gaugeName) || std::ranges::any_of(unseen.at("panel"), isElsewhere, &Unseen::path) ||
           !PanelsWithGauge(gaugeName, leaveOut).empty();
}

std::vector<std::string> SimUsage::PanelsWithGauge(const std::string& gaugeName, const std::string& leaveOut) const {
    return Remaining(gaugeUsers, gaugeName, leaveOut);
}

std::vector<std::string> SimUsage::Remaining(const Users& users, const std::string& text,
                                             const std::string& leaveOut) const {
    std::vector<std::string> paths;
    if (const auto found = users.find(text); found != users.end()) {
        for (const std::size_t user : found->second) {
            if (!files[user].isGone && !IsAtOrBelow(files[user].path, leaveOut))
                paths.push_back(files[user].path);
        }
    }
    return paths;
}

void SimUsage::Forget(const std::string& directory) {
    for (File& file : files)
        file.isGone = file.isGone || IsAtOrBelow(file.path, directory);
    for (auto& [kind, things] : unseen)
        std::erase_if(things, [&](const Unseen& thing) { return IsAtOrBelow(thing.path, directory); });
}

} // namespace korvadex
