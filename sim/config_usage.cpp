#include "sim/config_usage.h"

#include "package/file_primitives.h"
#include "platform/windows_path.h"
#include "sim/config_search.h"
#include "sim/name_matcher.h"

#include <algorithm>

namespace korvadex {

ConfigUsage::ConfigUsage(CommandContext& context, const std::string& root, const std::vector<std::string>& packageNames,
                         const std::vector<std::string>& gaugeNames) {
    for (const std::string& gauge : gaugeNames)
        gaugeUsers[gauge];
    Read(context, root, "panel", packageNames, gaugeNames);
    Read(context, root, "sound", packageNames, {});
}

void ConfigUsage::Read(CommandContext& context, const std::string& root, const std::string& kind,
                       const std::vector<std::string>& packageNames, const std::vector<std::string>& gauges) {
    std::vector<std::string> texts;
    for (const std::string& name : packageNames)
        texts.push_back(AliasText(name, kind));
    NameMatcher aliasMatcher(texts), gaugeMatcher(gauges);
    aliasMatcher.TakeBlanksForUnderscores();
    unseen[kind] = VisitConfigFiles(context, root, {.fileName = kind + ".cfg"},
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
                                    });
}

AliasUsers ConfigUsage::FindUsers(std::string_view packageName, const std::string& kind,
                                  const std::string& leaveOut) const {
    AliasUsers users{Remaining(aliasUsers, AliasText(packageName, kind), leaveOut), unseen.at(kind)};
    std::erase_if(users.unseen, [&](const Unseen& thing) { return IsAtOrBelow(thing.path, leaveOut); });
    return users;
}

std::vector<std::string> ConfigUsage::Remaining(const Users& users, const std::string& text,
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

void ConfigUsage::Forget(const std::string& directory) {
    for (File& file : files)
        file.isGone = file.isGone || IsAtOrBelow(file.path, directory);
    for (auto& [kind, things] : unseen)
        std::erase_if(things, [&](const Unseen& thing) { return IsAtOrBelow(thing.path, directory); });
}

} // namespace korvadex
