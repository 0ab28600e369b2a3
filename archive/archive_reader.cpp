#include "archive/archive_reader.h"

#include "archive/zip_reader.h"

namespace korvadex {

// All archives are zip archives so far.
OpenedArchive OpenArchive(const FileSystem& files, const std::string& path) {
    return OpenZipArchive(files, path);
}

} // namespace korvadex
