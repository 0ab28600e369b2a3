// libarchive at work on a file of the disk: which kinds of archives it may look for, and where its bytes come from.
#pragma once

#include "archive/zip_source.h"

#include <archive.h>
#include <archive_entry.h>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace korvadex {

struct ContainerFreer {
    void operator()(archive* reader) const { archive_read_free(reader); }
};
using ContainerHandle = std::unique_ptr<archive, ContainerFreer>;

// The bytes of a file, as often as they are wanted.
class ContainerSource {
  public:
    // The archive begins so many bytes behind the beginning of the file.
    ContainerSource(const FileSystem& files, const std::string& path, std::uint64_t begin);
    ~ContainerSource();
    ContainerSource(const ContainerSource&) = delete;
    ContainerSource& operator=(const ContainerSource&) = delete;

    bool IsOpen() const { return isOpen; }
    std::uint64_t Size() const { return size; }
    // Bytes of the archive from here, as many of them as there are.
    std::string Peek(std::uint64_t from, std::size_t count);

    // Reads the archive from its beginning. It ends before the source does. nullptr when there is nothing in the file
    // that libarchive knows (or no memory).
    enum class Kinds { Archives, Packing }; // Packing: what tar files are packed with, whatever is in it
    ContainerHandle Begin(Kinds kinds = Kinds::Archives);
    // More was asked for than there is.
    bool HasEnded() const { return hasEnded; }
    bool HasFailed() const { return hasFailed; } // the disk gave an error
    // Begin found what it knows, which needs more memory than there is or than libarchive takes.
    bool WantsMemory() const { return wantsMemory; }

  private:
    static la_ssize_t OnRead(archive* reader, void* self, const void** buffer);
    static la_int64_t OnSkip(archive* reader, void* self, la_int64_t request);
    static la_int64_t OnSeek(archive* reader, void* self, la_int64_t offset, int whence);
    la_ssize_t Read(const void** buffer);

    ZipSource file;
    bool isOpen = false, hasEnded = false, hasFailed = false, wantsMemory = false;
    const std::uint64_t begin;
    std::uint64_t size = 0, position = 0; // without what stands before the archive
    std::vector<std::byte> block;
};

} // namespace korvadex
