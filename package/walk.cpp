#include "package/walk.h"

#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

void WalkLevel(const FileSystem& files, const std::string& path, WalkFor purpose, const TreeVisitor& visitor,
               Tree& tree) {
    auto entries = purpose == WalkFor::Names ? files.ListKinds(path) : files.List(path);
    if (!entries) {
        if (entries.fault() != FileFault::NotFound)
            tree.unreadable.push_back(path);
        return;
    }
    std::vector<std::string> descent;
    for (const auto& entry : *entries) {
        if (purpose == WalkFor::Deletion ? IsLastingName(entry.name) : IsLeftOut(entry))
            continue;
        // Another volume that begins here is another place, as what a link leads to is.
        FileInfo info = entry.info;
        if (entry.isMountPoint)
            info.kind = EntryKind::Link;
        if (info.kind != EntryKind::Directory) {
            tree.files.emplace_back(path + entry.name, info);
            continue;
        }
        tree.directories.push_back(path + entry.name);
        if (purpose != WalkFor::Listing || descent.size() < MaxSubdirectoriesPerLevel)
            descent.push_back(path + entry.name + "\\");
        else
            tree.isLevelCut = true;
    }
    if (visitor)
        visitor(tree);
    for (const auto& subdirectory : descent)
        WalkLevel(files, subdirectory, purpose, visitor, tree);
}

// A dot, the two letters and one more character at the end of the name.
bool IsInFamily(std::string_view key, std::string_view letters) {
    return key.size() >= 4 && key[key.size() - 4] == '.' && key.substr(key.size() - 3, 2) == letters;
}

bool HasExtension(std::string_view key, std::string_view extension) {
    return key.size() > extension.size() && key[key.size() - extension.size() - 1] == '.' && key.ends_with(extension);
}

bool MatchesExtension(std::string_view key, std::string_view pattern) {
    if (pattern == "af")
        return IsInFamily(key, pattern);
    if (pattern == "cf") // a configuration file is no texture
        return IsInFamily(key, pattern) && !key.ends_with(".cfg");
    if (pattern == "tx")
        return IsInFamily(key, pattern) && !key.ends_with(".txt") && !key.ends_with(".txr");
    return HasExtension(key, pattern);
}

template<class Wanted>
FileList Filter(const Tree& tree, const WalkLimits& limits, Wanted isWanted) {
    FileList list;
    for (const auto& file : tree.files) {
        if (!isWanted(file))
            continue;
        if (list.entries.size() == static_cast<std::size_t>(limits.FileMax)) {
            list.cut = ListCut::FileMax;
            return list;
        }
        list.entries.push_back(file);
    }
    list.cut = tree.isLevelCut ? ListCut::Level : ListCut::None;
    return list;
}

void CapDirectories(DirectoryList& list, const WalkLimits& limits) {
    if (list.paths.size() > static_cast<std::size_t>(limits.DirMax)) {
        list.paths.resize(static_cast<std::size_t>(limits.DirMax));
        list.cut = ListCut::DirMax;
    }
}

} // namespace

FileEntry::FileEntry(std::string fullPath, const FileInfo& fileInfo)
    : path(std::move(fullPath)), info(fileInfo), key(FoldCase(Name())) {}

std::string FileEntry::Name() const {
    return LastPathComponent(path);
}

void Tree::Remove(const std::set<std::string>& paths) {
    if (!paths.empty())
        std::erase_if(files, [&](const FileEntry& file) { return paths.contains(file.path); });
}

void Tree::Rename(const std::map<std::string, std::string>& renamed) {
    if (renamed.empty())
        return;
    // The files of a directory stand together, in the order in which the disk lists them.
    for (auto begin = files.begin(); begin != files.end();) {
        const std::string directory = ParentDirectory(begin->path);
        bool isChanged = false;
        auto end = begin;
        for (; end != files.end() && ParentDirectory(end->path) == directory; ++end) {
            if (const auto found = renamed.find(end->path); found != renamed.end()) {
                *end = FileEntry(found->second, end->info);
                isChanged = true;
            }
        }
        if (isChanged)
            std::stable_sort(begin, end,
                             [](const FileEntry& a, const FileEntry& b) { return LessNoCase(a.Name(), b.Name()); });
        begin = end;
    }
}

bool IsLeftOut(const DirectoryEntry& entry) {
    return IsOwnName(entry.name) || (entry.info.kind == EntryKind::File && IsFileManagersFile(entry.name)) ||
           (entry.info.kind == EntryKind::Directory && IsFileManagersDirectory(entry.name));
}

