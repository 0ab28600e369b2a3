#include "archive/deflated_file.h"

#include "archive/whole_size.h"

#include <algorithm>
#include <cstring>
#include <libdeflate.h>

namespace korvadex {

bool DeflatedFile::Read(const FileInfo& info) {
    fileInfo = info;
    isInMemory = info.size <= MaxWholeSize;
    return isInMemory ? ReadAll(static_cast<std::size_t>(info.size)) : static_cast<bool>(files.OpenForReading(path));
}

bool DeflatedFile::ReadAll(std::size_t size) {
    auto file = files.OpenForReading(path);
    if (!file)
        return false;
    bytes = std::make_unique_for_overwrite<std::byte[]>(size + 1);
    // One byte more than there should be tells a file that has grown.
    while (byteCount <= size) {
        const auto count = (*file)->Read(std::span(bytes.get() + byteCount, size + 1 - byteCount));
        if (!count)
            return false;
        if (*count == 0)
            break;
        byteCount += *count;
    }
    return byteCount == size;
}

void DeflatedFile::Pack(Deflater& deflater, int level) {
    if (!isInMemory)
        return;
    const std::span<const std::byte> plain(bytes.get(), byteCount);
    crc = libdeflate_crc32(0, plain.data(), plain.size());
    auto packed = deflater.Pack(plain, level);
    if (!packed)
        return;
    bytes = std::move(packed->bytes);
    byteCount = packed->size;
    isPacked = true;
}

int DeflatedFile::MethodForLibrary() const {
    if (isPacked)
        return ZIP_CM_DEFAULT;
    return isInMemory ? ZIP_CM_STORE : ZIP_CM_DEFLATE;
}

zip_source_t* DeflatedFile::MakeSource(ZipError& error) {
    return zip_source_function_create(&DeflatedFile::Callback, this, error.get());
}

zip_int64_t DeflatedFile::Callback(void* self, void* data, zip_uint64_t length, zip_source_cmd_t command) {
    return static_cast<DeflatedFile*>(self)->Serve(data, length, command);
}

zip_int64_t DeflatedFile::Serve(void* data, zip_uint64_t length, zip_source_cmd_t command) {
    switch (command) {
    case ZIP_SOURCE_SUPPORTS:
        return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
                                              ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, -1);
    case ZIP_SOURCE_OPEN: {
        position = 0;
        if (isInMemory)
            return 0;
        auto file = files.OpenForReading(path);
        hasReadError = !file;
        if (file)
            input = std::move(*file);
        return file ? 0 : -1;
    }
    case ZIP_SOURCE_READ:
        return ReadPiece(static_cast<std::byte*>(data), static_cast<std::size_t>(length));
    case ZIP_SOURCE_CLOSE:
        input.reset();
        return 0;
    case ZIP_SOURCE_STAT: {
        auto* stat = static_cast<zip_stat_t*>(data);
        zip_stat_init(stat);
        stat->size = fileInfo.size;
        stat->valid |= ZIP_STAT_SIZE;
        if (isPacked) {
            stat->comp_method = ZIP_CM_DEFLATE;
            stat->comp_size = byteCount;
            stat->crc = crc;
            stat->valid |= ZIP_STAT_COMP_METHOD | ZIP_STAT_COMP_SIZE | ZIP_STAT_CRC;
        }
        return sizeof(*stat);
    }
    case ZIP_SOURCE_ERROR: {
        const int codes[] = {ZIP_ER_READ, 0};
        std::memcpy(data, codes, sizeof codes);
        return sizeof codes;
    }
    case ZIP_SOURCE_FREE:
        return 0;
    default:
        return -1;
    }
}

zip_int64_t DeflatedFile::ReadPiece(std::byte* target, std::size_t length) {
    if (!isInMemory) {
        const auto count = input->Read(std::span(target, length));
        hasReadError = hasReadError || !count;
        return count ? static_cast<zip_int64_t>(*count) : -1;
    }
    const std::size_t count = std::min(length, byteCount - position);
    std::copy_n(bytes.get() + position, count, target);
    position += count;
    return static_cast<zip_int64_t>(count);
}

} // namespace korvadex
