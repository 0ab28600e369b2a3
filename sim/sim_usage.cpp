#include "sim/sim_usage.h"

#include "package/file_primitives.h"
#include "platform/windows_path.h"
#include "sim/config_search.h"
#include "sim/gauges.h"
#include "sim/name_matcher.h"

#include <algorithm>

namespace korvadex {

std::vector<std::string> AliasTexts(std::string_view packageName, const std::string& kind) {
    return {FoldCase(std::string(packageName) + "\\" + kind),
            FoldCase(SpacesToUnderscores(packageName) + "\\" + kind)};
}

SimUsage::SimUsage(CommandContext& context, const std::vector<std::string>& packageNames) : owners(context) {
    std::vector<std::string> gauges;
    if (const auto entries = context.files.List(context.locations.MsfsDir + "gauges\\")) {
        for (const DirectoryEntry& entry : *entries)
            gauges.push_back(GaugeName(entry.name));
    }
    for (const std::string& gauge : gauges)
        gaugeUsers[gauge];
    Read(context, "panel", packageNames, gauges);
    Read(context, "sound", packageNames, {});
}

void SimUsage::Read(CommandContext& context, const std::string& kind,
                    const std::vector<std::string>& packageNames, const std::vector<std::string>& gauges) {
    std::vector<std::string> texts;
    for (const std::string& name : packageNames) {
        for (std::string& text : AliasTexts(name, kind))
            texts.push_back(std::move(text));
    }
    NameMatcher aliasMatcher(texts), gaugeMatcher(gauges);
    const Tree tree = WalkTree(context.files, context.locations.MsfsDir + "aircraft\\");
    const bool isRead = VisitConfigFiles(context, tree, kind + ".cfg", "",
                                         [&](const FileEntry& file, const LowerLines& lines) {
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
    isComplete = isComplete && isRead;
}

std::vector<std::string> SimUsage::AliasUsers(std::string_view packageName, const std::string& kind,
                                              const std::string& leaveOut) const {
    std::vector<std::size_t> users;
    for (const std::string& text : AliasTexts(packageName, kind)) {
        if (const auto found = aliasUsers.find(text); found != aliasUsers.end())
            users.insert(users.end(), found->second.begin(), found->second.end());
    }
    std::ranges::sort(users);
    users.erase(std::unique(users.begin(), users.end()), users.end());
    std::vector<std::string> paths;
    for (const std::size_t user : users) {
        if (!files[user].isGone && !IsAtOrBelow(files[user].path, leaveOut))
            paths.push_back(files[user].path);
    }
    return paths;
}

bool SimUsage::IsGaugeUsed(const std::string& gaugeName, const std::string& leaveOut) const {
    const auto found = gaugeUsers.find(gaugeName);
    return found == gaugeUsers.end() || std::ranges::any_of(found->second, [&](std::size_t file) {
               return !files[file].isGone && !IsAtOrBelow(files[file].path, leaveOut);
           });
}

void SimUsage::Forget(const std::string& directory) {
    for (File& file : files)
        file.isGone = file.isGone || IsAtOrBelow(file.path, directory);
}

} // namespace korvadex
