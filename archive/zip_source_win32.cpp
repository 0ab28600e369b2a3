#include "archive/zip_source.h"
#include "platform/win32.h"

namespace korvadex {

ZipSource MakeZipSource(const FileSystem& files, const std::string& path, ZipError& error) {
    const auto native = SourcePath(files.HostPath(path));
    if (!native) {
        zip_error_set(error.get(), ZIP_ER_NOENT, 0);
        return nullptr;
    }
    return ZipSource(zip_source_win32w_create(native->c_str(), 0, -1, error.get()));
}

} // namespace korvadex
