// Single files of a package that are kept packed: a one-member zip archive under the file's own name.
#pragma once

#include "package/command_context.h"
#include "package/walk.h"

#include <functional>
#include <string>
#include <vector>

namespace korvadex {

// 0 when the file was a packed one and is now unpacked (testOnly: would be); an Info-ZIP code otherwise, with
// the file as it was. Only an archive that begins at the file's first byte and holds just the member of the
// file's own name counts as packed. A packed file that cannot be unpacked is reported to the user.
int UnzipFileInPlace(CommandContext& context, const std::string& path, bool testOnly = false);

// Packs the file at level 9, unless it is packed already. Failures are reported to the user and leave the
// file as it was.
void ZipFileInPlace(CommandContext& context, const std::string& path);

// The same for many files: packed on all processors, and put in their places together, as a disk confirms many
// files in the time of one. afterEach is called once for each file.
void UnzipFilesInPlace(CommandContext& context, const std::vector<std::string>& paths,
                       const std::function<void()>& afterEach);
void ZipFilesInPlace(CommandContext& context, const std::vector<std::string>& paths,
                     const std::function<void()>& afterEach);

// Bytes of the file when it is not packed: its own size, or that of the member that it holds.
std::uint64_t UnpackedSize(const FileSystem& files, const FileEntry& file);

} // namespace korvadex
