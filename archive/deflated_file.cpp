#include "archive/deflated_file.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <libdeflate.h>
#include <limits>
#include <zlib.h>

namespace korvadex {

namespace {

constexpr std::uint64_t MaxWholeSize = 64u << 20;
constexpr int BestLevel = 9;      // of zlib, and of Info-ZIP's option
constexpr int ThoroughLevel = 12; // of libdeflate; takes as long as zlib at its best

struct CompressorFreer {
    void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};

// How many bytes zlib at its best makes of these.
std::size_t SizeByZlib(std::span<const std::byte> bytes) {
    z_stream stream{};
    if (deflateInit2(&stream, BestLevel, Z_DEFLATED, -MAX_WBITS, MAX_MEM_LEVEL, Z_DEFAULT_STRATEGY) != Z_OK)
        return std::numeric_limits<std::size_t>::max();
    std::array<Bytef, 64 * 1024> packed;
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<std::byte*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    int result = Z_OK;
    while (result == Z_OK) {
        stream.next_out = packed.data();
        stream.avail_out = static_cast<uInt>(packed.size());
        result = deflate(&stream, Z_FINISH);
    }
    const std::size_t size = stream.total_out;
    deflateEnd(&stream);
    return size;
}

// libdeflate searches longer and nearly always wins. Where it does not, by a few bytes, the data are very
// regular or few; then trying both costs little.
bool IsWorthComparing(std::size_t size, std::size_t packedSize) {
    return size <= 256 * 1024 || packedSize < size / 4;
}

} // namespace

bool DeflatedFile::Prepare(const FileInfo& info, int level) {
    fileInfo = info;
    isInMemory = info.size <= MaxWholeSize;
    if (!isInMemory)
        return static_cast<bool>(files.OpenForReading(path));
    if (!ReadAll(static_cast<std::size_t>(info.size)))
        return false;
    Pack(level);
    return true;
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

void DeflatedFile::Pack(int level) {
    const std::span<const std::byte> plain(bytes.get(), byteCount);
    crc = libdeflate_crc32(0, plain.data(), plain.size());
    const std::unique_ptr<libdeflate_compressor, CompressorFreer> compressor(
        libdeflate_alloc_compressor(level == BestLevel ? ThoroughLevel : level));
    if (!compressor || byteCount == 0)
        return;
    auto packed = std::make_unique_for_overwrite<std::byte[]>(byteCount);
    const std::size_t size =
        libdeflate_deflate_compress(compressor.get(), plain.data(), plain.size(), packed.get(), byteCount);
    // 0 when it did not become smaller: the library then tries, or stores.
    const bool isSmallest =
        size != 0 && (level != BestLevel || !IsWorthComparing(byteCount, size) || size <= SizeByZlib(plain));
    if (!isSmallest)
        return;
    bytes = std::move(packed);
    byteCount = size;
    isPacked = true;
}

int DeflatedFile::MethodForLibrary() const {
    return isPacked ? ZIP_CM_DEFAULT : ZIP_CM_DEFLATE;
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
        return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE,
                                              ZIP_SOURCE_STAT, ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, -1);
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
        return Read(static_cast<std::byte*>(data), static_cast<std::size_t>(length));
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

zip_int64_t DeflatedFile::Read(std::byte* target, std::size_t length) {
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
