// Text files line by line, and files that are replaced whole.
#pragma once

#include "platform/file_system.h"

#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

// The whole file. Use it for files that are small by nature, or where the size was looked at before.
Result<std::string> ReadBytes(const FileSystem& files, const std::string& path);

// The lines of a text in UTF-8. CR LF, LF and CR each end a line; a last line without an end counts.
std::vector<std::string> SplitLines(std::string_view bytes);
Result<std::vector<std::string>> ReadLines(const FileSystem& files, const std::string& path);

// The lines, each ended by CR LF, in the system's code page; none when a character has no byte in it.
std::optional<std::string> JoinLines(const std::vector<std::string>& lines);

// Puts a file in place whole: written as `scratch` (a free name on the same volume), flushed, read back and
// compared, then renamed over `path`, which keeps its attributes but read-only. Whatever fails, `path` is as
// it was and the scratch file is gone.
Status WriteBytesWhole(FileSystem& files, const std::string& path, std::string_view bytes,
                       const std::string& scratch);
// BadName when a line has a character that the code page cannot hold.
Status WriteLinesWhole(FileSystem& files, const std::string& path, const std::vector<std::string>& lines,
                       const std::string& scratch);

// True when both files can be read and hold the same bytes.
bool SameBytes(const FileSystem& files, const std::string& a, const std::string& b);

} // namespace korvadex
