#include "sim/gauge_removal.h"

#include "package/file_primitives.h"
#include "package/progress.h"
#include "package/walk.h"
#include "platform/windows_path.h"
#include "sim/config_search.h"
#include "sim/gauges.h"
#include "sim/install_record.h"
#include "sim/name_matcher.h"
#include "sim/shared_files.h"
#include "sim/sim_usage.h"

#include <algorithm>
#include <map>
#include <optional>

namespace korvadex {

namespace {

// The gauges that the aircraft in a directory has brought, as they stand in the simulator now.
class BroughtGauges {
  public:
    BroughtGauges(CommandContext& command, const std::vector<FileEntry>& gaugesOfPackage, const std::string& installed)
        : context(command), own(gaugesOfPackage), directory(installed) {}

    std::vector<RecordedFile> Find() const {
        std::vector<RecordedFile> gauges;
        const auto record = ReadInstallRecord(context.files, directory);
        for (const RecordedFile& gauge : record ? record->files : ByPackage()) {
            const std::string path = PathOf(gauge);
            if (gauge.kind != GaugeKind || !gauge.isPlaced || IsStockGauge(gauge.name) ||
                !(IsUnchanged(context.files, gauge, path) || IsEmpty(path) || IsOfPackage(gauge.name, path)))
                continue;
            if (auto now = RecordFile(context.files, GaugeKind, gauge.name, path)) {
                now->origin = gauge.origin;
                gauges.push_back(std::move(*now));
            }
        }
        return gauges;
    }

    std::string PathOf(const RecordedFile& gauge) const { return context.locations.Gauges() + gauge.name; }

    // The only copy of a gauge that somebody has taken out of the package stays.
    bool IsInHangar(const RecordedFile& gauge) const {
        if (gauge.origin.empty())
            return std::ranges::any_of(own,
                                       [&](const FileEntry& file) { return EqualNoCase(file.Name(), gauge.name); });
        return IsOfPackage(gauge.name, PathOf(gauge)) || IsOfOrigin(gauge);
    }

  private:
    // Without a record all of the package's count, but for those that an earlier version noted as found.
    std::vector<RecordedFile> ByPackage() const {
        const std::vector<std::string> found = ReadFoundGauges(context.files, directory);
        std::vector<RecordedFile> gauges;
        for (const FileEntry& gauge : own) {
            const std::string name = gauge.Name();
            if (std::ranges::none_of(found, [&](const std::string& other) { return EqualNoCase(other, name); }))
                gauges.push_back({.kind = std::string(GaugeKind), .name = name, .isPlaced = true});
        }
        return gauges;
    }

    // What a power cut has left of one.
    bool IsEmpty(const std::string& path) const {
        const auto info = context.files.Info(path);
        return info && info->kind == EntryKind::File && info->size == 0;
    }

    // A gauge of the same name with other bytes came from elsewhere.
    bool IsOfPackage(const std::string& name, const std::string& path) const {
        return std::ranges::any_of(own, [&](const FileEntry& gauge) {
            return EqualNoCase(gauge.Name(), name) && HoldsUnpackedBytes(context, gauge.path, path);
        });
    }

    bool IsOfOrigin(const RecordedFile& gauge) const {
        const std::string key = FoldCase(gauge.name), path = PathOf(gauge);
        const Tree origin = WalkTree(context.files, context.locations.HangarDir + gauge.origin + "\\");
        return std::ranges::any_of(origin.files, [&](const FileEntry& file) {
            return file.key == key && !IsOnePlace(context.files, file.path, path) &&
                   HoldsUnpackedBytes(context, file.path, path);
        });
    }

    CommandContext& context;
    const std::vector<FileEntry>& own; // of the package
    const std::string directory;
};

// The records of other aircraft that take gauges over as placed by them, each read and written once.
class HandOver {
  public:
    HandOver(CommandContext& command, const GaugeOwners& known, std::string leaving)
        : context(command), owners(known), package(std::move(leaving)) {}

    // True when another than the aircraft in the directory has the gauge.
    bool ToOwner(const RecordedFile& gauge, const std::string& directory) {
        return std::ranges::any_of(owners.Of(gauge.name), [&](const std::string& owner) {
            return !EqualNoCase(owner, directory) && Note(gauge, owner, false);
        });
    }

    // To an aircraft with one of the panels, if there is one that has a record.
    void ToUser(const RecordedFile& gauge, const std::vector<std::string>& panels) {
        const std::size_t root = context.locations.Aircraft().size();
        static_cast<void>(std::ranges::any_of(panels, [&](const std::string& panel) {
            return Note(gauge, panel.substr(0, panel.find('\\', root)) + "\\", true);
        }));
    }

    Status Write() {
        for (const auto& [directory, heir] : heirs) {
            if (!heir.isChanged)
                continue;
            if (Status status = WriteInstallRecord(context, directory, *heir.record); !status)
                return status;
        }
        return {};
    }

  private:
    struct Heir {
        std::optional<InstallRecord> record;
        bool isChanged = false;
    };

