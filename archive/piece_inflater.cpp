#include "archive/piece_inflater.h"

#include "archive/unzip_code.h"

namespace korvadex {

namespace {

constexpr std::size_t PieceSize = 256 * 1024;

} // namespace

PieceInflater::PieceInflater() : isReady(inflateInit2(&stream, -MAX_WBITS) == Z_OK) {}

PieceInflater::~PieceInflater() {
    if (isReady)
        inflateEnd(&stream);
}

int PieceInflater::Inflate(std::span<const std::byte> packed,
                           const std::function<int(std::span<const std::byte>)>& sink) {
    if (!isReady)
        return UnzipCode::NoMemory;
    if (!unpacked)
        unpacked = std::make_unique_for_overwrite<std::byte[]>(PieceSize);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<std::byte*>(packed.data()));
    stream.avail_in = static_cast<uInt>(packed.size());
    do {
        if (isAtEnd)
            return stream.avail_in == 0 ? UnzipCode::Ok : UnzipCode::Error;
        stream.next_out = reinterpret_cast<Bytef*>(unpacked.get());
        stream.avail_out = PieceSize;
        const int outcome = inflate(&stream, Z_NO_FLUSH);
        if (outcome != Z_OK && outcome != Z_STREAM_END && outcome != Z_BUF_ERROR)
            return UnzipCode::Error;
        isAtEnd = outcome == Z_STREAM_END;
        const std::size_t count = PieceSize - stream.avail_out;
        if (const int code = count == 0 ? UnzipCode::Ok : sink(std::span(unpacked.get(), count)); code != UnzipCode::Ok)
            return code;
    } while (stream.avail_in > 0 || stream.avail_out == 0);
    return UnzipCode::Ok;
}

} // namespace korvadex
