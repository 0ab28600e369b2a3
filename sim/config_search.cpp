#include "sim/config_search.h"

#include "package/classification.h"
#include "package/config_text.h"
#include "package/name_list.h"
#include "package/progress.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <algorithm>
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

// The wanted files of a tree, and of what its links lead to: an aircraft may live on another drive, and reading it does
// no harm.
class ConfigFinder {
  public:
    ConfigFinder(const FileSystem& fileSystem, const ConfigSearch& wanted, std::vector<Unseen>& notSeen)
        : files(fileSystem), search(wanted), unseen(notSeen) {}

    void Add(const Tree& tree, int depth = 0) {
        for (const FileEntry& entry : tree.files) {
            if (!search.leaveOut.empty() && IsAtOrBelow(entry.path, search.leaveOut))
                continue;
            if (entry.info.kind == EntryKind::Link)
                AddLink(entry, depth);
            else if (IsWanted(entry))
                entries.push_back(entry);
        }
        for (const std::string& directory : tree.unreadable) {
            if (search.leaveOut.empty() || !IsAtOrBelow(directory, search.leaveOut))
                unseen.push_back({directory, "a directory that could not be read"});
        }
    }

    std::vector<FileEntry> entries;

  private:
    static constexpr int MaxDepth = 8; // of links within what a link leads to

    bool IsWanted(const FileEntry& entry) const {
        return search.isEnding ? entry.key.ends_with(search.fileName) : entry.key == search.fileName;
    }

    void AddLink(const FileEntry& link, int depth) {
        if (files.IsDirectory(link.path)) {
            if (!visited.insert(OneName(files, link.path)).second)
                return;
            if (depth < MaxDepth)
                Add(WalkToSearch(files, link.path), depth + 1);
            else
                unseen.push_back({link.path, "too many links within what links lead to"});
        } else if (IsWanted(link)) {
            entries.push_back(link);
        } else if (!IsRecognized(link.key) && LeadsNowhere(files, link.path)) {
            // By its name it may have led to a directory: "panel.2", "texture".
            unseen.push_back({link.path, "a link that leads nowhere"});
        }
    }

    const FileSystem& files;
    const ConfigSearch& search;
    std::vector<Unseen>& unseen;
    std::set<std::string> visited;
};

// Reads one file after another through the same memory.
class ConfigReader {
  public:
    // Why it could not be read; "" when it was.
    std::string Read(const FileSystem& files, const FileEntry& entry) {
        const std::string tooLarge = "too large for a configuration file";
        if (entry.info.size > MaxConfigBytes)
            return tooLarge;
        auto file = files.OpenForReading(entry.path);
        if (!file)
            return DescribeFault(file.status());
        // One byte more than the directory says, so that the end of the file is seen at once.
        std::size_t size = 0, room = static_cast<std::size_t>(entry.info.size) + 1;
        for (;;) {
            if (text.size() < size + room)
                text.resize(size + room);
            const auto count = (*file)->Read(std::as_writable_bytes(std::span(text.data() + size, room)));
            if (!count)
                return DescribeFault(count.status());
            size += *count;
            if (size > MaxConfigBytes)
                return tooLarge;
            if (*count < room)
                break;
            room = std::max<std::size_t>(size, FirstRoom);
        }
        Fold(size);
        Split();
        return "";
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

std::string ListUnseen(const std::vector<Unseen>& unseen) {
    std::vector<std::string> names;
    for (const Unseen& thing : unseen)
        names.push_back(thing.path + "  (" + thing.reason + ")");
    return ListNames(names);
}

Tree WalkToSearch(const FileSystem& files, const std::string& root) {
    return WalkTree(files, root, WalkFor::Search);
}

std::vector<Unseen> VisitConfigFiles(CommandContext& context, const Tree& tree, const ConfigSearch& search,
                                     const ConfigVisitor& visitor) {
    std::vector<Unseen> unseen;
    ConfigFinder found(context.files, search, unseen);
    found.Add(tree);
    const int total = static_cast<int>(found.entries.size());
    std::optional<ProgressBar> bar;
    if (!search.progress)
        bar.emplace(context.display, total);
    int done = 0;
    ConfigReader reader;
    for (const FileEntry& entry : found.entries) {
        ++done;
        if (bar)
            bar->Set(done);
        else
            search.progress(done, total);
        if (std::string reason = reader.Read(context.files, entry); !reason.empty())
            unseen.push_back({entry.path, std::move(reason)});
        else if (visitor(entry, reader.Lines()) == Visit::Stop)
            break;
    }
    return unseen;
}

bool IsGaugeLine(std::string_view lowerLine) {
    return lowerLine.find("gauge") != std::string_view::npos;
}

} // namespace korvadex
