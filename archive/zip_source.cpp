#include "archive/zip_source.h"

#include <algorithm>

namespace korvadex {

namespace {

// The members of an archive as they lie in the file, and behind them its directory as it was written anew.
class CleanArchive {
  public:
    CleanArchive(ZipSource archiveFile, const ZipDirectory& directory)
        : file(std::move(archiveFile)), begin(directory.begin), membersEnd(directory.size), records(directory.records) {
    }

    // For zip_source_function_create, which takes over the object.
    static zip_int64_t Callback(void* self, void* data, zip_uint64_t length, zip_source_cmd_t command) {
        auto* archive = static_cast<CleanArchive*>(self);
        if (command != ZIP_SOURCE_FREE)
            return archive->Serve(data, length, command);
        delete archive;
        return 0;
    }

  private:
    zip_int64_t Serve(void* data, zip_uint64_t length, zip_source_cmd_t command);
    zip_int64_t Read(char* target, zip_uint64_t length);
    std::uint64_t Size() const { return membersEnd + records.size(); }

    ZipSource file;
    const std::uint64_t begin, membersEnd;
    const std::string records;
    std::uint64_t position = 0;
    ZipError error;
};

zip_int64_t CleanArchive::Serve(void* data, zip_uint64_t length, zip_source_cmd_t command) {
    switch (command) {
    case ZIP_SOURCE_SUPPORTS:
        return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
                                              ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, ZIP_SOURCE_SEEK, ZIP_SOURCE_TELL,
                                              ZIP_SOURCE_SUPPORTS, -1);
    case ZIP_SOURCE_OPEN:
        position = 0;
        return zip_source_open(file.get());
    case ZIP_SOURCE_CLOSE:
        return zip_source_close(file.get());
    case ZIP_SOURCE_READ:
        return Read(static_cast<char*>(data), length);
    case ZIP_SOURCE_SEEK: {
        const zip_int64_t target = zip_source_seek_compute_offset(position, Size(), data, length, error.get());
        if (target < 0)
            return -1;
        position = static_cast<std::uint64_t>(target);
        return 0;
    }
    case ZIP_SOURCE_TELL:
        return static_cast<zip_int64_t>(position);
    case ZIP_SOURCE_STAT: {
        auto* stat = static_cast<zip_stat_t*>(data);
        zip_stat_init(stat);
        stat->size = Size();
        stat->valid |= ZIP_STAT_SIZE;
        return sizeof(*stat);
    }
    case ZIP_SOURCE_ERROR:
        return zip_error_to_data(error.get(), data, length);
    default:
        zip_error_set(error.get(), ZIP_ER_OPNOTSUPP, 0);
        return -1;
    }
}

zip_int64_t CleanArchive::Read(char* target, zip_uint64_t length) {
    if (position >= membersEnd) {
        const std::size_t from = position - membersEnd;
        const std::size_t count = std::min<std::uint64_t>(length, records.size() - from);
        std::copy_n(records.data() + from, count, target);
        position += count;
        return static_cast<zip_int64_t>(count);
    }
    const bool isThere = zip_source_seek(file.get(), static_cast<zip_int64_t>(begin + position), SEEK_SET) == 0;
    const zip_int64_t count =
        isThere ? zip_source_read(file.get(), target, std::min(length, membersEnd - position)) : -1;
    if (count < 0)
        zip_error_set(error.get(), ZIP_ER_READ, 0);
    else
        position += static_cast<std::uint64_t>(count);
    return count;
}

} // namespace

ZipHandle OpenZip(const FileSystem& files, const std::string& path, ZipDirectory& directory, ZipError& error) {
    ZipSource file = MakeZipSource(files, path, error);
    if (!file)
        return nullptr;
    if (zip_source_open(file.get()) != 0) {
        zip_error_set(error.get(), ZIP_ER_OPEN, 0);
        return nullptr;
    }
    const int failure = ReadZipDirectory(file.get(), directory);
    zip_source_close(file.get());
    if (failure != ZIP_ER_OK) {
        zip_error_set(error.get(), failure, 0);
        return nullptr;
    }
    auto clean = std::make_unique<CleanArchive>(std::move(file), directory);
    ZipSource source(zip_source_function_create(&CleanArchive::Callback, clean.get(), error.get()));
    if (!source)
        return nullptr;
    static_cast<void>(clean.release()); // belongs to the source from here on
    ZipHandle archive(zip_open_from_source(source.get(), ZIP_RDONLY, error.get()));
    if (archive)
        static_cast<void>(source.release()); // belongs to the archive from here on
    return archive;
}

ZipHandle CreateZip(const FileSystem& files, const std::string& path, ZipError& error) {
    ZipSource source = MakeZipSource(files, path, error);
    if (!source)
        return nullptr;
    ZipHandle archive(zip_open_from_source(source.get(), ZIP_CREATE | ZIP_EXCL, error.get()));
    if (archive)
        static_cast<void>(source.release()); // belongs to the archive from here on
    return archive;
}

} // namespace korvadex
