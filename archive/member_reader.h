// The bytes of the members of one archive, unpacked and checked.
#pragma once

#include "archive/inflaters.h"
#include "archive/zip_source.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace korvadex {

struct Member {
    std::uint64_t index = 0;
    std::uint64_t size = 0, compressedSize = 0;
    std::uint32_t crc = 0;
    std::uint16_t method = 0;     // 0 stored, 8 deflated
    std::uint16_t encryption = 0; // 0 none
    bool hasCrc = true;
};

// Why members packed like this one are not read, in words for the user; "" when they are.
std::string WhyUnreadable(const Member& member);

// An Info-ZIP code for what libzip says about reading.
int UnzipCodeOf(int zipError);

class MemberReader {
  public:
    // With readsAhead, members are unpacked on all processors.
    MemberReader(zip_t& openArchive, bool readsAhead);

    // True when the member can be had in one piece: up to 64 MB, and not encrypted.
    static bool FitsInOnePiece(const Member& member);
    // Reads a member that fits and begins to unpack it. False, and nothing done, while there is no room for it beside
    // those begun before.
    bool Begin(const Member& member);
    // The whole member, which need not have been begun; the bytes stay until the next call of this or Begin. Members
    // are to be asked for in the order in which they were begun; those passed over are dropped. An Info-ZIP code.
    int ReadWhole(const Member& member, std::span<const std::byte>& bytes);

    // An encrypted member, or one of any size, piece by piece. Open tells a wrong password (mostly); Stream hands
    // the pieces to the sink until that answers other than 0, and checks size, CRC-32 and authentication: only its
    // last word says that what the sink was given is good.
    using Sink = std::function<int(std::span<const std::byte>)>;
    int Open(const Member& member, const std::string& password);
    int Stream(const Member& member, const Sink& sink);

  private:
    struct FileCloser {
        void operator()(zip_file_t* file) const { zip_fclose(file); }
    };
    struct Buffer {
        std::unique_ptr<std::byte[]> bytes;
        std::size_t capacity = 0;
    };

    Buffer TakeBuffer(std::size_t size);
    void DropFirst();
    int ReadPacked(const Member& member, InflateJob& job);
    int FailureOf(const Member& member, zip_file_t* file) const;
    int StreamAuthenticated(const Member& member, zip_file_t* file, const Sink& sink);

    zip_t& archive;
    std::unique_ptr<zip_file_t, FileCloser> opened;
    std::deque<std::unique_ptr<InflateJob>> jobs; // in the order of the archive; the first may be the one handed out
    bool isFirstHandedOut = false;
    std::vector<Buffer> spare;
    std::size_t inUse = 0; // bytes in the buffers of the jobs
    std::size_t maxJobs;
    std::unique_ptr<std::byte[]> piece;
    Inflaters inflaters; // last: its threads end before the buffers go
};

} // namespace korvadex
