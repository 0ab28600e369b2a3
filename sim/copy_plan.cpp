#include "sim/copy_plan.h"

#include "package/config_readers.h"
#include "package/sound_names.h"
#include "platform/windows_path.h"
#include "sim/config_search.h"
#include "sim/gauges.h"
#include "sim/install_record.h"

#include <algorithm>
#include <set>

namespace korvadex {

namespace {

class Planner {
  public:
    Planner(CommandContext& command, const LoadedPackage& loaded, CopyRoot copyRoot)
        : context(command), package(loaded), root(copyRoot) {}

    CopyPlan Make() {
        for (int group = 0; group < GroupCount; ++group)
            PlanGroup(group);
        PlanUnlistedFiles();
        return std::move(plan);
    }

  private:
    void PlanGroup(int group) {
        const bool isSharedGauges = group == Gauges && root != CopyRoot::Hangar;
        const bool isSharedMiscellaneous = group == Miscellaneous && root == CopyRoot::Msfs;
        // The simulator expects these four of every aircraft, even when they are empty.
        const bool isExpected = group == Panel || group == Model || group == Texture || group == Sound;
        if (root == CopyRoot::Msfs && isExpected)
            AddDirectory(group);

        const std::vector<FileEntry>& files = package.ComponentFiles[static_cast<std::size_t>(group)];
        const std::vector<std::string> gaugeLines = group == Gauges ? PanelGaugeLines() : std::vector<std::string>{};
        for (const FileEntry& file : files) {
            // A checklist stands in two groups and is one file: that of its first group.
            if (IsProgramFile(file) || !planned.insert(file.path).second)
                continue;
            plan.bytes += file.info.size;
            if (isSharedMiscellaneous)
                PlanMiscellaneous(file);
            else if (group == Gauges && root == CopyRoot::Hangar && !IsNamed(file, gaugeLines))
                plan.leftBehind.push_back(file.Name());
            else if (!isSharedGauges)
                AddFile(file, group);
            if (group == Sound && root != CopyRoot::Hangar)
                PlanSharedSound(file);
        }
    }

    // Names like 1024panel.cfg are recognized and yet in no group. They are kept with the unrecognized files,
    // so that a copy holds all that its original held.
    void PlanUnlistedFiles() {
        for (const FileEntry& file : package.tree.files) {
            if (IsProgramFile(file) || !planned.insert(file.path).second)
                continue;
            plan.bytes += file.info.size;
            AddFile(file, Unrecognized);
        }
    }

    void AddDirectory(int group) {
        const std::string name(ComponentGroupNames[static_cast<std::size_t>(group)]);
        if (std::ranges::find(plan.directories, name) != plan.directories.end())
            return;
        plan.directories.push_back(name);
        names.insert(FoldCase(name));
    }

    void AddFile(const FileEntry& file, int group) {
        std::string directory;
        if (group != Aircraft) {
            AddDirectory(group);
            directory = std::string(ComponentGroupNames[static_cast<std::size_t>(group)]) + "\\";
        }
        const std::string name = file.Name();
        std::string relative = directory + name;
        for (int number = 1; !names.insert(FoldCase(relative)).second; ++number)
            relative = directory + NumberedName(name, number);
        plan.files.push_back({file.path, relative, group});
    }

    void PlanMiscellaneous(const FileEntry& file) {
        if (EndsWithNoCase(file.path, ".fx"))
            plan.effects.push_back(file.path);
        else if (EndsWithNoCase(file.path, ".dll") || EndsWithNoCase(file.path, ".dat"))
            plan.modules.push_back(file.path);
    }

    // Sounds that the aircraft's sound.cfg does not name belong to gauges, which look for them in the
    // simulator's own sound directory.
    void PlanSharedSound(const FileEntry& file) {
        if (!IsGaugeSound(file.key, SoundLines()))
            return;
        plan.sounds.push_back(file.path);
        plan.bytes += file.info.size;
    }

    // The sound.cfg in lower case; nothing when the package has no sound beside it.
    const std::vector<std::string>& SoundLines() {
        if (isSoundRead || package.ComponentFiles[Sound].size() < 2)
            return soundLines;
        isSoundRead = true;
        const std::string path = package.FindComponentFile("sound.cfg");
        if (path.empty())
            return soundLines;
        if (auto lines = ReadSoundLines(context.files, path))
            soundLines = std::move(*lines);
        return soundLines;
    }

    // The lines that speak of gauges in panel.cfg, oldpanel.cfg, 1024panel.cfg and the like. Empty when panel.cfg has
    // none, or one of them could not be read: no gauge is left behind for want of looking.
    std::vector<std::string> PanelGaugeLines() {
        std::vector<std::string> gaugeLines;
        bool hasPanelGauges = false;
        const auto unseen = VisitConfigFiles(context, package.tree, {.fileName = "panel.cfg", .isEnding = true},
                                             [&](const FileEntry& file, const LowerLines& lines) {
                                                 for (const std::string_view line : lines) {
                                                     if (!IsGaugeLine(line))
                                                         continue;
                                                     gaugeLines.emplace_back(line);
                                                     hasPanelGauges |= file.key == "panel.cfg";
                                                 }
                                             });
        if (!unseen.empty() || package.tree.isLevelCut || !hasPanelGauges)
            gaugeLines.clear();
        return gaugeLines;
    }

    static bool IsNamed(const FileEntry& gauge, const std::vector<std::string>& gaugeLines) {
        const std::string name = GaugeName(gauge.path);
        return gaugeLines.empty() || std::ranges::any_of(gaugeLines, [&](const std::string& line) {
                   return line.find(name) != std::string::npos;
               });
    }

    CommandContext& context;
    const LoadedPackage& package;
    const CopyRoot root;
    CopyPlan plan;
    std::set<std::string> planned; // source paths as listed: a disk may tell two apart by case alone
    std::set<std::string> names;   // relative targets, lower case
    std::vector<std::string> soundLines;
    bool isSoundRead = false;
};

} // namespace

bool IsProgramFile(const FileEntry& file) {
    return EqualNoCase(file.key, CompressionMarkerName) || EqualNoCase(file.key, ImportNameFile) ||
           IsInstallRecord(file.key);
}

CopyPlan PlanCopy(CommandContext& context, const LoadedPackage& package, CopyRoot root) {
    return Planner(context, package, root).Make();
}

} // namespace korvadex
