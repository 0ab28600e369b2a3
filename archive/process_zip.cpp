#include "archive/process_zip.h"

#include "archive/archive_reader.h"
#include "archive/member_names.h"
#include "package/archive_names.h"
#include "package/file_primitives.h"
#include "package/meg.h"
#include "package/walk.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <set>
#include <utility>

namespace korvadex {

namespace {

constexpr std::size_t MaxNamedMembers = 15;

std::string TextOf(const std::string& archive, const UnpackReport& report) {
    std::string text;
    const std::string code = std::to_string(report.code);
    if (report.roomNeeded > 0)
        text = "There is not enough room on the disk for the zip file(" + archive + ").  It needs " +
               std::to_string((report.roomNeeded + BytesPerMeg - 1) / BytesPerMeg) + " Meg, and " +
               std::to_string(report.roomFree / BytesPerMeg) + " Meg are free. (code " + code + ")";
    else if (report.code != UnzipCode::Ok)
        text = "There was a problem with the zip file(" + archive + ").  It may be corrupt. (code " + code + ")";
    for (const std::string& explanation : report.explanations)
        text += "\r\n\r\n" + explanation;
    return text;
}

std::string RefusedText(const std::string& archive, const std::vector<UnpackReport::Refused>& refused) {
    std::string text = "Some files in the zip file(" + archive + ") were not unpacked:\r\n";
    for (std::size_t i = 0; i < std::min(refused.size(), MaxNamedMembers); ++i)
        text += "\r\n" + NameForMessage(refused[i].name) + "  (" + refused[i].reason + ")";
    if (refused.size() > MaxNamedMembers)
        text += "\r\n... and " + std::to_string(refused.size() - MaxNamedMembers) + " more";
    return text;
}

// What was written below the directory, as it is now.
void AddWritten(const FileSystem& files, const std::string& directory, const std::vector<std::string>& paths,
                UnpackedArchive& unpacked) {
    std::set<std::string> written;
    for (const std::string& path : paths)
        written.insert(FoldCase(path));
    const Tree tree = WalkTree(files, directory, WalkFor::Search);
    auto& [contents, isWhole] = unpacked;
    isWhole = isWhole && tree.unreadable.empty();
    std::erase_if(contents.files, [&](const FileEntry& file) { return written.contains(FoldCase(file.path)); });
    std::ranges::copy_if(tree.files, std::back_inserter(contents.files),
                         [&](const FileEntry& file) { return written.contains(FoldCase(file.path)); });
    std::ranges::copy_if(tree.directories, std::back_inserter(contents.directories),
                         [&](const std::string& path) { return written.contains(FoldCase(path)); });
}

// True when every file of the archive was unpacked and is on the disk, or left out because the user wanted to keep his
// own.
bool UnpackAndTell(CommandContext& context, modUnzip& unzip, UnpackedArchive& unpacked) {
    unzip.uPasswordAsked = 0;
    const UnpackReport report = unzip.UnzipArchive(context);
    if (const std::string text = TextOf(unzip.uZipFileName, report); !text.empty())
        context.user.Tell(text, MessageIcon::Exclamation);
    if (!report.refused.empty())
        context.user.Tell(RefusedText(unzip.uZipFileName, report.refused), MessageIcon::Exclamation);
    const Status flushed = FlushFiles(context.files, report.written);
    if (!flushed)
        context.user.Tell("The files of the zip file(" + unzip.uZipFileName +
                              ") could not all be written to the disk: " + flushed.path + "  (" +
                              DescribeFault(flushed) + ").  Please unpack it again when that is settled.",
                          MessageIcon::Exclamation);
    AddWritten(context.files, unzip.uExtractDir, report.written, unpacked);
    const bool isDone = flushed && report.code == UnzipCode::Ok && report.refused.empty();
    unpacked.isWhole = unpacked.isWhole && isDone;
    return isDone;
}

// The next archive below the directory that is not kept; "" when there is none. What is called otherwise than a zip
// archive is kept, too, when it is none: an aircraft may have files of such a name.
std::string FindNested(CommandContext& context, const std::string& directory, std::set<std::string>& kept,
                       ListCut& cut) {
    const Tree tree = WalkTree(context.files, directory);
    const auto isNew = [&](const FileEntry& entry) {
        return entry.info.kind == EntryKind::File && !kept.contains(FoldCase(entry.path));
    };
    const FileList zips = CollectFiles(tree, "zip", FileMode::Extension, context.limits);
    cut = zips.cut;
    if (const auto next = std::ranges::find_if(zips.entries, isNew); next != zips.entries.end())
        return next->path;
    for (const FileEntry& file : tree.files) {
        if (!IsArchiveName(file.key) || EndsWithNoCase(file.key, ".zip") || !isNew(file))
            continue;
        if (OpenArchive(context.files, file.path).reader)
            return file.path;
        kept.insert(FoldCase(file.path));
    }
    return "";
}

// The archives that turned up below target, one by one, until none is left that was not asked about. kept, in lower
// case: what is not touched; what fails to unpack, or cannot be deleted, comes to it.
void UnpackNested(CommandContext& context, modUnzip& unzip, UnpackedArchive& unpacked, std::set<std::string> kept) {
    const std::string& target = unpacked.contents.directory;
    int number = 1;
    for (;;) {
        ListCut cut = ListCut::None;
        const std::string path = FindNested(context, target, kept, cut);
        if (path.empty()) {
            if (cut != ListCut::None)
                context.display.ShowStatus(DescribeCut(cut, context.limits));
            unpacked.isWhole = unpacked.isWhole && cut == ListCut::None;
            return;
        }
        const std::string name = LastPathComponent(path);
        bool isDone = true;
        if (context.user.AskYesNo("Found another ZIP file called " + name +
                                  ".  Should I unzip it as well?  (Usually pick 'Yes')")) {
            unzip.uZipFileName = path;
            unzip.uExtractDir = target + "NestedZIP" + std::to_string(number) + "_" + name;
            isDone = UnpackAndTell(context, unzip, unpacked);
            unpacked.contents.directories.push_back(unzip.uExtractDir);
            unpacked.contents.nested[FoldCase(unzip.uExtractDir) + "\\"] = path;
            ++number;
        } else {
            unpacked.isWhole = false;
        }
        // Its files are all there, or the user does not want them: without it the search ends.
        if (!isDone || !DeleteFileForced(context.files, path))
            kept.insert(FoldCase(path));
        else
            std::erase_if(unpacked.contents.files, [&](const FileEntry& file) { return file.path == path; });
    }
}

} // namespace

std::optional<UnpackedArchive> ProcessZipFile(CommandContext& context, modUnzip& unzip, std::string& lastZipPath,
                                              const std::string& path) {
    if (const auto file = context.files.OpenForReading(path); !file) {
        context.user.Tell("The zip file(" + path + ") could not be read (" + DescribeFault(file.status()) +
                              ").  Please make sure that it is there and that you may read it, and try again.",
                          MessageIcon::Exclamation);
        return std::nullopt;
    }
    lastZipPath = ParentDirectory(path);
    const std::string zipName = LastPathComponent(path);
    const std::string target = context.locations.StagingDir + "ZIP_" + zipName + "\\"; // each archive its own

    unzip = {.uPromptOverwrite = 1, .uHonorDirectories = 1, .uRightPassword = unzip.uRightPassword};
    unzip.uShowProgress = true;
    unzip.uZipFileName = path;
    unzip.uExtractDir = target;
    UnpackedArchive unpacked{{.directory = target}};
    std::set<std::string> kept = {FoldCase(path)};
    for (const FileEntry& file :
         WalkTree(context.files, target, WalkFor::Search).files) // another archive's, of its name
        kept.insert(FoldCase(file.path));
    UnpackAndTell(context, unzip, unpacked);
    for (const FileEntry& file : unpacked.contents.files)
        kept.erase(FoldCase(file.path));
    UnpackNested(context, unzip, unpacked, std::move(kept));
    return unpacked;
}

} // namespace korvadex
