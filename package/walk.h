// Walking directory trees: which files and directories lie below a place.
//
// A tree is read once; its listing is then filtered as often as a command needs. What a command itself
// renames or deletes is changed in the listing too, so that it stays true without another walk.
#pragma once

#include "package/locations.h"
#include "platform/file_system.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

// The most subdirectories of one directory that a walk descends into.
inline constexpr int MaxSubdirectoriesPerLevel = 1000;

struct FileEntry {
    std::string path; // full path
    FileInfo info;
    std::string key; // the file's name folded for comparison, "panel.cfg"

    FileEntry() = default;
    FileEntry(std::string fullPath, const FileInfo& fileInfo);

    std::string Name() const; // as stored
    bool operator==(const FileEntry&) const = default;
};

// Everything below one directory: a directory always stands before all that lies below it; the files of a
// directory stand before those of its subdirectories.
struct Tree {
    std::string root;                     // with a trailing backslash
    std::vector<std::string> directories; // full paths without a trailing backslash
    std::vector<FileEntry> files;         // links and mount points among them, with EntryKind::Link
    bool isLevelCut = false;              // a level had more subdirectories than the walk descends into
    std::vector<std::string> unreadable;  // directories that could not be listed

    void Remove(const std::set<std::string>& paths); // files that were deleted
    // Files that were renamed within their directories: old path, new path.
    void Rename(const std::map<std::string, std::string>& renamed);
};

// What no list shows: what bears one of the program's own names, and what file managers write by themselves.
bool IsLeftOut(const DirectoryEntry& entry);

// What a walk is for.
enum class WalkFor {
    Listing, // leaves out what no list shows, and looks into MaxSubdirectoriesPerLevel directories of a level
    Search,  // the same without that bound: what guards a removal must see everything
    Names,   // the same as Search, but sizes and times of files may be missing (FileSystem::ListKinds)
    Deletion // everything that is there but what the program keeps for an undo, and its lock
};
// Called after each directory with all that was seen so far.
using TreeVisitor = std::function<void(const Tree& soFar)>;
Tree WalkTree(const FileSystem& files, const std::string& root, WalkFor purpose = WalkFor::Listing,
              const TreeVisitor& visitor = {});

// The one name of a place, also where a link or a second drive leads there; the name itself where the host does not
// tell. Without a trailing backslash.
std::string OneName(const FileSystem& files, const std::string& path);

// True when one of two directories is the other or lies in it, whatever links lead there.
bool IsOnePlace(const FileSystem& files, const std::string& a, const std::string& b);

// True when the entry of this directory (path ends in a backslash) is a directory, or a link to one. What no list shows
// is none, nor a link that leads back to where it stands or above, nor one that leads nowhere.
bool IsSubdirectory(const FileSystem& files, const std::string& path, const DirectoryEntry& entry);

// Which setting ended a list before its end.
enum class ListCut { None, DirMax, FileMax, Level };

struct DirectoryList {
    std::vector<std::string> paths; // without a trailing backslash
    ListCut cut = ListCut::None;
};
struct FileList {
    std::vector<FileEntry> entries;
    ListCut cut = ListCut::None;
};

// The subdirectories of a path that ends in a backslash, at most DirMax of them; with topLevelOnly no
// descent, and links to directories among them.
DirectoryList CollectDirectories(const FileSystem& files, const std::string& path, bool topLevelOnly,
                                 const WalkLimits& limits);
DirectoryList CollectDirectories(const Tree& tree, const WalkLimits& limits);

// How CollectFiles reads its pattern.
enum class FileMode {
    Extension = 0,  // an extension without the dot; "af", "cf" and "tx" stand for a family, "bmp" is split (below)
    Name = 1,       // a whole file name
    All = 2,        // every file
    CheckText = 3,  // names ending in _check.txt
    KeysText = 4,   // ... _keys.txt
    NotesText = 5,  // ... _notes.txt
    RefText = 6,    // ... _ref.txt
    CheckConfig = 7 // ... _check.cfg, _checklist.cfg
};

// Names of the bitmaps that a package's panel.cfg and oldpanel.cfg mention, lower case.
using PanelBitmapNames = std::set<std::string, std::less<>>;

// True when the folded name of a file is one that mode and pattern (lower case) stand for.
//   af      .af1 .afx        (three letters)     cf   .cf1, but not .cfg     tx   .tx1, but not .txt .txr
bool MatchesPattern(std::string_view key, std::string_view pattern, FileMode mode);

// Links are listed by FileMode::All only.
// The files of a tree that mode and pattern stand for, in the tree's order, at most FileMax. With the pattern
// "bmp" and the panel bitmap names given, panelBitmapsOnly tells which side of the split is wanted.
FileList CollectFiles(const Tree& tree, std::string_view pattern, FileMode mode, const WalkLimits& limits);
FileList CollectBitmaps(const Tree& tree, const PanelBitmapNames& names, bool panelBitmapsOnly,
                        const WalkLimits& limits);

// One sentence for the status bar that names the setting: "... more than 5000 files ... FILEMAX ..."; "" for
// None.
std::string DescribeCut(ListCut cut, const WalkLimits& limits);

} // namespace korvadex
