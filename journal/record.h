// The lines of a journal: what a command does to one place, written before it is done, and how it left the place.
#pragma once

#include "platform/file_system.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

enum class RecordKind {
    Created,       // a file at `path`, which was free
    Placed,        // what was made as `other` (a scratch name) stands at `path`, which was free
    MadeDirectory, // an empty one at `path`
    RemovedDirectory,
    Renamed,       // `other` became `path`
    Replaced,      // the file `other` took the place of `path`, which is `kept` now
    SetAside,      // `path`, a file, link or directory with all in it, is `kept` now
    Attributes,    // of `path`; attributes and time are those of before
    Time,          // the same, of its time alone
    DirectoryTime, // of a directory in which something is going to change
    Repacked,      // the content of `path` is packed or unpacked now, and the same
    KeptFrom,      // what is kept in the directory `kept` comes from the directory `path`
    Deleted,       // `path` could not be kept, and is gone for good
    Void           // the record whose number, counted from 0, is the size: it was not done
};

struct Record {
    RecordKind kind = RecordKind::Void;
    std::string path = {}, other = {}, kept = {};
    std::string attributes = {}; // FileSystem::Attributes
    FileTime time = {};
    std::uint64_t size = 0; // of what is Renamed, or a file that is Created or Placed, with its time; 0: not known yet

    bool operator==(const Record&) const = default;
};

// How a command left a place that it has touched.
struct LeftPlace {
    std::string path;
    std::optional<FileInfo> info = {}; // none: nothing is there
    bool isOwn = false;                // a directory that the command has made: all in it is its own as well

    bool operator==(const LeftPlace&) const = default;
};

// One line, with its end; of text that no path may hold there is none in it but as %09.
std::string LineOf(const Record& record);
std::string LineOf(const LeftPlace& left);

struct Journal {
    std::vector<Record> records; // those that were not taken for void
    std::vector<LeftPlace> left;
    std::vector<std::size_t> voids; // the numbers that were taken for void
};

// What the text of a journal says. A last line without its end, and lines that say nothing, are left out: what they
// announced has not been done.
Journal ReadJournal(std::string_view text);

// Fields of one line, with a tab between them.
std::string JoinFields(const std::vector<std::string>& fields);
std::vector<std::string> SplitFields(std::string_view line);
// A whole decimal number; none when the text is anything else or too large.
std::optional<std::int64_t> NumberOf(std::string_view text);
std::string TextOf(FileTime time);
std::optional<FileTime> TimeOf(std::string_view text);

} // namespace korvadex
