#include "archive/deflated_file.h"

#include "archive/whole_size.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <libdeflate.h>
#include <zlib.h>

namespace korvadex {

namespace {

constexpr int BestLevel = 9; // of zlib, and of Info-ZIP's option

struct Packed {
    std::unique_ptr<std::byte[]> bytes;
    std::size_t size = 0; // 0: it did not become smaller than the limit
};

struct CompressorFreer {
    void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};

// The memory level decides how long zlib's blocks are.
Packed PackByZlib(std::span<const std::byte> plain, int level, int memoryLevel, std::size_t limit) {
    Packed packed{std::make_unique_for_overwrite<std::byte[]>(limit), 0};
    z_stream stream{};
    if (deflateInit2(&stream, level, Z_DEFLATED, -MAX_WBITS, memoryLevel, Z_DEFAULT_STRATEGY) != Z_OK)
        return packed;
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<std::byte*>(plain.data()));
    stream.avail_in = static_cast<uInt>(plain.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.bytes.get());
    stream.avail_out = static_cast<uInt>(limit);
    if (deflate(&stream, Z_FINISH) == Z_STREAM_END)
        packed.size = stream.total_out;
    deflateEnd(&stream);
    return packed;
}

Packed PackByLibdeflate(std::span<const std::byte> plain, int level, std::size_t limit) {
    Packed packed{std::make_unique_for_overwrite<std::byte[]>(limit), 0};
    const std::unique_ptr<libdeflate_compressor, CompressorFreer> compressor(libdeflate_alloc_compressor(level));
    if (compressor)
        packed.size =
            libdeflate_deflate_compress(compressor.get(), plain.data(), plain.size(), packed.bytes.get(), limit);
    return packed;
}

void KeepSmaller(Packed& best, Packed other) {
    if (other.size != 0 && (best.size == 0 || other.size < best.size))
        best = std::move(other);
}

// At the best level never larger than by zlib, whose longest blocks are what Info-ZIP makes. Its usual ones are smaller
// where hardly anything repeats. libdeflate takes a third of the time, but is larger for one picture in three; it is
// asked besides where the answer comes soon.
Packed PackBest(std::span<const std::byte> plain) {
    constexpr std::size_t smallSize = 1024 * 1024;
    Packed best = PackByZlib(plain, BestLevel, MAX_MEM_LEVEL, plain.size());
    const std::size_t longest = best.size;
    const bool isDense = longest == 0 || longest > plain.size() / 4 * 3;
    if (plain.size() <= smallSize || isDense)
        KeepSmaller(best, PackByLibdeflate(plain, BestLevel, plain.size()));
    const bool isClear = best.size < longest - longest / 100;
    if ((plain.size() <= smallSize && !isClear) || isDense)
        KeepSmaller(best, PackByZlib(plain, BestLevel, MAX_MEM_LEVEL - 1, plain.size()));
    return best;
}

// Only bytes that give the file back may take its place.
bool GivesBack(const Packed& packed, std::span<const std::byte> plain) {
    struct Freer {
        void operator()(libdeflate_decompressor* decompressor) const { libdeflate_free_decompressor(decompressor); }
    };
    const std::unique_ptr<libdeflate_decompressor, Freer> decompressor(libdeflate_alloc_decompressor());
    const auto unpacked = std::make_unique_for_overwrite<std::byte[]>(plain.size());
    return decompressor &&
           libdeflate_deflate_decompress(decompressor.get(), packed.bytes.get(), packed.size, unpacked.get(),
                                         plain.size(), nullptr) == LIBDEFLATE_SUCCESS &&
           std::memcmp(unpacked.get(), plain.data(), plain.size()) == 0;
}

} // namespace

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

void DeflatedFile::Pack(int level) {
    if (!isInMemory || byteCount == 0)
        return;
    const std::span<const std::byte> plain(bytes.get(), byteCount);
    crc = libdeflate_crc32(0, plain.data(), plain.size());
    Packed packed = level == BestLevel ? PackBest(plain) : PackByZlib(plain, level, MAX_MEM_LEVEL, plain.size());
    if (packed.size == 0 || packed.size >= byteCount || !GivesBack(packed, plain))
        return;
    bytes = std::move(packed.bytes);
    byteCount = packed.size;
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
