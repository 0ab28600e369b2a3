#include "package/config_readers.h"

#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

// The import writes one line; a file of this name that is larger came from elsewhere.
constexpr std::uint64_t LargestNameFile = 4096;

bool IsOldConfig(const std::string& path) {
    return StartsWithNoCase(LastPathComponent(path), "old");
}

// The first alias line of the file sets the alias; every line goes to `visit` in lower case.
template<class Visit>
void ReadAlias(const FileSystem& files, const std::string& path, std::string& alias, Visit visit) {
    const bool isOld = IsOldConfig(path);
    if (!isOld)
        alias.clear();
    const auto lines = ReadConfigLines(files, path);
    if (!lines)
        return;
    for (const auto& raw : *lines) {
        const std::string line = FoldCase(raw);
        if (!isOld && alias.empty() && HasKey(line, "alias"))
            alias = ValueOf(line);
        visit(line);
    }
}

// "file=main.bmp", "texture\main.bmp": the text between the nearest "=", "\" or quote and the end of ".bmp".
void AddBitmapNames(std::string_view line, PanelBitmapNames& names) {
    constexpr std::string_view Ending = ".bmp";
    for (std::size_t at = line.find(Ending); at != std::string_view::npos; at = line.find(Ending, at + 1)) {
        const std::size_t before = line.substr(0, at).find_last_of("=\\\"");
        const std::size_t start = before == std::string_view::npos ? 0 : before + 1;
        names.emplace(TrimBlanks(line.substr(start, at + Ending.size() - start)));
    }
}

} // namespace

Result<std::vector<std::string>> ReadConfigLines(const FileSystem& files, const std::string& path) {
    auto config = ReadConfigText(files, path);
    if (!config)
        return config.status();
    std::vector<std::string> lines;
    for (ConfigLine& line : config->lines)
        lines.push_back(std::move(line.text));
    return lines;
}

void ReadPanelAlias(const FileSystem& files, const std::string& path, LoadedPackage& package) {
    ReadAlias(files, path, package.PackagePanelAlias,
              [&](std::string_view line) { AddBitmapNames(line, package.panelBitmapNames); });
}

Status ReadPanelBitmapNames(const FileSystem& files, const std::string& path, PanelBitmapNames& names) {
    const auto lines = ReadConfigLines(files, path);
    if (!lines)
        return lines.status();
    for (const auto& line : *lines)
        AddBitmapNames(FoldCase(line), names);
    return {};
}

void ReadSoundAlias(const FileSystem& files, const std::string& path, LoadedPackage& package) {
    ReadAlias(files, path, package.PackageSoundAlias, [](std::string_view) {});
}

std::string ReadImportName(const FileSystem& files, const Locations& locations) {
    const std::string path = locations.StagingDir + std::string(ImportNameFile);
    const auto info = files.Info(path);
    if (!info || info->kind != EntryKind::File || info->size > LargestNameFile)
        return "";
    const auto lines = ReadConfigLines(files, path);
    return lines && !lines->empty() ? lines->front() : "";
}

void ReadCompressionMarker(const FileSystem& files, const std::string& path, LoadedPackage& package) {
    package.isCompressed = true;
    const auto lines = ReadConfigLines(files, path);
    if (!lines || lines->empty())
        return;
    const std::string& line = lines->front();
    const std::size_t digits = std::min(line.find_first_not_of("0123456789"), line.size());
    if (digits > 0 && line.substr(digits).starts_with(" Meg"))
        package.compressionCode = line.substr(0, digits);
}

} // namespace korvadex
