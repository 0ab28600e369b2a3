#include "sim/config_search.h"

#include "package/classification.h"
#include "package/name_list.h"
#include "package/progress.h"
#include "platform/windows_path.h"

#include <optional>

namespace korvadex {

namespace {

// A link to something that is not there now, such as a drive that is not connected: it keeps its own name.
bool LeadsNowhere(const FileSystem& files, const std::string& link) {
    const std::string name = OneName(files, link);
    const std::string directory = OneName(files, WithoutBackslash(ParentDirectory(link)));
    return EqualNoCase(name, link) || EqualNoCase(name, AddBackslash(directory) + LastPathComponent(link));
}

} // namespace

std::string ListUnseen(const std::vector<Unseen>& unseen) {
    std::vector<std::string> names;
    for (const Unseen& thing : unseen)
        names.push_back(thing.path + "  (" + thing.reason + ")");
    return ListNames(names);
}

ConfigFiles::ConfigFiles(const FileSystem& fileSystem, const std::string& root, ConfigSearch wanted)
    : files(fileSystem), search(std::move(wanted)) {
    std::size_t seen = 0;
    const Tree tree = WalkTree(files, root, WalkFor::Search, [&](const Tree& soFar) {
        AddFiles(std::span(soFar.files).subspan(seen), 0);
        seen = soFar.files.size();
    });
    AddUnreadable(tree);
}

ConfigFiles::ConfigFiles(const FileSystem& fileSystem, const Tree& tree, ConfigSearch wanted)
    : files(fileSystem), search(std::move(wanted)) {
    AddFiles(tree.files, 0);
    AddUnreadable(tree);
}

bool ConfigFiles::IsWanted(const FileEntry& entry) const {
    return search.isEnding ? entry.key.ends_with(search.fileName) : entry.key == search.fileName;
}

void ConfigFiles::AddFiles(std::span<const FileEntry> entries, int depth) {
    for (const FileEntry& entry : entries) {
        if (!search.leaveOut.empty() && IsAtOrBelow(entry.path, search.leaveOut))
            continue;
        if (entry.info.kind == EntryKind::Link)
            AddLink(entry, depth);
        else if (IsWanted(entry))
            configs.Add(entry);
    }
}

void ConfigFiles::AddUnreadable(const Tree& tree) {
    for (const std::string& directory : tree.unreadable) {
        if (search.leaveOut.empty() || !IsAtOrBelow(directory, search.leaveOut))
            unseen.push_back({directory, "a directory that could not be read"});
    }
}

void ConfigFiles::AddLink(const FileEntry& link, int depth) {
    constexpr int maxDepth = 8; // of links within what a link leads to
    if (files.IsDirectory(link.path)) {
        if (!visited.insert(OneName(files, link.path)).second)
            return;
        if (depth == maxDepth) {
            unseen.push_back({link.path, "too many links within what links lead to"});
            return;
        }
        const Tree tree = WalkTree(files, link.path, WalkFor::Search);
        AddFiles(tree.files, depth + 1);
        AddUnreadable(tree);
    } else if (IsWanted(link)) {
        configs.Add(link);
    } else if (!IsRecognized(link.key) && LeadsNowhere(files, link.path)) {
        // By its name it may have led to a directory: "panel.2", "texture".
        unseen.push_back({link.path, "a link that leads nowhere"});
    }
}

std::vector<Unseen> ConfigFiles::Visit(CommandDisplay& display, const ConfigVisitor& visitor,
                                       const ConfigProgress& progress) {
    const int total = static_cast<int>(configs.Count());
    std::optional<ProgressBar> bar;
    if (!progress)
        bar.emplace(display, total);
    for (int done = 1; done <= total; ++done) {
        if (bar)
            bar->Set(done);
        else
            progress(done, total);
        const auto [entry, text] = configs.Next();
        if (!text.Fault().empty())
            unseen.push_back({entry.path, text.Fault()});
        else if (visitor(entry, text.Lines()) == Visit::Stop)
            break;
    }
    return std::move(unseen);
}

std::vector<Unseen> VisitConfigFiles(CommandContext& context, const std::string& root, const ConfigSearch& search,
                                     const ConfigVisitor& visitor) {
    return ConfigFiles(context.files, root, search).Visit(context.display, visitor);
}

bool IsGaugeLine(std::string_view lowerLine) {
    return lowerLine.find("gauge") != std::string_view::npos;
}

} // namespace korvadex
