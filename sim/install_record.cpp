#include "sim/install_record.h"

#include "archive/checksum.h"
#include "package/config_readers.h"
#include "package/scratch.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

namespace korvadex {

namespace {

constexpr std::string_view Heading =
    "Korvadex needs this file to remove the aircraft again.  Please do not change or remove it.";
constexpr std::string_view PackageWord = "package", PlacedWord = "placed", FoundWord = "found", OfWord = " of ";

// A name with a line break in it would end the line; such a file is compared with the package as if there were no
// record.
bool FitsOnLine(std::string_view name) {
    return std::ranges::none_of(name, [](char letter) { return static_cast<unsigned char>(letter) < ' '; });
}

//   aircraft          placed  1234  1021881600000000000  1a2b3c4d  Panel\panel.cfg     (with tabs between)
//   gauge of Jets\A   placed  1234  1021881600000000000  1a2b3c4d  clock.gau
// For earlier versions the latter is of a kind that they leave alone.
std::string LineOf(const RecordedFile& file) {
    std::array<char, 9> checksum{};
    std::snprintf(checksum.data(), checksum.size(), "%08x", static_cast<unsigned>(file.checksum));
    return file.kind + (file.origin.empty() ? "" : std::string(OfWord) + file.origin) + "\t" +
           std::string(file.isPlaced ? PlacedWord : FoundWord) + "\t" + std::to_string(file.size) + "\t" +
           std::to_string(file.time.time_since_epoch().count()) + "\t" + checksum.data() + "\t" + file.name;
}

std::string_view TakeField(std::string_view& line) {
    const std::size_t end = std::min(line.find('\t'), line.size());
    const std::string_view field = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
    return field;
}

template<class Number>
bool ReadNumber(std::string_view field, Number& number, int base = 10) {
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), number, base);
    return error == std::errc() && end == field.data() + field.size();
}

std::optional<RecordedFile> FileOnLine(std::string_view line) {
    RecordedFile file;
    file.kind = TakeField(line);
    if (const std::size_t of = file.kind.find(OfWord); of != std::string::npos) {
        file.origin = file.kind.substr(of + OfWord.size());
        file.kind.resize(of);
    }
    const std::string_view state = TakeField(line);
    file.isPlaced = state == PlacedWord;
    FileTime::rep time = 0;
    const bool isRead = ReadNumber(TakeField(line), file.size) && ReadNumber(TakeField(line), time) &&
                        ReadNumber(TakeField(line), file.checksum, 16);
    file.time = FileTime(FileTime::duration(time));
    file.name = line;
    if (!isRead || file.name.empty() || (!file.isPlaced && state != FoundWord))
        return std::nullopt;
    return file;
}

} // namespace

bool IsInstallRecord(std::string_view key) {
    return key == InstallRecordFile || key == FoundGaugesFile;
}

RecordedFile* InstallRecord::Find(std::string_view kind, std::string_view name) {
    const auto found = std::ranges::find_if(
        files, [&](const RecordedFile& file) { return file.kind == kind && EqualNoCase(file.name, name); });
    return found == files.end() ? nullptr : &*found;
}

Result<RecordedFile> RecordFile(const FileSystem& files, std::string_view kind, const std::string& name,
                                const std::string& path) {
    const auto info = files.Info(path);
    if (!info)
        return info.status();
    const auto checksum = FileChecksum(files, path);
    if (!checksum)
        return checksum.status();
    return RecordedFile{std::string(kind), name, true, info->size, info->time, *checksum};
}

bool IsUnchanged(const FileSystem& files, const RecordedFile& placed, const std::string& path) {
    const auto info = files.Info(path);
    if (!placed.isPlaced || !info || info->kind != EntryKind::File || info->size != placed.size)
        return false;
    if (info->time == placed.time)
        return true;
    const auto checksum = FileChecksum(files, path);
    return checksum && *checksum == placed.checksum;
}

std::optional<InstallRecord> ParseInstallRecord(std::string_view bytes) {
    InstallRecord record;
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find('\n'), bytes.size());
        std::string_view line = bytes.substr(0, end);
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (auto file = FileOnLine(line))
            record.files.push_back(std::move(*file));
        else if (TakeField(line) == PackageWord)
            record.package = line;
    }
    if (record.package.empty())
        return std::nullopt;
    return record;
}

std::string BytesOf(const InstallRecord& record) {
    // In UTF-8: names need not fit into the code page.
    std::string text = std::string(Heading) + "\r\n" + std::string(PackageWord) + "\t" + record.package + "\r\n";
    for (const RecordedFile& file : record.files) {
        if (FitsOnLine(file.name) && FitsOnLine(file.origin))
            text += LineOf(file) + "\r\n";
    }
    return text;
}

std::optional<InstallRecord> ReadInstallRecord(const FileSystem& files, const std::string& directory) {
    const std::string path = directory + std::string(InstallRecordFile);
    const auto info = files.Info(path);
    if (!info || info->size > MaxConfigBytes)
        return std::nullopt;
    const auto bytes = ReadBytes(files, path);
    return bytes ? ParseInstallRecord(*bytes) : std::nullopt;
}

Status WriteInstallRecord(CommandContext& context, const std::string& directory, const InstallRecord& record) {
    return RewriteBytes(context.files, context.locations, directory + std::string(InstallRecordFile), BytesOf(record));
}

Status FollowInRecords(CommandContext& context, const std::string& from, const std::string& to) {
    const auto entries = context.files.List(context.locations.Aircraft());
    Status outcome;
    for (const DirectoryEntry& entry : entries ? *entries : std::vector<DirectoryEntry>()) {
        const std::string directory = context.locations.Aircraft() + entry.name + "\\";
        auto record =
            entry.info.kind == EntryKind::Directory ? ReadInstallRecord(context.files, directory) : std::nullopt;
        if (!record)
            continue;
        bool isNamed = FollowName(record->package, from, to);
        for (RecordedFile& file : record->files)
            isNamed = FollowName(file.origin, from, to) || isNamed;
        if (!isNamed)
            continue;
        if (const Status status = WriteInstallRecord(context, directory, *record); !status && outcome)
            outcome = status;
    }
    return outcome;
}

std::vector<std::string> ReadFoundGauges(const FileSystem& files, const std::string& directory) {
    auto names = ReadConfigLines(files, directory + std::string(FoundGaugesFile));
    return names ? std::move(*names) : std::vector<std::string>();
}

} // namespace korvadex
