#include "sim/lost_files.h"

#include "archive/in_place.h"
#include "package/file_primitives.h"
#include "package/walk.h"
#include "sim/alias_users.h"
#include "sim/copy_plan.h"
#include "sim/delete_directory.h"
#include "sim/install_record.h"
#include "sim/shared_files.h"

#include <algorithm>
#include <map>

namespace korvadex {

namespace {

// The installation adapts the alias line of such a file to the names of the simulator, and nothing else.
bool IsRewrittenAlias(CommandContext& context, const LoadedPackage& package, const FileEntry& installed,
                      const std::string& source) {
    const std::string& alias = installed.key == "panel.cfg" ? package.PackagePanelAlias : package.PackageSoundAlias;
    if (alias.empty() || (installed.key != "panel.cfg" && installed.key != "sound.cfg"))
        return false;
    const auto text = ReadConfigText(context.files, installed.path), own = ReadConfigText(context.files, source);
    const auto expected = own ? WithAlias(*own, SpacesToUnderscores(alias)) : std::nullopt;
    // Their ends and indentation may be others than the package's.
    return text && expected &&
           std::ranges::equal(text->lines, expected->lines, [](const ConfigLine& a, const ConfigLine& b) {
               return TrimBlanks(a.text) == TrimBlanks(b.text);
           });
}

// The files of a package, to find the bytes of installed ones among them.
class PackageFiles {
  public:
    PackageFiles(CommandContext& command, const LoadedPackage& loaded) : context(command), package(loaded) {
        for (const PlannedFile& file : PlanCopy(context, package, CopyRoot::Msfs).files)
            sources.emplace(FoldCase(file.relative), file.source);
    }

    // Where an install of the package puts the file it has the time and size of that file, or the same bytes;
    // otherwise some file of the package has them.
    bool Hold(const FileEntry& installed, const std::string& relative) {
        if (installed.info.kind != EntryKind::File)
            return false;
        const auto source = sources.find(FoldCase(relative));
        return (source != sources.end() && (IsSource(installed, source->second) ||
                                            IsRewrittenAlias(context, package, installed, source->second))) ||
               HasBytesOf(installed);
    }
    bool HasSource(const std::string& relative) const { return sources.contains(FoldCase(relative)); }

    // True when at least half of the files have their names and sizes in the package. Another add-on may have come into
    // the Hangar under its name.
    bool HaveMostOf(const std::map<std::string, RecordedFile>& placed) const {
        const auto known = std::ranges::count_if(placed, [&](const auto& file) {
            const auto source = sources.find(file.first);
            return source != sources.end() && HasSize(source->second, file.second.size);
        });
        return 2 * known >= std::ssize(placed);
    }

  private:
    bool HasSize(const std::string& source, std::uint64_t size) const {
        const auto info = context.files.Info(source);
        return info && info->kind == EntryKind::File &&
               (info->size == size || UnpackedSize(context.files, FileEntry(source, *info)) == size);
    }

    bool IsSource(const FileEntry& installed, const std::string& source) const {
        const auto info = context.files.Info(source);
        return info && info->time == installed.info.time && HasSize(source, installed.info.size);
    }

    bool HasBytesOf(const FileEntry& installed) {
        if (bySize.empty()) {
            for (const FileEntry& file : package.tree.files) {
                const bool mayBePacked = file.key.ends_with(".bmp") || file.key.ends_with(".gau");
                bySize.emplace(mayBePacked ? UnpackedSize(context.files, file) : file.info.size, file.path);
            }
        }
        const auto [begin, end] = bySize.equal_range(installed.info.size);
        return std::any_of(begin, end,
                           [&](const auto& file) { return HoldsUnpackedBytes(context, file.second, installed.path); });
    }

    CommandContext& context;
    const LoadedPackage& package;
    std::map<std::string, std::string> sources;       // by what they become below the installed directory
    std::multimap<std::uint64_t, std::string> bySize; // unpacked
};

// What the record of an installed directory says of the aircraft's own files. That of another package says nothing:
// what belongs to this one is only known from its files.
std::map<std::string, RecordedFile> PlacedFiles(CommandContext& context, const LoadedPackage& package,
                                                const std::string& directory) {
    std::map<std::string, RecordedFile> placed;
    const auto record = ReadInstallRecord(context.files, directory);
    if (!record || !EqualNoCase(record->package, package.ref.Text()))
        return placed;
    for (const RecordedFile& file : record->files) {
        if (file.kind == AircraftKind)
            placed.emplace(FoldCase(file.name), file);
    }
    return placed;
}

} // namespace

std::vector<std::string> FilesOfOthers(CommandContext& context, const LoadedPackage& package,
                                       const std::string& directory) {
    if (IsLinkedDirectory(context, directory))
        return {};
    PackageFiles own(context, package);
    std::map<std::string, RecordedFile> placed = PlacedFiles(context, package, directory);
    if (!own.HaveMostOf(placed))
        placed.clear();
    std::vector<std::string> others;
    const Tree installed = WalkTree(context.files, directory, WalkFor::Search);
    for (const FileEntry& file : installed.files) {
        const std::string relative = file.path.substr(directory.size());
        if (IsInstallRecord(FoldCase(relative)))
            continue;
        const auto recorded = placed.find(FoldCase(relative));
        if (recorded != placed.end() && IsUnchanged(context.files, recorded->second, file.path))
            continue;
        if (!own.Hold(file, relative))
            others.push_back(recorded != placed.end() || own.HasSource(relative) ? relative + "  (changed)" : relative);
    }
    for (const std::string& unreadable : installed.unreadable)
        others.push_back(unreadable.substr(directory.size()) + " (a directory that could not be read)");
    return others;
}

} // namespace korvadex
