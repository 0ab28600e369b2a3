#include "archive/library_versions.h"

#include <archive.h>
#include <isa-l.h>
#include <libdeflate.h>
#include <string>
#include <zip.h>
#include <zlib.h>

namespace korvadex {

std::vector<LibraryVersion> ArchiveLibraries() {
    const std::string isal = std::to_string(ISAL_MAJOR_VERSION) + "." + std::to_string(ISAL_MINOR_VERSION) + "." +
                             std::to_string(ISAL_PATCH_VERSION);
    return {{"libzip", zip_libzip_version(), "BSD licence, 3 clauses"},
            {"libarchive", ARCHIVE_VERSION_ONLY_STRING, "BSD licence, 2 clauses"},
            {"libdeflate", LIBDEFLATE_VERSION_STRING, "MIT licence"},
            {"ISA-L", isal, "BSD licence, 3 clauses"},
            {"zlib", zlibVersion(), "zlib licence"}};
}

} // namespace korvadex
