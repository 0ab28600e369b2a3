// A drive `C:` of its own for one test, on the real disk of the machine that runs it.
#pragma once

#include "platform/file_system.h"

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace korvadex::test {

// The letters of Latin-1 as Notepad saves them as "Unicode", or as "Unicode big endian".
std::string TwoByteText(std::string_view text, bool isBigEndian = false);

// Makes an empty directory and a file system on it. On Linux the drive `C:` is that directory; on Windows,
// where drives cannot be made up, Root() is a temporary directory on the real drive. Everything is removed at
// the end.
class TemporaryDrive {
  public:
    TemporaryDrive();
    ~TemporaryDrive();
    TemporaryDrive(const TemporaryDrive&) = delete;
    TemporaryDrive& operator=(const TemporaryDrive&) = delete;

    FileSystem& Files() { return *files; }
    // The Windows path, with a trailing backslash, below which the test works: "C:\" on Linux.
    const std::string& Root() const { return root; }
    // Root() and the rest: At("Hangar\\Jets\\").
    std::string At(std::string_view rest) const { return root + std::string(rest); }

    // Writes a file with its directories; the path is relative to Root(). Replaces what is there.
    void Put(std::string_view relative, std::string_view bytes);
    void MakeDirectory(std::string_view relative);
    // Makes what Outline describes, below a directory: Fill("Staging", "a.txt=bytes, empty\\, sub\\b.txt=more").
    void Fill(std::string_view relative, std::string_view outline);
    // A link to a directory or file of this drive; false where this machine cannot make one.
    bool MakeLink(std::string_view relative, std::string_view target);
    std::string Get(std::string_view relative) const;
    bool Has(std::string_view relative) const;

    // Every file below the directory (relative, "" for all) with its bytes, and every directory with a
    // trailing backslash and no bytes: the tree as a whole, to be compared both ways.
    std::map<std::string, std::string> Tree(std::string_view relative = "") const;
    // The same in one line, without the directories that hold something: "a.txt=bytes, empty\\, sub\\b.txt=more".
    std::string Outline(std::string_view relative = "") const;
    // Every file of Tree with its size, time and attributes as well.
    std::map<std::string, std::pair<std::string, FileInfo>> States(std::string_view relative = "") const;
    // The names of Tree alone, sorted.
    std::vector<std::string> Names(std::string_view relative = "") const;

  private:
    std::filesystem::path hostRoot;
    std::string root;
    std::unique_ptr<FileSystem> files;
};

} // namespace korvadex::test
