// Text files line by line, and files that are replaced whole.
#pragma once

#include "platform/file_system.h"

#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

// The whole file. Use it for files that are small by nature, or where the size was looked at before.
Result<std::string> ReadBytes(const FileSystem& files, const std::string& path);

// Shows visit each line of a text and how it ends: CR LF, LF, CR, or nothing in a last line without an end.
template<class Visit>
void ForEachLine(std::string_view text, Visit visit) {
    while (!text.empty()) {
        const std::size_t feed = text.find('\n');
        const bool hasFeed = feed != std::string_view::npos;
        std::string_view line = text.substr(0, feed);
        text.remove_prefix(hasFeed ? feed + 1 : text.size());
        for (std::size_t at = line.find('\r'); at != std::string_view::npos; at = line.find('\r')) {
            if (hasFeed && at + 1 == line.size())
                break;
            visit(line.substr(0, at), line.substr(at, 1));
            line.remove_prefix(at + 1);
        }
        const std::size_t length = line.size() - (line.ends_with('\r') ? 1 : 0);
        if (hasFeed)
            visit(line.substr(0, length), length < line.size() ? std::string_view("\r\n") : "\n");
        else if (!line.empty())
            visit(line, std::string_view());
    }
}

// The lines in UTF-8.
std::vector<std::string> SplitLines(std::string_view bytes);
Result<std::vector<std::string>> ReadLines(const FileSystem& files, const std::string& path);

// The lines, each ended by CR LF, in the system's code page; none when a character has no byte in it.
std::optional<std::string> JoinLines(const std::vector<std::string>& lines);

// Puts a file in place whole: written as `scratch` (a free name on the same volume), flushed, read back and
// compared, then renamed over `path`, which keeps its attributes but read-only. Whatever fails, `path` is as
// it was and the scratch file is gone.
Status WriteBytesWhole(FileSystem& files, const std::string& path, std::string_view bytes, const std::string& scratch);
// BadName when a line has a character that the code page cannot hold.
Status WriteLinesWhole(FileSystem& files, const std::string& path, const std::vector<std::string>& lines,
                       const std::string& scratch);

// True when both files can be read and hold the same bytes.
bool SameBytes(const FileSystem& files, const std::string& a, const std::string& b);

} // namespace korvadex
