#include "archive/process_zip.h"

#include "archive/member_names.h"
#include "package/file_primitives.h"
#include "package/walk.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <set>

namespace korvadex {

namespace {

constexpr std::size_t MaxNamedMembers = 15;

std::string InMeg(std::uint64_t bytes) {
    return std::to_string((bytes + 1'023'999) / 1'024'000);
}

void TellRefused(CommandContext& context, const modUnzip& unzip) {
    std::string text = "Some files in the zip file(" + unzip.uZipFileName + ") were not unpacked:\r\n";
    for (std::size_t i = 0; i < std::min(unzip.uRefused.size(), MaxNamedMembers); ++i)
        text += "\r\n" + NameForMessage(unzip.uRefused[i].name) + "  (" + unzip.uRefused[i].reason + ")";
    if (unzip.uRefused.size() > MaxNamedMembers)
        text += "\r\n... and " + std::to_string(unzip.uRefused.size() - MaxNamedMembers) + " more";
    context.user.Tell(text, MessageIcon::Exclamation);
}

// True when all that was unpacked is on the disk.
bool FlushUnpacked(CommandContext& context, const modUnzip& unzip) {
    const auto outcomes = context.files.Flush(unzip.uWritten);
    const auto failed = std::ranges::find_if(outcomes, [](const Status& status) { return !status; });
    if (failed == outcomes.end())
        return true;
    context.user.Tell("The files of the zip file(" + unzip.uZipFileName +
                          ") could not all be written to the disk: " + failed->path + "  (" +
                          DescribeFault(failed->fault) + ").  Please unpack it again when that is settled.",
                      MessageIcon::Exclamation);
    return false;
}

// True when every file of the archive was unpacked and is on the disk, or left out because the user wanted to keep his
// own.
bool UnpackAndReport(CommandContext& context, modUnzip& unzip) {
    unzip.uPasswordAsked = 0;
    const int code = unzip.UnzipArchive(context);
    std::string text;
    if (unzip.uRoomNeeded > 0)
        text = "There is not enough room on the disk for the zip file(" + unzip.uZipFileName + ").  It needs " +
               InMeg(unzip.uRoomNeeded) + " Meg, and " + std::to_string(unzip.uRoomFree / 1'024'000) +
               " Meg are free. (code " + std::to_string(code) + ")";
    else if (code != UnzipCode::Ok)
        text = "There was a problem with the zip file(" + unzip.uZipFileName + ").  It may be corrupt. (code " +
               std::to_string(code) + ")";
    for (const std::string& explanation : unzip.uExplanations)
        text += "\r\n\r\n" + explanation;
    if (!text.empty())
        context.user.Tell(text, MessageIcon::Exclamation);
    if (!unzip.uRefused.empty())
        TellRefused(context, unzip);
    const bool isOnDisk = FlushUnpacked(context, unzip);
    return isOnDisk && code == UnzipCode::Ok && unzip.uRefused.empty();
}

// The archives that turned up below target, one by one, until none is left that was not asked about.
void UnpackNested(CommandContext& context, modUnzip& unzip, const std::string& target) {
    // In lower case: the very archive that was chosen, and what failed to unpack or could not be deleted.
    std::set<std::string> kept = {FoldCase(unzip.uZipFileName)};
    int number = 1;
    for (;;) {
        const FileList found =
            CollectFiles(WalkTree(context.files, target), "zip", FileMode::Extension, context.limits);
        const auto next = std::find_if(found.entries.begin(), found.entries.end(), [&](const FileEntry& entry) {
            return entry.info.kind == EntryKind::File && !kept.contains(FoldCase(entry.path));
        });
        if (next == found.entries.end()) {
            context.display.ShowStatus(DescribeCut(found.cut, context.limits));
            return;
        }
        const std::string path = next->path;
        const std::string name = LastPathComponent(path);
        bool isDone = true;
        if (context.user.AskYesNo("Found another ZIP file called " + name +
                                  ".  Should I unzip it as well?  (Usually pick 'Yes')")) {
            unzip.uZipFileName = path;
            unzip.uExtractDir = target + "NestedZIP" + std::to_string(number) + "_" + name;
            unzip.uTestZip = 0;
            isDone = UnpackAndReport(context, unzip);
            ++number;
        }
        // Its files are all there, or the user does not want them: without it the search ends.
        if (!isDone || !DeleteFileForced(context.files, path))
            kept.insert(FoldCase(path));
    }
}

} // namespace

bool ProcessZipFile(CommandContext& context, modUnzip& unzip, std::string& lastZipPath, const std::string& archive) {
    std::string path = archive;
    if (path.empty())
        path = context.user.ChooseZipFile("Process ZIP File ...", lastZipPath).value_or("");
    if (path.empty())
        return false;
    if (const auto file = context.files.OpenForReading(path); !file) {
        context.user.Tell("The zip file(" + path + ") could not be read (" + DescribeFault(file.fault()) +
                              ").  Please make sure that it is there and that you may read it, and try again.",
                          MessageIcon::Exclamation);
        return false;
    }
    lastZipPath = ParentDirectory(path);
    const std::string zipName = LastPathComponent(path);
    const std::string target = context.locations.StagingDir + "ZIP_" + zipName + "\\"; // each archive its own

    unzip.uZipNames[0].clear();
    unzip.uExcludeNames[0].clear();
    unzip.uNumberFiles = 0;
    unzip.uNumberXFiles = 0;
    unzip.uPromptOverwrite = 1;
    unzip.uOverwriteFiles = 0;
    unzip.uDisplayComment = 0;
    unzip.uExtractList = 0;
    unzip.uHonorDirectories = 1;
    unzip.uTestZip = 0;
    unzip.uShowProgress = true;
    unzip.uZipFileName = path;
    unzip.uExtractDir = target;
    UnpackAndReport(context, unzip);
    UnpackNested(context, unzip, target);
    return true;
}

} // namespace korvadex
