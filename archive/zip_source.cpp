#include "archive/zip_source.h"

namespace korvadex {

ZipHandle OpenZip(const FileSystem& files, const std::string& path, int flags, ZipError& error) {
    ZipSource source = MakeZipSource(files, path, error);
    if (!source)
        return nullptr;
    ZipHandle archive(zip_open_from_source(source.get(), flags, error.get()));
    if (archive)
        static_cast<void>(source.release()); // belongs to the archive from here on
    return archive;
}

} // namespace korvadex