Tree WalkTree(const FileSystem& files, const std::string& root, WalkFor purpose, const TreeVisitor& visitor) {
    Tree tree;
    tree.root = AddBackslash(root);
    WalkLevel(files, tree.root, purpose, visitor, tree);
    return tree;
}

std::string OneName(const FileSystem& files, const std::string& path) {
    return WithoutBackslash(files.PathFromHost(files.HostPath(path)).value_or(path));
}

bool IsOnePlace(const FileSystem& files, const std::string& a, const std::string& b) {
    const auto place = [&](const std::string& path) {
        const std::string host = files.HostPath(path);
        return AddBackslash(host.empty() ? path : files.SourceFromHost(host)); // also outside of the drives
    };
    const std::string first = place(a), second = place(b);
    return IsAtOrBelow(first, second) || IsAtOrBelow(second, first);
}

bool IsSubdirectory(const FileSystem& files, const std::string& path, const DirectoryEntry& entry) {
    if (IsLeftOut(entry) || entry.info.kind == EntryKind::File)
        return false;
    if (entry.info.kind == EntryKind::Directory)
        return true;
    const std::string link = path + entry.name;
    if (!files.IsDirectory(link))
        return false;
    const std::string target = AddBackslash(OneName(files, link));
    for (std::string above = path; !above.empty(); above = ParentDirectory(above))
        if (IsAtOrBelow(OneName(files, above), target))
            return false;
    return true;
}

DirectoryList CollectDirectories(const FileSystem& files, const std::string& path, bool topLevelOnly,
                                 const WalkLimits& limits) {
    if (!topLevelOnly)
        return CollectDirectories(WalkTree(files, path), limits);
    DirectoryList list;
    if (const auto entries = files.List(path)) {
        for (const auto& entry : *entries) {
            if (IsSubdirectory(files, AddBackslash(path), entry))
                list.paths.push_back(AddBackslash(path) + entry.name);
        }
    }
    CapDirectories(list, limits);
    return list;
}

DirectoryList CollectDirectories(const Tree& tree, const WalkLimits& limits) {
    DirectoryList list{tree.directories, tree.isLevelCut ? ListCut::Level : ListCut::None};
    CapDirectories(list, limits);
    return list;
}

bool MatchesPattern(std::string_view key, std::string_view pattern, FileMode mode) {
    switch (mode) {
    case FileMode::Extension:
        return MatchesExtension(key, pattern);
    case FileMode::Name:
        return key == pattern;
    case FileMode::All:
        return true;
    case FileMode::CheckText:
        return key.ends_with("_check.txt");
    case FileMode::KeysText:
        return key.ends_with("_keys.txt");
    case FileMode::NotesText:
        return key.ends_with("_notes.txt");
    case FileMode::RefText:
        return key.ends_with("_ref.txt");
    case FileMode::CheckConfig:
        return key.ends_with("_check.cfg") || key.ends_with("_checklist.cfg");
    }
    return false;
}

FileList CollectFiles(const Tree& tree, std::string_view pattern, FileMode mode, const WalkLimits& limits) {
    return Filter(tree, limits, [&](const FileEntry& file) {
        return (file.info.kind == EntryKind::File || mode == FileMode::All) && MatchesPattern(file.key, pattern, mode);
    });
}

FileList CollectBitmaps(const Tree& tree, const PanelBitmapNames& names, bool panelBitmapsOnly,
                        const WalkLimits& limits) {
    return Filter(tree, limits, [&](const FileEntry& file) {
        return file.info.kind == EntryKind::File && HasExtension(file.key, "bmp") &&
               names.contains(file.key) == panelBitmapsOnly;
    });
}

std::string DescribeCut(ListCut cut, const WalkLimits& limits) {
    switch (cut) {
    case ListCut::DirMax:
        return "There are more than " + std::to_string(limits.DirMax) +
               " directories; the rest is not shown.  Please end Korvadex, raise DIRMAX in kx.ini and start it again.";
    case ListCut::FileMax:
        return "There are more than " + std::to_string(limits.FileMax) +
               " files; the rest is not shown.  Please end Korvadex, raise FILEMAX in kx.ini and start it again.";
    case ListCut::Level:
        return "A directory holds more than " + std::to_string(MaxSubdirectoriesPerLevel) +
               " directories; the rest is not looked at.";
    case ListCut::None:
        break;
    }
    return "";
}

} // namespace korvadex
