// What a zip archive's directory tells of the bytes of a member, and what it means when they cannot be read.
#pragma once

#include <cstdint>
#include <string>
#include <zip.h>

namespace korvadex {

struct ZipMember {
    std::uint64_t index = 0; // in the archive
    std::uint64_t size = 0, packedSize = 0;
    std::uint32_t crc = 0;
    std::uint16_t method = 0;     // 0 stored, 8 deflated
    std::uint16_t encryption = 0; // 0 none
    bool hasCrc = true;

    // It can be had in one piece: up to 64 MB, and not encrypted.
    bool FitsInOnePiece() const;
    // Its bytes are checked by what the encryption brings.
    bool IsAuthenticated() const;
    // The library only decrypts it: that would take longer to unpack it, compares a CRC-32 where there may be none, and
    // not the authentication of what it has unpacked. What it gives packed it has authenticated to the last byte.
    bool IsInflatedHere() const;
    // The library cannot unpack it, and libarchive can.
    bool IsOfOtherMethod() const;
};

// Why members packed like this one are not read, in words for the user; "" when they are.
std::string WhyUnreadable(const ZipMember& member);

// The UnzipCode for what libzip says about reading.
int UnzipCodeOf(int zipError);
// The UnzipCode for a member that was being read, or (no file) opened.
int FailureOf(const ZipMember& member, zip_t& archive, zip_file_t* file);

struct ZipFileCloser {
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};

} // namespace korvadex
