// The contents of one file, deflated, for a new archive.
#pragma once

#include "archive/deflater.h"
#include "archive/zip_source.h"
#include "platform/file_system.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace korvadex {

// Feeds one file to the zip library: packed in one piece up to 64 MB, otherwise as it is, for the library to
// pack on the way. Must live until the archive is closed.
class DeflatedFile {
  public:
    DeflatedFile(const FileSystem& fileSystem, std::string filePath) : files(fileSystem), path(std::move(filePath)) {}

    // Reads the file. False when it cannot be read.
    bool Read(const FileInfo& info);
    // True when it was small enough to be read whole.
    bool IsRead() const { return isInMemory; }
    // Packs what was read. Looks at nothing but this object: it may run while others are read.
    void Pack(Deflater& deflater, int level);
    // What the library is to do with the bytes it gets: ZIP_CM_STORE, ZIP_CM_DEFLATE or, when they are packed
    // already, ZIP_CM_DEFAULT.
    int MethodForLibrary() const;
    zip_source_t* MakeSource(ZipError& error);
    bool HasReadError() const { return hasReadError; }

  private:
    static zip_int64_t Callback(void* self, void* data, zip_uint64_t length, zip_source_cmd_t command);
    zip_int64_t Serve(void* data, zip_uint64_t length, zip_source_cmd_t command);
    zip_int64_t ReadPiece(std::byte* target, std::size_t length);
    bool ReadAll(std::size_t size);

    const FileSystem& files;
    std::string path;
    FileInfo fileInfo;
    bool isInMemory = false, isPacked = false;
    std::unique_ptr<std::byte[]> bytes;
    std::size_t byteCount = 0, position = 0;
    std::uint32_t crc = 0;
    std::unique_ptr<InputFile> input; // while a file too big for memory is read
    bool hasReadError = false;
};

} // namespace korvadex
