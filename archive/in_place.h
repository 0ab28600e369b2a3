// Single files of a package that are kept packed: a one-member zip archive under the file's own name.
#pragma once

#include "archive/packed_member.h"
#include "package/command_context.h"

#include <functional>
#include <string>
#include <vector>

namespace korvadex {

// 0 when the file was a packed one and is now unpacked (testOnly: would be); an Info-ZIP code otherwise, with
// the file as it was. Only an archive that begins at the file's first byte and holds just the member of the
// file's own name counts as packed. A packed file that cannot be written is reported to the user.
int UnzipFileInPlace(CommandContext& context, const std::string& path, bool testOnly = false);

// Packs the file (see Deflater), unless it is packed already. Failures are reported to the user and leave the
// file as it was.
void ZipFileInPlace(CommandContext& context, const std::string& path);

// A file that stayed as it was, and a sentence that says so.
struct FileFailure {
    std::string path, text;
};

// The same for many files: packed on all processors, and put in their places together. A packed file that is damaged is
// a failure, too; one that changes meanwhile is left. afterEach is called once for each file.
std::vector<FileFailure> UnzipFilesInPlace(CommandContext& context, const std::vector<std::string>& paths,
                                           const std::function<void()>& afterEach);
std::vector<FileFailure> ZipFilesInPlace(CommandContext& context, const std::vector<std::string>& paths,
                                         const std::function<void()>& afterEach);

} // namespace korvadex
