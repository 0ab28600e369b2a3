#include "archive/deflater.h"

#include <algorithm>
#include <cstring>
#include <libdeflate.h>
#include <new>
#include <zlib.h>

namespace korvadex {

namespace {

constexpr int BestLevel = 9; // of zlib, and of Info-ZIP's option

// Of libdeflate. Above 9 it weighs all ways to pack the bytes. Beside zlib's best that makes painted textures 6 to 8 %
// smaller, with 256 colours or 16 bits to a pixel in a quarter to half of its time. Levels 11 and 12 take twice as long
// for 1 % more.
constexpr int CloseLevel = 10, QuickLevel = 1;

// What is drawn in few colours packs to a hundredth or a twentieth. zlib is quick at it, and the close level three
// times as slow for up to a seventh more.
constexpr std::size_t FlatRatio = 10;

constexpr std::size_t SampleSize = 8 * 1024, Samples = 4;

constexpr std::size_t MaxKept = 8u << 20; // bytes of a buffer that are kept for the next

bool Alloc(auto& compressor, int level) {
    if (!compressor)
        compressor.reset(libdeflate_alloc_compressor(level));
    return compressor != nullptr;
}

} // namespace

void Deflater::Freer::operator()(libdeflate_compressor* made) const {
    libdeflate_free_compressor(made);
}

void Deflater::Freer::operator()(libdeflate_decompressor* made) const {
    libdeflate_free_decompressor(made);
}

void Deflater::Freer::operator()(z_stream_s* made) const {
    deflateEnd(made);
    delete made;
}

std::byte* Deflater::Buffer::Room(std::size_t wanted) {
    if (size < wanted || size > MaxKept) {
        bytes.reset(); // before the next is there
        size = 0;      // which may not come
        bytes = std::make_unique_for_overwrite<std::byte[]>(wanted);
        size = wanted;
    }
    return bytes.get();
}

bool Deflater::IsFlat(std::span<const std::byte> plain) {
    if (!Alloc(quick, QuickLevel))
        return true;
    std::byte sample[SampleSize * Samples], packed[SampleSize * Samples / FlatRatio];
    std::span<const std::byte> seen = plain;
    if (plain.size() > sizeof sample) {
        for (std::size_t i = 0; i < Samples; ++i)
            std::copy_n(plain.data() + (plain.size() - SampleSize) / (Samples - 1) * i, SampleSize,
                        sample + SampleSize * i);
        seen = sample;
    }
    return libdeflate_deflate_compress(quick.get(), seen.data(), seen.size(), packed, seen.size() / FlatRatio) != 0;
}

// 0 when there are not fewer bytes.
std::size_t Deflater::PackByZlib(std::span<const std::byte> plain, int level, std::byte* target) {
    if (!stream || streamLevel != level || deflateReset(stream.get()) != Z_OK) {
        stream.reset();
        auto fresh = std::make_unique<z_stream>();
        if (deflateInit2(fresh.get(), level, Z_DEFLATED, -MAX_WBITS, MAX_MEM_LEVEL - 1, Z_DEFAULT_STRATEGY) != Z_OK)
            throw std::bad_alloc();
        stream.reset(fresh.release());
        streamLevel = level;
    }
    stream->next_in = reinterpret_cast<Bytef*>(const_cast<std::byte*>(plain.data()));
    stream->avail_in = static_cast<uInt>(plain.size());
    stream->next_out = reinterpret_cast<Bytef*>(target);
    stream->avail_out = static_cast<uInt>(plain.size() - 1);
    return deflate(stream.get(), Z_FINISH) == Z_STREAM_END ? stream->total_out : 0;
}

// Only bytes that give the file back may take its place.
bool Deflater::GivesBack(std::span<const std::byte> packed, std::span<const std::byte> plain) {
    if (!decompressor)
        decompressor.reset(libdeflate_alloc_decompressor());
    if (!decompressor)
        throw std::bad_alloc();
    std::byte* const unpacked = unpackedRoom.Room(plain.size());
    return libdeflate_deflate_decompress(decompressor.get(), packed.data(), packed.size(), unpacked, plain.size(),
                                         nullptr) == LIBDEFLATE_SUCCESS &&
           std::memcmp(unpacked, plain.data(), plain.size()) == 0;
}

std::optional<DeflatedBytes> Deflater::Pack(std::span<const std::byte> plain, int level) {
    if (plain.empty())
        return std::nullopt;
    std::byte* const target = packedRoom.Room(plain.size());
    const bool isByZlib = level != BestLevel || IsFlat(plain) || !Alloc(close, CloseLevel);
    const std::size_t size =
        isByZlib ? PackByZlib(plain, level, target)
                 : libdeflate_deflate_compress(close.get(), plain.data(), plain.size(), target, plain.size() - 1);
    if (size == 0 || !GivesBack({target, size}, plain))
        return std::nullopt;
    DeflatedBytes packed{std::make_unique_for_overwrite<std::byte[]>(size), size};
    std::copy_n(target, size, packed.bytes.get());
    return packed;
}

} // namespace korvadex
