// What tells that a file is kept packed: it is an archive, from its first byte to its last, of nothing but itself.
#pragma once

#include "package/walk.h"
#include "platform/file_system.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace korvadex {

struct PackedMember {
    std::string name;
    std::uint64_t size = 0, packedSize = 0;
    std::uint32_t crc = 0, method = 0;
    bool isEncrypted = false;

    bool IsStored() const { return method == 0; }
    // It can be had in one piece: up to 64 MB, and not encrypted.
    bool FitsInOnePiece() const;
};

// True when it begins as an archive that is a file of its own does. Four bytes tell it of most files at once.
bool BeginsLikeArchive(const FileSystem& files, const std::string& path);

// The same, where ReadPackedMember has found none: a fault when the file, or what begins like an archive up to its end,
// cannot be read, so that it may be packed all the same.
Result<bool> ReadLikeArchive(const FileSystem& files, const std::string& path);

// None when the file is not packed. Whether its bytes are sound is not looked at.
std::optional<PackedMember> ReadPackedMember(const FileSystem& files, const std::string& path);

// The packed bytes of the member that was found in the file; false when they are not all there.
bool ReadPackedBytes(const FileSystem& files, const std::string& path, std::span<std::byte> bytes);

// Bytes of the file when it is not packed: its own size, or that of the member that it holds.
std::uint64_t UnpackedSize(const FileSystem& files, const FileEntry& file);

} // namespace korvadex
