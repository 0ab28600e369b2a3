// Taking back what a command has done, change by change, the last one first.
#pragma once

#include "journal/record.h"

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace korvadex {

struct TakeBackTools {
    FileSystem& files;
    // Takes away what the command had put there, a file or a directory with all in it, and keeps it elsewhere.
    std::function<Status(const std::string&)> remove;
    // Packs or unpacks these files the other way round; those that stay are failures.
    std::function<std::vector<Status>(const std::vector<std::string>&)> repack;
    // Of a command that was cut off: the changes, by their position, that an earlier try has taken back already, and
    // where to say that one more is.
    std::set<std::size_t> done = {};
    std::function<void(std::size_t)> noteDone = {};
    // What was said so far survives a power cut.
    std::function<void()> flushDone = {};
    // All records are there: what else stands in a directory that was made is somebody else's, and stays with it.
    bool leavesOthers = false;
    // Directories, each with its backslash, whose drives are away: what the command did below them is left, and each
    // is a failure.
    std::vector<std::string> away = {};
};

// Of a failure: it could not be kept, and no other try brings it back.
inline bool IsGoneForGood(const Status& failure) {
    return failure.fault == FileFault::NotKept;
}

// What has not been done is left, so that a taking back that was itself cut off can be begun anew. isCutOff: the
// command did not come to its end, and its things go back to where they were kept; goes on after a failure. Otherwise
// it ends with the first failure, and what it takes away is kept anew. The failures.
std::vector<Status> TakeBack(const std::vector<Record>& records, const TakeBackTools& tools, bool isCutOff);

} // namespace korvadex
