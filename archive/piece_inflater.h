// A deflated member unpacked piece by piece, where the whole is not to be had at once.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <span>

struct inflate_state;

namespace korvadex {

class PieceInflater {
  public:
    PieceInflater();
    ~PieceInflater();
    PieceInflater(const PieceInflater&) = delete;
    PieceInflater& operator=(const PieceInflater&) = delete;

    // Hands on what these further bytes unpack to, until the sink answers other than 0. An Info-ZIP code, or that
    // answer. What stands behind the last byte is not looked at.
    int Inflate(std::span<const std::byte> packed, const std::function<int(std::span<const std::byte>)>& sink);
    // True when the last byte has come.
    bool IsAtEnd() const;

  private:
    std::unique_ptr<inflate_state> state;
    std::unique_ptr<std::byte[]> unpacked;
};

} // namespace korvadex
