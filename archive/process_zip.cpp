#include "archive/process_zip.h"

#include "archive/member_names.h"
#include "package/file_primitives.h"
#include "package/meg.h"
#include "package/walk.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <set>

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

// True when every file of the archive was unpacked and is on the disk, or left out because the user wanted to keep his
// own.
bool UnpackAndTell(CommandContext& context, modUnzip& unzip) {
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
    return flushed && report.code == UnzipCode::Ok && report.refused.empty();
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
            isDone = UnpackAndTell(context, unzip);
            ++number;
        }
        // Its files are all there, or the user does not want them: without it the search ends.
        if (!isDone || !DeleteFileForced(context.files, path))
            kept.insert(FoldCase(path));
    }
}

} // namespace

bool ProcessZipFile(CommandContext& context, modUnzip& unzip, std::string& lastZipPath, const std::string& path) {
    if (const auto file = context.files.OpenForReading(path); !file) {
        context.user.Tell("The zip file(" + path + ") could not be read (" + DescribeFault(file.status()) +
                              ").  Please make sure that it is there and that you may read it, and try again.",
                          MessageIcon::Exclamation);
        return false;
    }
    lastZipPath = ParentDirectory(path);
    const std::string zipName = LastPathComponent(path);
    const std::string target = context.locations.StagingDir + "ZIP_" + zipName + "\\"; // each archive its own

    unzip = {.uPromptOverwrite = 1, .uHonorDirectories = 1, .uRightPassword = unzip.uRightPassword};
    unzip.uShowProgress = true;
    unzip.uZipFileName = path;
    unzip.uExtractDir = target;
    UnpackAndTell(context, unzip);
    UnpackNested(context, unzip, target);
    return true;
}

} // namespace korvadex