    bool Note(const RecordedFile& gauge, const std::string& owner, bool isNew) {
        auto [place, isFirst] = heirs.try_emplace(owner);
        Heir& heir = place->second;
        if (isFirst) // not what was known once: it may have gone since
            heir.record = ReadInstallRecord(context.files, owner);
        RecordedFile* own = heir.record ? heir.record->Find(GaugeKind, gauge.name) : nullptr;
        if (!own && heir.record && isNew)
            own = &heir.record->files.emplace_back();
        if (own && (!own->isPlaced || !own->origin.empty())) {
            *own = gauge;
            if (own->origin.empty())
                own->origin = package;
            heir.isChanged = true;
        }
        return own;
    }

    CommandContext& context;
    const GaugeOwners& owners;
    const std::string package;         // that is leaving
    std::map<std::string, Heir> heirs; // by directory
};

// The panels outside of a directory that name gauges, searched for now where no usage knows them.
class GaugeUsers {
  public:
    GaugeUsers(CommandContext& context, const std::vector<RecordedFile>& gauges, std::string leaving,
               const SimUsage* simUsage)
        : directory(std::move(leaving)), usage(simUsage) {
        if (usage)
            return;
        std::vector<std::string> names;
        for (const RecordedFile& gauge : gauges)
            names.push_back(GaugeName(gauge.name));
        NameMatcher matcher(names);
        // What could not be looked at may use any of them.
        isComplete =
            VisitConfigFiles(context, context.locations.Aircraft(), {.fileName = "panel.cfg", .leaveOut = directory},
                             [&](const FileEntry& file, const LowerLines& lines) {
                                 for (const std::string_view line : lines) {
                                     if (IsGaugeLine(line))
                                         matcher.Search(line);
                                 }
                                 for (const std::size_t name : matcher.TakeFound())
                                     panels[names[name]].push_back(file.path);
                             })
                .empty();
    }

    bool AreThere(const RecordedFile& gauge) const {
        const std::string name = GaugeName(gauge.name);
        return usage ? usage->IsGaugeUsed(name, directory) : !isComplete || panels.contains(name);
    }
    std::vector<std::string> Of(const RecordedFile& gauge) const {
        const std::string name = GaugeName(gauge.name);
        if (usage)
            return usage->PanelsWithGauge(name, directory);
        const auto found = panels.find(name);
        return found == panels.end() ? std::vector<std::string>() : found->second;
    }

  private:
    const std::string directory;
    const SimUsage* usage;
    bool isComplete = true;
    std::map<std::string, std::vector<std::string>> panels;
};

} // namespace

GaugeOwners::GaugeOwners(CommandContext& context) {
    const std::string root = context.locations.Aircraft();
    const auto entries = context.files.List(root);
    if (!entries)
        return;
    for (const DirectoryEntry& entry : *entries) {
        const std::string directory = root + entry.name + "\\";
        const auto record =
            entry.info.kind == EntryKind::File ? std::nullopt : ReadInstallRecord(context.files, directory);
        if (!record)
            continue;
        for (const RecordedFile& file : record->files) {
            if (file.kind == GaugeKind)
                owners[FoldCase(file.name)].push_back(directory);
        }
    }
}

const std::vector<std::string>& GaugeOwners::Of(std::string_view gauge) const {
    static const std::vector<std::string> none;
    const auto found = owners.find(FoldCase(gauge));
    return found == owners.end() ? none : found->second;
}

Result<std::vector<std::string>> TakeOutGauges(CommandContext& context, const PackageRef& package,
                                               const std::vector<FileEntry>& ownGauges, const std::string& directory,
                                               const SimUsage* usage) {
    std::vector<std::string> remaining;
    const BroughtGauges brought(context, ownGauges, directory);
    std::vector<RecordedFile> gauges = brought.Find();
    if (gauges.empty())
        return remaining;
    std::optional<GaugeOwners> owners;
    if (!usage)
        owners.emplace(context);
    HandOver handOver(context, usage ? usage->Owners() : *owners, package.Text());
    std::erase_if(gauges, [&](const RecordedFile& gauge) { return handOver.ToOwner(gauge, directory); });
    if (!gauges.empty()) {
        const GaugeUsers users(context, gauges, directory, usage);
        for (const RecordedFile& gauge : gauges)
            handOver.ToUser(gauge, users.Of(gauge));
        std::erase_if(gauges, [&](const RecordedFile& gauge) { return users.AreThere(gauge); });
    }
    if (Status status = handOver.Write(); !status)
        return status;
    std::erase_if(gauges, [&](const RecordedFile& gauge) { return !brought.IsInHangar(gauge); });
    ProgressBar progress(context.display, static_cast<int>(gauges.size()));
    for (const RecordedFile& gauge : gauges) {
        progress.Step();
        remaining.push_back(DeleteOrExplain(context.files, brought.PathOf(gauge)));
    }
    std::erase(remaining, "");
    return remaining;
}

} // namespace korvadex
