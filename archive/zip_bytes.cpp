#include "archive/zip_bytes.h"

namespace korvadex {

std::uint64_t Little(std::string_view bytes, std::size_t at, std::size_t count) {
    std::uint64_t value = 0;
    for (std::size_t i = count; i-- > 0;)
        value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

std::string LittleBytes(std::uint64_t value, std::size_t count) {
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i)
        bytes += static_cast<char>(value >> (8 * i) & 0xFF);
    return bytes;
}

std::optional<std::uint64_t> SizeOf(zip_source_t* source) {
    zip_stat_t info;
    zip_stat_init(&info);
    if (zip_source_stat(source, &info) != 0 || (info.valid & ZIP_STAT_SIZE) == 0)
        return std::nullopt;
    return info.size;
}

std::optional<std::string> BytesAt(zip_source_t* source, std::uint64_t offset, std::uint64_t count) {
    const auto size = SizeOf(source);
    if (!size || offset > *size || count > *size - offset ||
        zip_source_seek(source, static_cast<zip_int64_t>(offset), SEEK_SET) != 0)
        return std::nullopt;
    std::string bytes(count, '\0');
    if (zip_source_read(source, bytes.data(), count) != static_cast<zip_int64_t>(count))
        return std::nullopt;
    return bytes;
}

} // namespace korvadex
