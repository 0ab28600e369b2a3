#include "sim/config_search.h"

#include "package/classification.h"
#include "package/name_list.h"
#include "package/progress.h"
#include "platform/windows_path.h"
#include "sim/config_lines.h"

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

// The wanted files of a tree, and of what its links lead to.
class ConfigFinder {
  public:
    using Found = std::function<void(const FileEntry&)>;

    ConfigFinder(const FileSystem& fileSystem, const ConfigSearch& wanted, const Found& found)
        : files(fileSystem), search(wanted), add(found) {}

    // Each directory's files as soon as they are known.
    void Walk(const std::string& root, int depth = 0) {
        std::size_t seen = 0;
        const Tree tree = WalkTree(files, root, WalkFor::Names, [&](const Tree& soFar) {
            AddFiles(std::span(soFar.files).subspan(seen), depth);
            seen = soFar.files.size();
        });
        AddUnreadable(tree);
    }
    void AddTree(const Tree& tree) {
        AddFiles(tree.files, 0);
        AddUnreadable(tree);
    }

    std::vector<Unseen> unseen;

  private:
    static constexpr int MaxDepth = 8; // of links within what a link leads to

    bool IsLeftOut(const std::string& path) const {
        return !search.leaveOut.empty() && IsAtOrBelow(path, search.leaveOut);
    }
    bool IsWanted(const FileEntry& entry) const {
        return search.isEnding ? entry.key.ends_with(search.fileName) : entry.key == search.fileName;
    }

    void AddFiles(std::span<const FileEntry> entries, int depth) {
        for (const FileEntry& entry : entries) {
            if (IsLeftOut(entry.path))
                continue;
            if (entry.info.kind == EntryKind::Link)
                AddLink(entry, depth);
            else if (IsWanted(entry))
                add(entry);
        }
    }

    void AddUnreadable(const Tree& tree) {
        for (const std::string& directory : tree.unreadable) {
            if (!IsLeftOut(directory))
                unseen.push_back({directory, "a directory that could not be read"});
        }
    }

    void AddLink(const FileEntry& link, int depth) {
        if (files.IsDirectory(link.path)) {
            if (!visited.insert(OneName(files, link.path)).second)
                return;
            if (depth < MaxDepth)
                Walk(link.path, depth + 1);
            else
                unseen.push_back({link.path, "too many links within what links lead to"});
        } else if (IsWanted(link)) {
            add(link);
        } else if (!IsRecognized(link.key) && LeadsNowhere(files, link.path)) {
            // By its name it may have led to a directory: "panel.2", "texture".
            unseen.push_back({link.path, "a link that leads nowhere"});
        }
    }

    const FileSystem& files;
    const ConfigSearch& search;
    const Found& add;
    std::set<std::string> visited; // what links led to
};

std::vector<Unseen> Visit(CommandContext& context, const std::vector<FileEntry>& entries, const ConfigVisitor& visitor,
                          std::vector<Unseen> unseen) {
    ConfigLines config;
    ProgressBar bar(context.display, static_cast<int>(entries.size()));
    for (const FileEntry& entry : entries) {
        bar.Step();
        if (std::string fault = config.Read(context.files, entry); !fault.empty())
            unseen.push_back({entry.path, std::move(fault)});
        else
            visitor(entry, config.Lines());
    }
    return unseen;
}

} // namespace

std::string ListUnseen(const std::vector<Unseen>& unseen) {
    std::vector<std::string> names;
    for (const Unseen& thing : unseen)
        names.push_back(thing.path + "  (" + thing.reason + ")");
    return ListNames(names);
}

std::vector<Unseen> FindConfigFiles(const FileSystem& files, const std::string& root, const ConfigSearch& search,
                                    const std::function<void(const FileEntry&)>& found) {
    ConfigFinder finder(files, search, found);
    finder.Walk(root);
    return std::move(finder.unseen);
}

std::vector<Unseen> VisitConfigFiles(CommandContext& context, const std::string& root, const ConfigSearch& search,
                                     const ConfigVisitor& visitor) {
    std::vector<FileEntry> entries;
    std::vector<Unseen> unseen =
        FindConfigFiles(context.files, root, search, [&](const FileEntry& entry) { entries.push_back(entry); });
    return Visit(context, entries, visitor, std::move(unseen));
}

std::vector<Unseen> VisitConfigFiles(CommandContext& context, const Tree& tree, const ConfigSearch& search,
                                     const ConfigVisitor& visitor) {
    std::vector<FileEntry> entries;
    const std::function<void(const FileEntry&)> add = [&](const FileEntry& entry) { entries.push_back(entry); };
    ConfigFinder finder(context.files, search, add);
    finder.AddTree(tree);
    return Visit(context, entries, visitor, std::move(finder.unseen));
}

bool IsGaugeLine(std::string_view lowerLine) {
    return lowerLine.find("gauge") != std::string_view::npos;
}

} // namespace korvadex
