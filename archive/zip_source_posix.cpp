#include "archive/zip_source.h"

namespace korvadex {

ZipSource MakeZipSource(const FileSystem& files, const std::string& path, ZipError& error) {
    return ZipSource(zip_source_file_create(files.HostPath(path).c_str(), 0, -1, error.get()));
}

} // namespace korvadex
