#include "package/aircraft_parts.h"

#include "package/aircraft_cfg.h"
#include "package/archive_names.h"
#include "package/file_primitives.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <functional>
#include <optional>

namespace korvadex {

namespace {

class Owners {
  public:
    Owners(const ArchiveContents& unpacked, const std::vector<AircraftPart>& parts) : contents(unpacked) {
        for (std::size_t i = 0; i < parts.size(); ++i)
            byDirectory.emplace(FoldCase(parts[i].directory), i);
    }

    // The part that the path belongs to; none when it belongs to all.
    std::optional<std::size_t> Of(std::string path) const {
        // Each nested archive may lead to where it was, once: names of directories can lead in a circle.
        for (std::size_t steps = 0; steps <= contents.nested.size(); ++steps) {
            std::string directory = FoldCase(ParentDirectory(path));
            auto nested = contents.nested.end();
            for (; directory.size() >= contents.directory.size() && nested == contents.nested.end();
                 directory = ParentDirectory(directory)) {
                if (const auto part = byDirectory.find(directory); part != byDirectory.end())
                    return part->second;
                nested = contents.nested.find(directory);
            }
            if (nested == contents.nested.end())
                break;
            path = nested->second;
        }
        return std::nullopt;
    }

  private:
    const ArchiveContents& contents;
    std::map<std::string, std::size_t> byDirectory; // folded
};

// "ZIP_Lear.zip\\" -> "Lear", "NestedZIP1_Lear.zip\\" -> "Lear", "Lear 45.2\\" -> "Lear 45.2"
std::string NameOfPlace(const ArchiveContents& contents, const std::string& directory) {
    std::string name = LastPathComponent(WithoutBackslash(directory));
    if (const auto nested = contents.nested.find(FoldCase(directory)); nested != contents.nested.end())
        name = LastPathComponent(nested->second);
    else if (EqualNoCase(directory, contents.directory))
        name.erase(0, name.find('_') + 1);
    else
        return name;
    return WithoutArchiveEnding(name);
}

AircraftPart ReadPart(const FileSystem& files, const ArchiveContents& contents, const std::string& cfgPath) {
    AircraftPart part{.directory = ParentDirectory(cfgPath)};
    part.name = WithoutBackslash(part.directory.substr(contents.directory.size()));
    if (part.name.empty())
        part.name = ".";
    const AircraftCfg cfg = ReadAircraftCfg(files, cfgPath);
    const auto configurations = ReadConfigurations(cfg);
    part.configurations = configurations.size();
    if (cfg.title != MultipleTitle)
        part.caption = cfg.title;
    else if (!configurations.empty())
        part.caption = configurations.front().title;
    if (part.caption.empty())
        part.caption = NameOfPlace(contents, part.directory);
    return part;
}

} // namespace

std::vector<AircraftPart> FindAircraftParts(const FileSystem& files, const ArchiveContents& contents) {
    std::vector<AircraftPart> parts;
    for (const FileEntry& file : contents.files)
        if (file.key == "aircraft.cfg" && file.info.kind == EntryKind::File)
            parts.push_back(ReadPart(files, contents, file.path));
    std::ranges::sort(parts, LessNoCase, &AircraftPart::directory);
    const Owners owners(contents, parts);
    for (const FileEntry& file : contents.files)
        if (const auto owner = owners.Of(file.path))
            ++parts[*owner].files;
    return parts;
}

std::vector<std::string> DeleteOtherParts(FileSystem& files, const ArchiveContents& contents,
                                          const std::vector<AircraftPart>& parts, std::size_t kept) {
    const Owners owners(contents, parts);
    const auto isKept = [&](const std::string& path) { return owners.Of(path).value_or(kept) == kept; };
    std::vector<std::string> remaining;
    for (const FileEntry& file : contents.files)
        if (!isKept(file.path))
            if (auto explained = DeleteListed(files, file); !explained.empty())
                remaining.push_back(std::move(explained));
    auto directories = contents.directories;
    std::ranges::sort(directories, std::greater()); // what lies in one stands before it
    for (const std::string& directory : directories)
        if (owners.Of(AddBackslash(directory) + "*") != kept)
            RemoveEmptyDirectory(files, directory);
    return remaining;
}

} // namespace korvadex
