// The sums in archives that libarchive does not compare: of stored members of rar, of the blocks of a cabinet before
// its files are handed out, and of what tar files are packed with.
#pragma once

#include "archive/container_source.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace korvadex {

struct RarMember {
    std::optional<std::uint32_t> crc; // none where there is none
    bool isEncrypted = false;
};
// As the headers tell it, in their order. Empty for other archives.
std::vector<RarMember> ReadRarMembers(ContainerSource& source);

// Ok; Error when bytes have changed, so that no file of the archive can be trusted; Truncated when some are missing.
int CheckCabinet(ContainerSource& source);
int CheckGzip(ContainerSource& source);
int CheckPacking(ContainerSource& source); // of other kinds

} // namespace korvadex
