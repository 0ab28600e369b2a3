#include "sim/config_search.h"

#include "platform/code_page.h"
#include "platform/windows_path.h"
#include "sim/progress.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>

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
        unsigned char all = 0;
        for (std::size_t i = 0; i < size; ++i)
            all |= static_cast<unsigned char>(text[i]);
        if (all >= 0x80) {
            folded = FoldCase(FromCodePage(std::string_view(text).substr(0, size)));
            lower = folded;
            return;
        }
        for (std::size_t i = 0; i < size; ++i) {
            const char letter = text[i];
            text[i] = static_cast<char>(letter >= 'A' && letter <= 'Z' ? letter + ('a' - 'A') : letter);
        }
        lower = std::string_view(text).substr(0, size);
    }

    void Split() {
        lines.clear();
        std::string_view rest = lower;
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find('\n'), rest.size());
            std::string_view line = rest.substr(0, end);
            rest.remove_prefix(std::min(end + 1, rest.size()));
            if (line.ends_with('\r'))
                line.remove_suffix(1);
            // A lone CR ends a line as well.
            for (std::size_t cr = line.find('\r'); cr != std::string_view::npos; cr = line.find('\r')) {
                lines.push_back(line.substr(0, cr));
                line.remove_prefix(cr + 1);
            }
            lines.push_back(line);
        }
    }

    std::string text, folded;
    std::string_view lower;
    LowerLines lines;
};

} // namespace

bool VisitConfigFiles(CommandContext& context, const Tree& tree, const std::string& fileName,
                      const std::string& leaveOut, const ConfigVisitor& visitor,
                      const ConfigProgress& progress) {
    const ConfigFiles found = FindConfigFiles(context, tree, fileName);
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
