#include "archive/container_memory.h"

#include "archive/container_bytes.h"

#include <algorithm>
#include <bit>
#include <libdeflate.h>
#include <string>
#include <string_view>
#include <zip.h>

namespace korvadex {

namespace {

constexpr std::string_view XzMark{"\xFD"
                                  "7zXZ\0",
                                  6};
constexpr std::size_t SignatureSize = 32;         // of a 7z archive: where its header lies
constexpr std::uint64_t MostOfHeader = 64u << 20; // no more of it is looked into

// The kinds of records in a 7z header.
enum Record : std::uint8_t {
    HeaderRecord = 1,
    PropertiesRecord = 2,
    StreamsRecord = 4,
    FilesRecord = 5,
    PackRecord = 6,
    UnpackRecord = 7,
    SubStreamsRecord = 8,
    SizesRecord = 9,
    SumsRecord = 10,
    FoldersRecord = 11,
    NamesRecord = 17,
    PackedHeaderRecord = 23,
};

std::uint64_t TakeByte(std::string_view& bytes) {
    const std::uint64_t byte = NumberAt(bytes, 0, 1);
    bytes.remove_prefix(std::min<std::size_t>(1, bytes.size()));
    return byte;
}

std::string_view TakeBytes(std::string_view& bytes, std::uint64_t count) {
    const std::string_view taken = bytes.substr(0, count);
    bytes.remove_prefix(taken.size());
    return taken;
}

// As 7z writes it: as many bytes follow the first as that begins with bits that are set; the rest of it comes on top.
std::uint64_t TakeSevenZipNumber(std::string_view& bytes) {
    const std::uint64_t first = TakeByte(bytes);
    std::size_t count = 0;
    while (count < 8 && (first & (0x80u >> count)) != 0)
        ++count;
    const std::uint64_t low = NumberAt(bytes, 0, count);
    TakeBytes(bytes, count);
    return count >= 7 ? low : low | (first & (0x7Fu >> count)) << 8 * count;
}

bool Takes(std::string_view& bytes, Record record) {
    const bool isThere = !bytes.empty() && NumberAt(bytes, 0, 1) == record;
    if (isThere)
        TakeByte(bytes);
    return isThere;
}

std::uint64_t DictionaryOfLzma2(std::uint64_t property) {
    constexpr std::uint64_t largest = 40;
    return property >= largest ? 0xFFFFFFFFu : (2 | (property & 1)) << (property / 2 + 11);
}

// Of one method of a folder, without the streams that lead to the next one.
std::uint64_t TakeCoder(std::string_view& bytes, std::uint64_t& inputs, std::uint64_t& outputs) {
    constexpr std::uint64_t sizeOfId = 0x0F, hasSeveralStreams = 0x10, hasProperties = 0x20;
    constexpr std::string_view lzma{"\3\1\1", 3}, lzma2{"\x21", 1}, ppmd{"\3\4\1", 3};
    const std::uint64_t flags = TakeByte(bytes);
    const std::string_view id = TakeBytes(bytes, flags & sizeOfId);
    inputs += (flags & hasSeveralStreams) != 0 ? TakeSevenZipNumber(bytes) : 1;
    outputs += (flags & hasSeveralStreams) != 0 ? TakeSevenZipNumber(bytes) : 1;
    const std::uint64_t size = (flags & hasProperties) != 0 ? TakeSevenZipNumber(bytes) : 0;
    const std::string_view properties = TakeBytes(bytes, size);
    return id == lzma2                ? DictionaryOfLzma2(NumberAt(properties, 0, 1))
           : id == lzma || id == ppmd ? NumberAt(properties, 1, 4)
                                      : 0;
}

std::uint64_t TakeFolder(std::string_view& bytes) {
    std::uint64_t memory = 0, inputs = 0, outputs = 0;
    for (std::uint64_t coders = TakeSevenZipNumber(bytes); coders > 0 && !bytes.empty(); --coders)
        memory += TakeCoder(bytes, inputs, outputs);
    const std::uint64_t bound = outputs - std::min<std::uint64_t>(outputs, 1);
    const std::uint64_t packed = inputs - std::min(inputs, bound);
    for (std::uint64_t numbers = bound * 2 + (packed > 1 ? packed : 0); numbers > 0 && !bytes.empty(); --numbers)
        TakeSevenZipNumber(bytes);
    return memory;
}

struct PackedStreams {
    std::uint64_t position = 0, size = 0;
};

PackedStreams TakePackedStreams(std::string_view& bytes) {
    PackedStreams streams{TakeSevenZipNumber(bytes)};
    const std::uint64_t count = TakeSevenZipNumber(bytes);
    for (std::uint64_t i = Takes(bytes, SizesRecord) ? count : 0; i > 0 && !bytes.empty(); --i)
        streams.size += TakeSevenZipNumber(bytes);
    if (Takes(bytes, SumsRecord)) {
        const bool areAllThere = TakeByte(bytes) != 0;
        const std::string_view which = areAllThere ? std::string_view() : TakeBytes(bytes, (count + 7) / 8);
        std::uint64_t sums = areAllThere ? count : 0;
        for (const char byte : which)
            sums += static_cast<std::uint64_t>(std::popcount(static_cast<std::uint8_t>(byte)));
        TakeBytes(bytes, 4 * sums);
    }
    TakeByte(bytes); // the end
    return streams;
}

// The largest of the folders: they are unpacked one after the other.
std::uint64_t MemoryOfStreams(std::string_view bytes) {
    if (Takes(bytes, PackRecord))
        TakePackedStreams(bytes);
    std::uint64_t memory = 0;
    if (!Takes(bytes, UnpackRecord) || !Takes(bytes, FoldersRecord))
        return memory;
    const std::uint64_t count = TakeSevenZipNumber(bytes);
    const bool areElsewhere = TakeByte(bytes) != 0;
    for (std::uint64_t i = areElsewhere ? 0 : count; i > 0 && !bytes.empty(); --i)
        memory = std::max(memory, TakeFolder(bytes));
    return memory;
}

std::string Number(std::uint64_t value, int count) {
    std::string bytes;
    for (; count > 0; --count, value >>= 8)
        bytes += static_cast<char>(value & 0xFF);
    return bytes;
}

std::string WithSum(const std::string& bytes) {
    return Number(libdeflate_crc32(0, bytes.data(), bytes.size()), 4) + bytes;
}

// A header that is packed itself, unpacked as if it were the only file of an archive; "" when that does not work.
std::string UnpackedHeader(ContainerSource& source, std::string_view streams) {
    std::string_view rest = streams;
    if (!Takes(rest, PackRecord))
        return "";
    const PackedStreams packed = TakePackedStreams(rest);
    if (packed.size > MostOfHeader || rest.empty() || MemoryOfStreams(streams) > MostMemory)
        return "";
    std::string_view withoutPosition = streams.substr(1);
    TakeSevenZipNumber(withoutPosition);
    const std::string bytes = source.Peek(SignatureSize + packed.position, std::min(packed.size, source.Size()));
    std::string header = {HeaderRecord, StreamsRecord, PackRecord, 0};
    header.append(withoutPosition.substr(0, withoutPosition.size() - 1)); // without its end
    header += {SubStreamsRecord, 0, 0, FilesRecord, 1, NamesRecord, 5, 0, 'h', 0, 0, 0, 0, 0};
    const std::string where = Number(bytes.size(), 8) + Number(header.size(), 8) + WithSum(header).substr(0, 4);
    const std::string whole = std::string(SevenZipMark) + Number(4 << 8, 2) + WithSum(where) + bytes + header;

    const ContainerHandle reader(archive_read_new());
    archive_entry* entry = nullptr;
    if (!reader || archive_read_support_format_7zip(reader.get()) != ARCHIVE_OK ||
        archive_read_open_memory(reader.get(), whole.data(), whole.size()) != ARCHIVE_OK ||
        archive_read_next_header(reader.get(), &entry) != ARCHIVE_OK)
        return "";
    const la_int64_t size = archive_entry_size(entry);
    std::string unpacked(
        size > 0 && static_cast<std::uint64_t>(size) <= MostOfHeader ? static_cast<std::size_t>(size) : 0, '\0');
    const la_ssize_t count = archive_read_data(reader.get(), unpacked.data(), unpacked.size());
    return count == static_cast<la_ssize_t>(unpacked.size()) ? unpacked : "";
}

std::uint64_t MemoryOfSevenZip(ContainerSource& source) {
    const std::string signature = source.Peek(0, SignatureSize);
    const std::uint64_t size = std::min({NumberAt(signature, 20, 8), source.Size(), MostOfHeader});
    std::string header = source.Peek(SignatureSize + NumberAt(signature, 12, 8), size);
    std::string_view bytes = header;
    if (Takes(bytes, PackedHeaderRecord)) {
        if (const std::uint64_t memory = MemoryOfStreams(bytes); memory > MostMemory)
            return memory;
        header = UnpackedHeader(source, bytes);
        bytes = header;
    }
    if (!Takes(bytes, HeaderRecord))
        return 0;
    if (Takes(bytes, PropertiesRecord)) // none is known; libarchive reads them like this
        while (TakeByte(bytes) != 0)
            TakeSevenZipNumber(bytes);
    return Takes(bytes, StreamsRecord) ? MemoryOfStreams(bytes) : 0;
}

// Of the first block; those that follow are packed alike.
std::uint64_t MemoryOfXz(std::string_view bytes) {
    constexpr std::size_t beginning = 12;
    constexpr std::uint64_t lastFilter = 3, hasPackedSize = 0x40, hasSize = 0x80, lzma2 = 0x21;
    TakeBytes(bytes, beginning);
    TakeByte(bytes); // the size of the block's header
    const std::uint64_t flags = TakeByte(bytes);
    for (const std::uint64_t size : {hasPackedSize, hasSize})
        if ((flags & size) != 0)
            TakeNumber(bytes);
    std::uint64_t memory = 0;
    for (std::uint64_t filter = 0; filter <= (flags & lastFilter); ++filter) {
        const std::uint64_t id = TakeNumber(bytes);
        const std::string_view properties = TakeBytes(bytes, TakeNumber(bytes));
        memory += id == lzma2 ? DictionaryOfLzma2(NumberAt(properties, 0, 1)) : 0;
    }
    return memory;
}

} // namespace

std::uint64_t MemoryToUnpack(ContainerSource& source) {
    constexpr std::size_t enough = 1024;
    const std::string head = source.Peek(0, enough);
    return head.starts_with(SevenZipMark) ? MemoryOfSevenZip(source) : head.starts_with(XzMark) ? MemoryOfXz(head) : 0;
}

std::uint64_t MemoryToUnpackMember(int method, std::string_view bytes) {
    constexpr std::size_t dictionary = 5; // behind a version, a size and one byte of properties
    return method == ZIP_CM_LZMA ? NumberAt(bytes, dictionary, 4) : method == ZIP_CM_XZ ? MemoryOfXz(bytes) : 0;
}

} // namespace korvadex
