// Sizes as the program shows them.
#pragma once

#include <cstdint>

namespace korvadex {

inline constexpr std::uint64_t BytesPerMeg = 1'024'000;

// To the nearest.
constexpr std::uint64_t InMeg(std::uint64_t bytes) {
    return (bytes + BytesPerMeg / 2) / BytesPerMeg;
}

} // namespace korvadex
