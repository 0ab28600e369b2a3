#include "archive/piece_inflater.h"

#include "archive/unzip_code.h"

#include <isa-l/igzip_lib.h>

namespace korvadex {

namespace {

constexpr std::size_t PieceSize = 256 * 1024;

} // namespace

PieceInflater::PieceInflater()
    : state(std::make_unique<inflate_state>()), unpacked(std::make_unique_for_overwrite<std::byte[]>(PieceSize)) {
    isal_inflate_init(state.get());
}

PieceInflater::~PieceInflater() = default;

bool PieceInflater::IsAtEnd() const {
    return state->block_state == ISAL_BLOCK_FINISH;
}

int PieceInflater::Inflate(std::span<const std::byte> packed,
                           const std::function<int(std::span<const std::byte>)>& sink) {
    state->next_in = reinterpret_cast<std::uint8_t*>(const_cast<std::byte*>(packed.data()));
    state->avail_in = static_cast<std::uint32_t>(packed.size());
    while (!IsAtEnd()) {
        const std::uint32_t before = state->avail_in;
        state->next_out = reinterpret_cast<std::uint8_t*>(unpacked.get());
        state->avail_out = PieceSize;
        if (isal_inflate(state.get()) != ISAL_DECOMP_OK)
            return UnzipCode::Error;
        const std::size_t count = PieceSize - state->avail_out;
        if (const int code = count == 0 ? UnzipCode::Ok : sink(std::span(unpacked.get(), count)); code != UnzipCode::Ok)
            return code;
        if (state->avail_in == 0 && count < PieceSize)
            return UnzipCode::Ok;
        if (state->avail_in == before && count == 0)
            return UnzipCode::Error;
    }
    return UnzipCode::Ok;
}

} // namespace korvadex
