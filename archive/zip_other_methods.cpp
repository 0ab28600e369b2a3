#include "archive/zip_other_methods.h"

#include "archive/container_memory.h"
#include "archive/container_source.h"
#include "archive/unzip_code.h"

#include <algorithm>
#include <cerrno>
#include <libdeflate.h>
#include <limits>
#include <string_view>
#include <utility>

namespace korvadex {

namespace {

constexpr std::size_t PieceSize = 1u << 20;

std::string Number(std::uint64_t value, int count) {
    std::string bytes;
    for (; count > 0; --count, value >>= 8)
        bytes += static_cast<char>(value & 0xFF);
    return bytes;
}

// The header before a member, as if it were the first of an archive.
std::string LocalHeader(const ZipMember& member) {
    constexpr std::uint32_t isFurtherOn = std::numeric_limits<std::uint32_t>::max();
    constexpr int version = 63;
    const bool isLarge = std::max(member.size, member.packedSize) >= isFurtherOn;
    const std::string extra =
        isLarge ? Number(1, 2) + Number(16, 2) + Number(member.size, 8) + Number(member.packedSize, 8) : "";
    return "PK\3\4" + Number(version, 2) + Number(0, 2) + Number(member.method, 2) + Number(0, 4) +
           Number(member.crc, 4) + Number(isLarge ? isFurtherOn : member.packedSize, 4) +
           Number(isLarge ? isFurtherOn : member.size, 4) + Number(1, 2) + Number(extra.size(), 2) + "m" + extra;
}

// An archive of one member.
class OneMember {
  public:
    OneMember(const ZipMember& member, zip_file_t& packedFile)
        : header(LocalHeader(member)), method(member.method), file(packedFile), piece(PieceSize) {}

    bool WantsTooMuchMemory() const { return wantsTooMuchMemory; }

    // The read after the last byte is the one that compares an authentication code.
    bool ReadToEnd() {
        while (!hasFailed && Read() > 0)
            ;
        return !hasFailed;
    }
    static la_ssize_t OnRead(archive* reader, void* self, const void** buffer) {
        auto& member = *static_cast<OneMember*>(self);
        const bool isFirst = !std::exchange(member.isBegun, true);
        *buffer = isFirst ? static_cast<const void*>(member.header.data()) : member.piece.data();
        const la_ssize_t count = isFirst ? static_cast<la_ssize_t>(member.header.size()) : member.ReadPacked();
        if (count < 0)
            archive_set_error(reader, EIO, "the member cannot be read");
        return count;
    }

  private:
    la_ssize_t ReadPacked() {
        const la_ssize_t count = Read();
        if (const bool isBeginning = !std::exchange(isLookedAt, true); isBeginning && count > 0) {
            const std::string_view bytes(reinterpret_cast<const char*>(piece.data()), static_cast<std::size_t>(count));
            wantsTooMuchMemory = MemoryToUnpackMember(method, bytes) > MostMemory;
        }
        return wantsTooMuchMemory ? -1 : count;
    }
    la_ssize_t Read() {
        const zip_int64_t count = zip_fread(&file, piece.data(), piece.size());
        hasFailed = count < 0;
        return static_cast<la_ssize_t>(count);
    }

    const std::string header;
    const int method;
    zip_file_t& file;
    std::vector<std::byte> piece;
    bool isBegun = false, isLookedAt = false, wantsTooMuchMemory = false, hasFailed = false;
};

} // namespace

int ReadOtherMethod(const ZipMember& member, zip_file_t& file, const ArchiveReader::Sink& sink) {
    // What a wrong password makes of it, the old cipher does not tell.
    const bool isReadable = member.encryption == ZIP_EM_NONE;
    const int failure = isReadable ? UnzipCode::Error : UnzipCode::BadPassword;
    OneMember source(member, file);
    const ContainerHandle reader(archive_read_new());
    archive_entry* entry = nullptr;
    if (!reader || archive_read_support_format_zip_streamable(reader.get()) != ARCHIVE_OK)
        return UnzipCode::NoMemory;
    // Where there is a sum it is compared below.
    archive_read_set_format_option(reader.get(), "zip", "ignorecrc32", "1");
    archive_read_set_callback_data(reader.get(), &source);
    archive_read_set_read_callback(reader.get(), &OneMember::OnRead);
    if (archive_read_open1(reader.get()) != ARCHIVE_OK || archive_read_next_header(reader.get(), &entry) != ARCHIVE_OK)
        return failure;
    std::vector<std::byte> piece(PieceSize);
    std::uint64_t total = 0;
    std::uint32_t crc = 0;
    while (const la_ssize_t count = archive_read_data(reader.get(), piece.data(), piece.size())) {
        if (count < 0)
            return isReadable && source.WantsTooMuchMemory() ? UnzipCode::NoMemory : failure;
        const auto bytes = std::span(piece).first(static_cast<std::size_t>(count));
        total += bytes.size();
        crc = libdeflate_crc32(crc, bytes.data(), bytes.size());
        if (total > member.size)
            return failure;
        if (const int code = sink(bytes); code != UnzipCode::Ok)
            return code;
    }
    const bool isWhole = total == member.size && (!member.hasCrc || crc == member.crc);
    return isWhole && source.ReadToEnd() ? UnzipCode::Ok : failure;
}

} // namespace korvadex
