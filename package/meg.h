// Sizes as the program shows them.
#pragma once

#include <cstdint>
#include <string>

namespace korvadex {

inline constexpr std::uint64_t BytesPerMeg = 1'024'000;

// To the nearest.
constexpr std::uint64_t InMeg(std::uint64_t bytes) {
    return (bytes + BytesPerMeg / 2) / BytesPerMeg;
}

// "12.3 Meg"
std::string MegText(std::uint64_t bytes);
// "812 bytes", "1.5 KB", "20.0 MB", "1.3 GB"
std::string SizeText(std::uint64_t bytes);

} // namespace korvadex
