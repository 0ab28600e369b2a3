#include "archive/container_sums.h"

#include "archive/container_bytes.h"
#include "archive/unzip_code.h"

#include <algorithm>
#include <string_view>
#include <zlib.h>

namespace korvadex {

namespace {

constexpr std::size_t MaxHeaders = 1'000'000, PieceSize = 1u << 20;

std::vector<RarMember> ReadOldRar(ContainerSource& source, std::uint64_t position) {
    constexpr std::uint64_t file = 0x74, end = 0x7B, isEncrypted = 4, isLarge = 0x100, hasData = 0x8000;
    constexpr std::size_t smallest = 7, enough = 36;
    std::vector<RarMember> members;
    while (members.size() < MaxHeaders) {
        const std::string header = source.Peek(position, enough);
        const std::uint64_t type = NumberAt(header, 2, 1), flags = NumberAt(header, 3, 2);
        const std::uint64_t size = NumberAt(header, 5, 2);
        if (size < smallest || type == end)
            break;
        if (type == file)
            members.push_back({static_cast<std::uint32_t>(NumberAt(header, 16, 4)), (flags & isEncrypted) != 0});
        const std::uint64_t more = type == file && (flags & isLarge) != 0 ? NumberAt(header, 32, 4) << 32 : 0;
        position += size + ((flags & hasData) != 0 ? NumberAt(header, 7, 4) + more : 0);
    }
    return members;
}

std::optional<std::uint32_t> SumOfHeader(std::string_view rest) {
    constexpr std::uint64_t hasTime = 2, hasSum = 4;
    const std::uint64_t flags = TakeNumber(rest);
    TakeNumber(rest); // size
    TakeNumber(rest); // attributes
    const std::size_t from = (flags & hasTime) != 0 ? 4 : 0;
    return (flags & hasSum) != 0 ? std::optional(static_cast<std::uint32_t>(NumberAt(rest, from, 4))) : std::nullopt;
}

// By the records that stand at the end of a header.
bool IsEncrypted(std::string_view records) {
    constexpr std::uint64_t encryption = 1;
    while (!records.empty()) {
        const std::uint64_t size = TakeNumber(records);
        std::string_view record = records.substr(0, size);
        records.remove_prefix(record.size());
        if (record.empty() || TakeNumber(record) == encryption)
            return !record.empty();
    }
    return false;
}

std::vector<RarMember> ReadNewRar(ContainerSource& source, std::uint64_t position) {
    constexpr std::uint64_t file = 2, encryption = 4, end = 5, hasExtra = 1, hasData = 2;
    constexpr std::size_t sumSize = 4, enough = 80;
    std::vector<RarMember> members;
    while (members.size() < MaxHeaders) {
        const std::string header = source.Peek(position, enough);
        if (header.size() <= sumSize)
            break;
        std::string_view rest = std::string_view(header).substr(sumSize);
        const std::uint64_t size = TakeNumber(rest);
        const std::uint64_t whole = header.size() - rest.size() + size;
        const std::uint64_t type = TakeNumber(rest), flags = TakeNumber(rest);
        if (size == 0 || size > PieceSize * 2 || type == encryption || type == end)
            break;
        const std::uint64_t extra = (flags & hasExtra) != 0 ? TakeNumber(rest) : 0;
        const std::uint64_t data = (flags & hasData) != 0 ? TakeNumber(rest) : 0;
        if (type == file)
            members.push_back(
                {SumOfHeader(rest), extra <= size && IsEncrypted(source.Peek(position + whole - extra, extra))});
        if (data > source.Size())
            break;
        position += whole + data;
    }
    return members;
}

std::uint32_t CabinetSum(std::string_view bytes, std::uint32_t sum) {
    for (; bytes.size() >= 4; bytes.remove_prefix(4))
        sum ^= static_cast<std::uint32_t>(NumberAt(bytes, 0, 4));
    std::uint32_t rest = 0;
    for (const char letter : bytes)
        rest = rest << 8 | static_cast<std::uint8_t>(letter);
    return sum ^ rest;
}

// The blocks of one folder of a cabinet. A sum of 0 stands for none.
int CheckFolder(ContainerSource& source, std::uint64_t position, std::uint64_t count, std::uint64_t reserved) {
    constexpr std::size_t headerSize = 8;
    for (; count > 0; --count) {
        const std::string header = source.Peek(position, headerSize + reserved);
        const std::uint64_t sum = NumberAt(header, 0, 4), size = NumberAt(header, 4, 2);
        const std::string data = source.Peek(position + header.size(), size);
        if (header.size() < headerSize + reserved || data.size() < size)
            return UnzipCode::Truncated;
        if (sum != 0 && CabinetSum(std::string_view(header).substr(4), CabinetSum(data, 0)) != sum)
            return UnzipCode::Error;
        position += header.size() + size;
    }
    return UnzipCode::Ok;
}

} // namespace

std::vector<RarMember> ReadRarMembers(ContainerSource& source) {
    const std::string head = source.Peek(0, NewRarMark.size());
    if (head == NewRarMark)
        return ReadNewRar(source, NewRarMark.size());
    return head.starts_with(OldRarMark) ? ReadOldRar(source, OldRarMark.size()) : std::vector<RarMember>();
}

int CheckCabinet(ContainerSource& source) {
    constexpr std::size_t headerSize = 36, folderSize = 8, sizesSize = 4;
    constexpr std::uint64_t hasReserved = 4;
    const std::string header = source.Peek(0, headerSize + sizesSize);
    const bool isReserving = (NumberAt(header, 30, 2) & hasReserved) != 0;
    const std::uint64_t ofHeader = isReserving ? NumberAt(header, 36, 2) + sizesSize : 0;
    const std::uint64_t ofFolder = isReserving ? NumberAt(header, 38, 1) : 0;
    const std::uint64_t ofBlock = isReserving ? NumberAt(header, 39, 1) : 0;
    for (std::uint64_t folder = 0; folder < NumberAt(header, 26, 2); ++folder) {
        const std::string record = source.Peek(headerSize + ofHeader + folder * (folderSize + ofFolder), folderSize);
        if (const int code = CheckFolder(source, NumberAt(record, 0, 4), NumberAt(record, 4, 2), ofBlock);
            code != UnzipCode::Ok)
            return code;
    }
    return UnzipCode::Ok;
}

// Compares the sums of a gzip file, which may consist of several that stand one behind the other.
int CheckGzip(ContainerSource& source) {
    constexpr int withHeader = 15 + 16;
    constexpr std::string_view mark = "\x1F\x8B";
    z_stream stream{};
    if (inflateInit2(&stream, withHeader) != Z_OK)
        return UnzipCode::NoMemory;
    const std::unique_ptr<z_stream, int (*)(z_stream*)> closer(&stream, &inflateEnd);
    std::vector<Bytef> unpacked(PieceSize);
    int result = Z_OK;
    std::uint64_t position = 0;
    for (std::string bytes = source.Peek(0, PieceSize); !bytes.empty(); bytes = source.Peek(position, PieceSize)) {
        position += bytes.size();
        stream.next_in = reinterpret_cast<Bytef*>(bytes.data());
        stream.avail_in = static_cast<uInt>(bytes.size());
        while (stream.avail_in > 0 || stream.avail_out == 0) {
            if (result == Z_STREAM_END) {
                // What is no further one, as 0 bytes up to a whole block, belongs to none.
                if (source.Peek(position - stream.avail_in, mark.size()) != mark)
                    return UnzipCode::Ok;
                inflateReset(&stream);
            }
            stream.next_out = unpacked.data();
            stream.avail_out = static_cast<uInt>(unpacked.size());
            result = inflate(&stream, Z_NO_FLUSH);
            if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR)
                return UnzipCode::Error;
        }
    }
    return result == Z_STREAM_END ? UnzipCode::Ok : UnzipCode::Truncated;
}

// Unpacks it all: what bzip2, xz and zstd add to each block is compared only behind it.
int CheckPacking(ContainerSource& source) {
    const ContainerHandle reader = source.Begin(ContainerSource::Kinds::Packing);
    archive_entry* entry = nullptr;
    if (!reader || archive_read_next_header(reader.get(), &entry) != ARCHIVE_OK)
        return source.WantsMemory() ? UnzipCode::NoMemory : UnzipCode::Error;
    std::vector<std::byte> piece(PieceSize);
    for (;;) {
        const la_ssize_t count = archive_read_data(reader.get(), piece.data(), piece.size());
        if (count < 0)
            return source.HasEnded() ? UnzipCode::Truncated : UnzipCode::Error;
        if (count == 0)
            return UnzipCode::Ok;
    }
}

} // namespace korvadex
