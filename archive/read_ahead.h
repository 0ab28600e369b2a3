// The members of a zip archive that fit into memory, unpacked before their turn while others are written.
#pragma once

#include "archive/inflaters.h"
#include "archive/zip_member.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <span>
#include <vector>

namespace korvadex {

class ReadAhead {
  public:
    // On all processors, or on the caller's alone.
    ReadAhead(zip_t& openArchive, bool onAllProcessors);

    // Reads a member that fits in one piece and begins to unpack it. False, and nothing done, while there is no room
    // for it beside those begun before.
    bool Begin(const ZipMember& member);
    // The whole member, which need not have been begun; its bytes stay until the next call of this or Begin. Members
    // are to be asked for in the order in which they were begun; those passed over are dropped. An UnzipCode.
    int Take(const ZipMember& member, std::span<const std::byte>& bytes);

  private:
    struct Buffer {
        std::unique_ptr<std::byte[]> bytes;
        std::size_t capacity = 0;
    };

    Buffer TakeBuffer(std::size_t size);
    void DropFirst();
    int ReadPacked(const ZipMember& member, InflateJob& job);

    zip_t& archive;
    std::deque<std::unique_ptr<InflateJob>> jobs; // in the order of the archive; the first may be the one handed out
    bool isFirstHandedOut = false;
    std::vector<Buffer> spare;
    std::size_t inUse = 0; // bytes in the buffers of the jobs
    std::size_t maxJobs;
    Inflaters inflaters; // last: its threads end before the buffers go
};

} // namespace korvadex
