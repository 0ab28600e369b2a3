// What an installation has put into the simulator, written down in the installed directory: the record is there
// exactly when the aircraft is. The removal goes by it.
#pragma once

#include "package/command_context.h"
#include "package/loaded_package.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

inline constexpr std::string_view InstallRecordFile = "kx_installed.txt";
// Earlier versions wrote down no more than the names of the gauges that were there before the package.
inline constexpr std::string_view FoundGaugesFile = "kx_gauges.txt";

// True for the name (lower case) of a file that belongs to an installation and to no package.
bool IsInstallRecord(std::string_view key);

// Kinds of recorded files: the aircraft's own, and those that stand beside other aircraft's.
inline constexpr std::string_view AircraftKind = "aircraft", GaugeKind = "gauge", EffectKind = "effect",
                                  ModuleKind = "module", SoundKind = "sound";

struct RecordedFile {
    std::string kind, name; // the name below the installed directory, or in the simulator's for the kind
    bool isPlaced = false;  // otherwise it was found there, and the rest is not known
    std::uint64_t size = 0;
    FileTime time{};
    std::uint32_t checksum = 0;
    std::string origin{}; // of a gauge that another aircraft has handed on: the package that brought it
};

struct InstallRecord {
    std::string package; // "Jets\My Lear"
    std::vector<RecordedFile> files;

    RecordedFile* Find(std::string_view kind, std::string_view name);
};

// The file at the path as one that was placed.
Result<RecordedFile> RecordFile(const FileSystem& files, std::string_view kind, const std::string& name,
                                const std::string& path);
// True while the file at the path is the one that was placed.
bool IsUnchanged(const FileSystem& files, const RecordedFile& placed, const std::string& path);

// The record in the bytes of its file; none when they are none.
std::optional<InstallRecord> ParseInstallRecord(std::string_view bytes);
// Those bytes. A file whose name does not fit on a line is left out.
std::string BytesOf(const InstallRecord& record);

// Directories end in a backslash. None when there is no record, or none that can be read.
std::optional<InstallRecord> ReadInstallRecord(const FileSystem& files, const std::string& directory);
Status WriteInstallRecord(CommandContext& context, const std::string& directory, const InstallRecord& record);
// What stood in the Hangar at `from` ("Jets" or "Jets\Lear") stands at `to` now: every record that names it says so.
// The first failure; the others are written all the same.
Status FollowInRecords(CommandContext& context, const std::string& from, const std::string& to);
// The names in FoundGaugesFile.
std::vector<std::string> ReadFoundGauges(const FileSystem& files, const std::string& directory);

} // namespace korvadex
