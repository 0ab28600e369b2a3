#include "sim/gauge_removal.h"

#include "package/file_primitives.h"
#include "package/progress.h"
#include "platform/windows_path.h"
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

bool HasGauge(const LoadedPackage& package, const std::string& name) {
    return std::ranges::any_of(package.ComponentFiles[Gauges],
                               [&](const FileEntry& gauge) { return EqualNoCase(gauge.Name(), name); });
}

// The gauges that the aircraft in a directory has brought, as they stand in the simulator now.
class BroughtGauges {
  public:
    BroughtGauges(CommandContext& command, const LoadedPackage& loaded, const std::string& installed)
        : context(command), package(loaded), directory(installed) {}

    std::vector<RecordedFile> Find() const {
        std::vector<RecordedFile> gauges;
        const auto record = ReadInstallRecord(context.files, directory);
        for (const RecordedFile& gauge : record ? record->files : ByPackage()) {
            const std::string path = context.locations.MsfsDir + "gauges\\" + gauge.name;
            if (gauge.kind != GaugeKind || !gauge.isPlaced || IsStockGauge(gauge.name) ||
                !(IsUnchanged(context.files, gauge, path) || IsEmpty(path) || IsOfPackage(gauge.name, path)))
                continue;
            if (auto now = RecordFile(context.files, GaugeKind, gauge.name, path))
                gauges.push_back(std::move(*now));
        }
        return gauges;
    }

  private:
    // Without a record all of the package's count, but for those that an earlier version noted as found.
    std::vector<RecordedFile> ByPackage() const {
        const std::vector<std::string> found = ReadFoundGauges(context.files, directory);
        std::vector<RecordedFile> gauges;
        for (const FileEntry& gauge : package.ComponentFiles[Gauges]) {
            const std::string name = gauge.Name();
            if (std::ranges::none_of(found,
                                     [&](const std::string& other) { return EqualNoCase(other, name); }))
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
        return std::ranges::any_of(package.ComponentFiles[Gauges], [&](const FileEntry& gauge) {
            return EqualNoCase(gauge.Name(), name) && HoldsUnpackedBytes(context, gauge.path, path);
        });
    }

    CommandContext& context;
    const LoadedPackage& package;
    const std::string directory;
};

// The records of other aircraft that take gauges over, each read and written once.
class HandOver {
  public:
    HandOver(CommandContext& command, const GaugeOwners& known) : context(command), owners(known) {}

    // True when another than the aircraft in the directory has the gauge, from now on as one that it placed.
    bool Take(const RecordedFile& gauge, const std::string& directory) {
        return std::ranges::any_of(owners.Of(gauge.name), [&](const std::string& owner) {
            return !EqualNoCase(owner, directory) && Note(gauge, owner);
        });
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

    bool Note(const RecordedFile& gauge, const std::string& owner) {
        auto [place, isNew] = heirs.try_emplace(owner);
        Heir& heir = place->second;
        if (isNew) // not what was known once: it may have gone since
            heir.record = ReadInstallRecord(context.files, owner);
        RecordedFile* own = heir.record ? heir.record->Find(GaugeKind, gauge.name) : nullptr;
        if (own && !own->isPlaced) {
            *own = gauge;
            heir.isChanged = true;
        }
        return own;
    }

    CommandContext& context;
    const GaugeOwners& owners;
    std::map<std::string, Heir> heirs; // by directory
};

void LeaveUsed(CommandContext& context, std::vector<RecordedFile>& gauges, const std::string& directory,
               const SimUsage* usage) {
    if (usage) {
        std::erase_if(gauges, [&](const RecordedFile& gauge) {
            return usage->IsGaugeUsed(GaugeName(gauge.name), directory);
        });
        return;
    }
    std::vector<std::string> names;
    for (const RecordedFile& gauge : gauges)
        names.push_back(GaugeName(gauge.name));
    NameMatcher used(names);
    // What could not be looked at may use any of them.
    const bool isComplete = FindGaugesInUse(context, context.locations.MsfsDir, used, directory).empty();
    std::vector<RecordedFile> unused;
    for (std::size_t i = 0; isComplete && i < gauges.size(); ++i) {
        if (!used.IsFound(i))
            unused.push_back(std::move(gauges[i]));
    }
    gauges = std::move(unused);
}

} // namespace

GaugeOwners::GaugeOwners(CommandContext& context) {
    const std::string root = context.locations.MsfsDir + "aircraft\\";
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

Result<std::vector<std::string>> TakeOutGauges(CommandContext& context, const LoadedPackage& package,
                                               const std::string& directory, const SimUsage* usage) {
    std::vector<std::string> remaining;
    std::vector<RecordedFile> gauges = BroughtGauges(context, package, directory).Find();
    if (gauges.empty())
        return remaining;
    std::optional<GaugeOwners> owners;
    if (!usage)
        owners.emplace(context);
    HandOver handOver(context, usage ? usage->Owners() : *owners);
    std::erase_if(gauges, [&](const RecordedFile& gauge) { return handOver.Take(gauge, directory); });
    if (Status status = handOver.Write(); !status)
        return status;
    // The only copy of a gauge that somebody has taken out of the package stays.
    std::erase_if(gauges, [&](const RecordedFile& gauge) { return !HasGauge(package, gauge.name); });
    if (!gauges.empty())
        LeaveUsed(context, gauges, directory, usage);
    ProgressBar progress(context.window, static_cast<int>(gauges.size()));
    for (const RecordedFile& gauge : gauges) {
        progress.Step();
        remaining.push_back(DeleteGauge(context, context.locations.MsfsDir + "gauges\\" + gauge.name));
    }
    std::erase(remaining, "");
    return remaining;
}

} // namespace korvadex
