#include "archive/library_versions.h"

#include <libdeflate.h>
#include <zip.h>
#include <zlib.h>

namespace korvadex {

std::vector<LibraryVersion> ArchiveLibraries() {
    return {{"libzip", zip_libzip_version(), "BSD licence, 3 clauses"},
            {"libdeflate", LIBDEFLATE_VERSION_STRING, "MIT licence"},
            {"zlib", zlibVersion(), "zlib licence"}};
}

} // namespace korvadex
