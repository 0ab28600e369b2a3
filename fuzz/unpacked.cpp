#include "fuzz/unpacked.h"

#include "archive/archive_reader.h"
#include "archive/unpack.h"
#include "fuzz/check.h"
#include "fuzz/drive.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex::fuzz {

namespace {

// Every file of the archive that was not left out stands in Staging, the last of each name.
void CheckAllThere(const FileSystem& files, const UnpackReport& report, const std::vector<ArchiveMember>& members) {
    std::map<std::string, std::uint64_t> sizes;
    for (const ArchiveMember& member : members) {
        const bool isLeftOut = std::ranges::any_of(
            report.refused, [&](const UnpackReport::Refused& refused) { return refused.name == member.name.text; });
        if (isLeftOut || member.name.isDirectory)
            continue;
        std::string path = "C:\\Staging";
        for (const std::string& component : member.name.components)
            path += "\\" + component;
        sizes[FoldCase(path)] = member.size;
    }
    for (const auto& [path, size] : sizes) {
        const auto info = files.Info(path);
        Require(info && info->kind == EntryKind::File && info->size == size, "every file of the archive is there");
    }
}

} // namespace

void UnpackAndCheck(std::string_view input) {
    Drive drive;
    drive.Put("add-on.zip", input);
    const Entries before = drive.Tree();
    const UnpackReport report =
        Unpack({drive.Files(), drive.Context().locations}, {.archive = "C:\\add-on.zip",
                                                            .target = "C:\\Staging\\",
                                                            .mayReplace = [](const std::string&) { return true; },
                                                            .askPassword = [] { return std::string("secret"); }});
    const Entries after = drive.Tree();
    Require(Outside("Staging\\", after) == Outside("Staging\\", before), "nothing changes outside of Staging");
    Require(IsClean(after), "nothing of the program's own is left, and no link");
    const OpenedArchive archive = OpenArchive(drive.Files(), "C:\\add-on.zip");
    Require(report.code != UnzipCode::Ok || archive.reader, "what was unpacked can be opened");
    if (report.code == UnzipCode::Ok)
        CheckAllThere(drive.Files(), report, archive.reader->Members());
}

} // namespace korvadex::fuzz
