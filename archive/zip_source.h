// The archive on the disk as the zip library opens it: by the name that the host knows it by.
#pragma once

#include "archive/zip_directory.h"
#include "platform/file_system.h"

#include <memory>
#include <string>
#include <zip.h>

namespace korvadex {

struct ZipDiscarder {
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
using ZipHandle = std::unique_ptr<zip_t, ZipDiscarder>;

struct ZipSourceFreer {
    void operator()(zip_source_t* source) const { zip_source_free(source); }
};
using ZipSource = std::unique_ptr<zip_source_t, ZipSourceFreer>;

class ZipError {
  public:
    ZipError() { zip_error_init(&error); }
    ~ZipError() { zip_error_fini(&error); }
    ZipError(const ZipError&) = delete;
    ZipError& operator=(const ZipError&) = delete;
    zip_error_t* get() { return &error; }
    int code() const { return zip_error_code_zip(&error); }

  private:
    zip_error_t error;
};

// nullptr, and the error set, when the host cannot name the file.
ZipSource MakeZipSource(const FileSystem& files, const std::string& path, ZipError& error);

// The archive to read, with what was read of its directory. nullptr, and the error set, when it cannot be opened.
ZipHandle OpenZip(const FileSystem& files, const std::string& path, ZipDirectory& directory, ZipError& error);
// A new archive. nullptr, and the error set, when it cannot be made or is there already.
ZipHandle CreateZip(const FileSystem& files, const std::string& path, ZipError& error);

} // namespace korvadex
