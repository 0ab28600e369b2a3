// Packing bytes in memory: as small as is worth the time.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>

struct libdeflate_compressor;
struct libdeflate_decompressor;
struct z_stream_s;

namespace korvadex {

struct DeflatedBytes {
    std::unique_ptr<std::byte[]> bytes;
    std::size_t size = 0;
};

// Keeps what it needs from one call to the next.
class Deflater {
  public:
    // The bytes deflated at a level of 1 to 9, unpacked again and compared; none where they would not be fewer. At 9
    // what is painted becomes smaller than by zlib, and what is drawn in few colours as small.
    std::optional<DeflatedBytes> Pack(std::span<const std::byte> plain, int level);

  private:
    struct Freer {
        void operator()(libdeflate_compressor* made) const;
        void operator()(libdeflate_decompressor* made) const;
        void operator()(z_stream_s* made) const;
    };
    using Compressor = std::unique_ptr<libdeflate_compressor, Freer>;
    struct Buffer {
        std::unique_ptr<std::byte[]> bytes;
        std::size_t size = 0;
        std::byte* Room(std::size_t wanted);
    };

    bool IsFlat(std::span<const std::byte> plain);
    std::size_t PackByZlib(std::span<const std::byte> plain, int level, std::byte* target);
    bool GivesBack(std::span<const std::byte> packed, std::span<const std::byte> plain);

    Compressor quick, close;
    std::unique_ptr<libdeflate_decompressor, Freer> decompressor;
    std::unique_ptr<z_stream_s, Freer> stream;
    int streamLevel = 0;
    Buffer packedRoom, unpackedRoom;
};

} // namespace korvadex
