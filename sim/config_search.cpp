#include "sim/config_search.h"

#include "platform/text_file.h"
#include "platform/windows_path.h"
#include "sim/progress.h"

#include <algorithm>
#include <cstdint>

namespace korvadex {

namespace {

// A configuration file is a few kilobytes. Something of this size only bears the name of one.
constexpr std::uint64_t MaxConfigBytes = 64 * 1024 * 1024;

struct ConfigFiles {
    std::vector<FileEntry> entries;
    bool isComplete = true;
};

void AddConfigFiles(CommandContext& context, const Tree& tree, const std::string& fileName,
                    ConfigFiles& found) {
    const FileList list = CollectFiles(tree, fileName, FileMode::Name, context.limits);
    found.entries.insert(found.entries.end(), list.entries.begin(), list.entries.end());
    if (list.cut != ListCut::None)
        context.window.ShowStatus(DescribeCut(list.cut, context.limits));
    if (list.cut != ListCut::None || tree.isLevelCut || tree.isUnreadable)
        found.isComplete = false;
}

// The files of that name, and those in what links of the tree lead to: an aircraft may live on another drive,
// and reading it does no harm. Links within such a place are not followed any more.
ConfigFiles FindConfigFiles(CommandContext& context, const Tree& tree, const std::string& fileName) {
    ConfigFiles found;
    AddConfigFiles(context, tree, fileName, found);
    for (const FileEntry& entry : tree.files) {
        if (entry.info.kind != EntryKind::Link)
            continue;
        if (context.files.IsDirectory(entry.path))
            AddConfigFiles(context, WalkTree(context.files, entry.path), fileName, found);
        else if (entry.key == fileName)
            found.entries.push_back(entry);
    }
    return found;
}

} // namespace

bool VisitConfigFiles(CommandContext& context, const Tree& tree, const std::string& fileName,
                      const std::string& leaveOut, const ConfigVisitor& visitor) {
    const ConfigFiles found = FindConfigFiles(context, tree, fileName);
    bool isComplete = found.isComplete;
    ProgressBar progress(context.window, static_cast<int>(found.entries.size()));
    for (const FileEntry& entry : found.entries) {
        progress.Step();
        if (!leaveOut.empty() && IsAtOrBelow(entry.path, leaveOut))
            continue;
        if (entry.info.size > MaxConfigBytes) {
            isComplete = false;
            continue;
        }
        auto lines = ReadLines(context.files, entry.path);
        if (!lines) {
            isComplete = false;
            continue;
        }
        std::ranges::for_each(*lines, [](std::string& line) { line = FoldCase(line); });
        if (visitor(entry, *lines) == Visit::Stop)
            break;
    }
    return isComplete;
}

bool IsGaugeLine(std::string_view lowerLine) {
    return lowerLine.find("gauge") != std::string_view::npos;
}

} // namespace korvadex
