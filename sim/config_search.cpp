#include "sim/config_search.h"

#include "package/config_text.h"
#include "package/progress.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <set>
#include <span>

namespace korvadex {

namespace {

// A link to something that is not there now, such as a drive that is not connected: it keeps its own name.
bool LeadsNowhere(const FileSystem& files, const std::string& link) {
    const std::string name = OneName(files, link);
    const std::string directory = OneName(files, WithoutBackslash(ParentDirectory(link)));
    return EqualNoCase(name, link) || EqualNoCase(name, AddBackslash(directory) + LastPathComponent(link));
}

// The files of one name in a tree, and in what its links lead to: an aircraft may live on another drive, and
// reading it does no harm.
class ConfigFinder {
  public:
    ConfigFinder(CommandContext& command, const std::string& name) : context(command), fileName(name) {}

    void Add(const Tree& tree, int depth = 0) {
        const FileList list = CollectFiles(tree, fileName, FileMode::Name, context.limits);
        entries.insert(entries.end(), list.entries.begin(), list.entries.end());
        if (list.cut != ListCut::None)
            context.window.ShowStatus(DescribeCut(list.cut, context.limits));
        if (list.cut != ListCut::None || tree.isLevelCut || tree.isUnreadable)
            isComplete = false;
        for (const FileEntry& entry : tree.files) {
            if (entry.info.kind == EntryKind::Link)
                AddLink(entry, depth);
        }
    }

    std::vector<FileEntry> entries;
    bool isComplete = true;

  private:
    static constexpr int MaxDepth = 8; // of links within what a link leads to

    void AddLink(const FileEntry& link, int depth) {
        if (context.files.IsDirectory(link.path)) {
            if (!visited.insert(OneName(context.files, link.path)).second)
                return;
            if (depth < MaxDepth)
                Add(WalkTree(context.files, link.path), depth + 1);
            else
                isComplete = false;
        } else if (link.key == fileName) {
            entries.push_back(link);
        } else if (LeadsNowhere(context.files, link.path)) {
            isComplete = false;
        }
    }

    CommandContext& context;
    const std::string& fileName;
    std::set<std::string> visited;
};

// Reads one file after another through the same memory.
class ConfigReader {
  public:
    // False when the file cannot be read, or is none that a person would call a configuration.
    bool Read(const FileSystem& files, const FileEntry& entry) {
        auto file = files.OpenForReading(entry.path);
        if (!file)
            return false;
        // One byte more than the directory says, so that the end of the file is seen at once.
        std::size_t size = 0, room = static_cast<std::size_t>(entry.info.size) + 1;
        for (;;) {
            if (size + room > MaxConfigBytes)
                return false;
            if (text.size() < size + room)
                text.resize(size + room);
            const auto count = (*file)->Read(std::as_writable_bytes(std::span(text.data() + size, room)));
            if (!count)
                return false;
            size += *count;
            if (*count < room)
                break;
            room = std::max<std::size_t>(size, FirstRoom);
        }
        Fold(size);
        Split();
        return true;
    }
    const LowerLines& Lines() const { return lines; }

  private:
    static constexpr std::size_t FirstRoom = 4096; // where the directory gave no size, as for a link

    void Fold(std::size_t size) {
        const std::string_view bytes = std::string_view(text).substr(0, size);
        if (!IsPlainConfig(bytes)) {
            folded = FoldCase(DecodeConfig(bytes));
            lower = folded;
            return;
        }
        for (std::size_t i = 0; i < size; ++i) {
            const char letter = text[i];
            text[i] = static_cast<char>(letter >= 'A' && letter <= 'Z' ? letter + ('a' - 'A') : letter);
        }
        lower = bytes;
    }

    void Split() {
        lines.clear();
        ForEachLine(lower, [&](std::string_view line, std::string_view) { lines.push_back(line); });
    }

    std::string text, folded;
    std::string_view lower;
    LowerLines lines;
};

} // namespace

bool VisitConfigFiles(CommandContext& context, const Tree& tree, const std::string& fileName,
                      const std::string& leaveOut, const ConfigVisitor& visitor,
                      const ConfigProgress& progress) {
    ConfigFinder found(context, fileName);
    found.Add(tree);
    bool isComplete = found.isComplete;
    const int total = static_cast<int>(found.entries.size());
    std::optional<ProgressBar> bar;
    if (!progress)
        bar.emplace(context.window, total);
    int done = 0;
    ConfigReader reader;
    for (const FileEntry& entry : found.entries) {
        ++done;
        if (bar)
            bar->Set(done);
        else
            progress(done, total);
        if (!leaveOut.empty() && IsAtOrBelow(entry.path, leaveOut))
            continue;
        if (entry.info.size > MaxConfigBytes || !reader.Read(context.files, entry)) {
            isComplete = false;
            continue;
        }
        if (visitor(entry, reader.Lines()) == Visit::Stop)
            break;
    }
    return isComplete;
}

bool IsGaugeLine(std::string_view lowerLine) {
    return lowerLine.find("gauge") != std::string_view::npos;
}

} // namespace korvadex
