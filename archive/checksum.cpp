#include "archive/checksum.h"

#include <libdeflate.h>

#include <array>
#include <cstddef>

namespace korvadex {

Result<std::uint32_t> FileChecksum(const FileSystem& files, const std::string& path) {
    auto file = files.OpenForReading(path);
    if (!file)
        return file.status();
    std::array<std::byte, 64 * 1024> buffer; // as it is: every byte that is looked at was read
    std::uint32_t checksum = libdeflate_crc32(0, nullptr, 0);
    for (;;) {
        const auto count = (*file)->Read(buffer);
        if (!count)
            return count.status();
        if (*count == 0)
            return checksum;
        checksum = libdeflate_crc32(checksum, buffer.data(), *count);
    }
}

} // namespace korvadex
