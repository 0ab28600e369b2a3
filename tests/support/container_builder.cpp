#include "tests/support/container_builder.h"

#include "archive/container_names.h"

#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <cstdint>
#include <ctime>
#include <map>
#include <memory>
#include <stdexcept>
#include <utility>
#include <zlib.h>

namespace korvadex::test {

namespace {

constexpr std::size_t MaxSize = 1u << 22;
constexpr std::time_t Noon = 957528000; // of 5 May 2000
constexpr std::uint32_t DosNoon = 0x28A56000;

std::string Number(std::uint64_t value, int count) {
    std::string bytes;
    for (; count > 0; --count, value >>= 8)
        bytes += static_cast<char>(value & 0xFF);
    return bytes;
}

std::uint32_t Crc32(std::string_view bytes) {
    return static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size())));
}

void Require(int result, archive* writer) {
    if (result < ARCHIVE_WARN)
        throw std::runtime_error(archive_error_string(writer));
}

void Write(archive* writer, const ContainerMember& member) {
    const std::unique_ptr<archive_entry, void (*)(archive_entry*)> entry(archive_entry_new2(writer),
                                                                         &archive_entry_free);
    archive_entry_update_pathname_utf8(entry.get(), member.name.c_str());
    archive_entry_set_mode(entry.get(), static_cast<__LA_MODE_T>(member.kind | 0644u));
    archive_entry_set_mtime(entry.get(), Noon, 0);
    archive_entry_set_size(entry.get(), static_cast<la_int64_t>(member.bytes.size()));
    if (member.kind == 0120000)
        archive_entry_update_symlink_utf8(entry.get(), member.link.c_str());
    else if (!member.link.empty())
        archive_entry_update_hardlink_utf8(entry.get(), member.link.c_str());
    Require(archive_write_header(writer, entry.get()), writer);
    if (!member.bytes.empty())
        Require(static_cast<int>(archive_write_data(writer, member.bytes.data(), member.bytes.size())), writer);
}

std::string ByLibrary(std::string_view kind, const ContainerMembers& members) {
    const Utf8Names names;
    std::string bytes(MaxSize, '\0'); // which the writer closes into, also after a failure
    std::size_t used = 0;
    const std::unique_ptr<archive, int (*)(archive*)> writer(archive_write_new(), &archive_write_free);
    const std::string filter = kind.starts_with("tar.") ? std::string(kind.substr(4)) : "";
    const std::map<std::string, std::string> filters = {
        {"gz", "gzip"}, {"bz2", "bzip2"}, {"zst", "zstd"}, {"xz", "xz"}};
    if (!filter.empty())
        Require(archive_write_add_filter_by_name(writer.get(), filters.at(filter).c_str()), writer.get());
    const std::string format = kind == "7z" ? "7zip" : kind == "iso" ? "iso9660" : "pax";
    Require(archive_write_set_format_by_name(writer.get(), format.c_str()), writer.get());
    Require(archive_write_open_memory(writer.get(), bytes.data(), bytes.size(), &used), writer.get());
    for (const ContainerMember& member : members)
        Write(writer.get(), member);
    Require(archive_write_close(writer.get()), writer.get());
    bytes.resize(used);
    return bytes;
}

std::string VariableNumber(std::uint64_t value) {
    std::string bytes;
    for (; value >= 0x80; value >>= 7)
        bytes += static_cast<char>((value & 0x7F) | 0x80);
    return bytes + static_cast<char>(value);
}

std::string RarBlock(const std::string& header) {
    const std::string sized = VariableNumber(header.size()) + header;
    return Number(Crc32(sized), 4) + sized;
}

std::string Rar(const ContainerMembers& members, HandmadeLies lies) {
    std::string bytes("Rar!\x1A\x07\x01\0", 8);
    bytes += RarBlock(VariableNumber(1) + VariableNumber(0) + VariableNumber(lies.isVolume ? 1 : 0));
    for (const ContainerMember& member : members) {
        const auto size = member.bytes.size() + static_cast<std::size_t>(std::exchange(lies.moreBytes, 0));
        const std::string encryption = VariableNumber(1) + std::string(3, '\0') + std::string(32, 'k');
        const std::string extra = lies.isEncrypted ? VariableNumber(encryption.size()) + encryption : "";
        const bool isDirectory = member.kind == 0040000;
        bytes += RarBlock(VariableNumber(2) + VariableNumber(extra.empty() ? 2 : 3) +
                          (extra.empty() ? "" : VariableNumber(extra.size())) + VariableNumber(member.bytes.size()) +
                          VariableNumber(isDirectory ? 7 : 6) + VariableNumber(size) + VariableNumber(0x20) +
                          Number(Noon, 4) + Number(Crc32(member.bytes), 4) + VariableNumber(0) + VariableNumber(0) +
                          VariableNumber(member.name.size()) + member.name + extra) +
                 member.bytes;
    }
    return bytes + RarBlock(VariableNumber(5) + VariableNumber(0) + VariableNumber(0));
}

std::string Rar4Block(const std::string& header) {
    return Number(Crc32(header) & 0xFFFF, 2) + header;
}

std::string Rar4(const ContainerMembers& members, HandmadeLies lies) {
    std::string bytes("Rar!\x1A\x07\0", 7);
    bytes += Rar4Block(Number(0x73, 1) + Number(lies.isVolume ? 1 : 0, 2) + Number(13, 2) + Number(0, 6));
    for (const ContainerMember& member : members) {
        const auto size = member.bytes.size() + static_cast<std::size_t>(std::exchange(lies.moreBytes, 0));
        const unsigned flags = 0x8000u | (member.kind == 0040000 ? 0xE0u : 0u) | (lies.isEncrypted ? 4u : 0u);
        bytes +=
            Rar4Block(Number(0x74, 1) + Number(flags, 2) + Number(32 + member.name.size(), 2) +
                      Number(member.bytes.size(), 4) + Number(size, 4) + Number(3, 1) + Number(Crc32(member.bytes), 4) +
                      Number(DosNoon, 4) + Number(20, 1) + Number(lies.isPacked ? 0x33 : 0x30, 1) +
                      Number(member.name.size(), 2) + Number(member.kind | 0644u, 4) + member.name) +
            member.bytes;
    }
    return bytes + Rar4Block(Number(0x7B, 1) + Number(0x4000, 2) + Number(7, 2));
}

std::uint16_t Crc16(std::string_view bytes) {
    unsigned crc = 0;
    for (const char letter : bytes) {
        crc ^= static_cast<std::uint8_t>(letter);
        for (int bit = 0; bit < 8; ++bit)
            crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xA001u : 0u);
    }
    return static_cast<std::uint16_t>(crc);
}

std::string Lzh(const ContainerMembers& members, HandmadeLies lies) {
    std::string bytes;
    for (const ContainerMember& member : members) {
        const auto size = member.bytes.size() + static_cast<std::size_t>(std::exchange(lies.moreBytes, 0));
        const std::string header = "-lh0-" + Number(member.bytes.size(), 4) + Number(size, 4) + Number(DosNoon, 4) +
                                   Number(0x20, 1) + Number(0, 1) + Number(member.name.size(), 1) + member.name +
                                   Number(Crc16(member.bytes), 2);
        unsigned sum = 0;
        for (const char letter : header)
            sum += static_cast<std::uint8_t>(letter);
        bytes += Number(header.size(), 1) + Number(sum, 1) + header + member.bytes;
    }
    return bytes + Number(0, 1);
}

std::uint32_t CabinetSum(std::string_view bytes, std::uint32_t sum) {
    for (; bytes.size() >= 4; bytes.remove_prefix(4))
        for (int i = 0; i < 4; ++i)
            sum ^= static_cast<std::uint32_t>(static_cast<std::uint8_t>(bytes[static_cast<std::size_t>(i)])) << 8 * i;
    std::uint32_t rest = 0;
    for (const char letter : bytes)
        rest = rest << 8 | static_cast<std::uint8_t>(letter);
    return sum ^ rest;
}

std::string Cabinet(const ContainerMembers& members, HandmadeLies lies) {
    std::string files, data;
    for (const ContainerMember& member : members) {
        const auto size = member.bytes.size() + static_cast<std::size_t>(std::exchange(lies.moreBytes, 0));
        constexpr unsigned nameIsUtf8 = 0x80;
        files += Number(size, 4) + Number(data.size(), 4) + Number(0, 2) + Number(DosNoon >> 16, 2) +
                 Number(DosNoon & 0xFFFF, 2) + Number(0x20 | nameIsUtf8, 2) + member.name + '\0';
        data += member.bytes;
    }
    constexpr std::size_t headerSize = 36, folderSize = 8;
    const std::size_t dataBegin = headerSize + folderSize + files.size();
    const std::string sizes = Number(data.size(), 2) + Number(data.size(), 2);
    // The name and number of the next one stand behind the header.
    const std::string next = lies.isVolume ? std::string("b.cab\0disk\0", 11) : "";
    return "MSCF" + Number(0, 4) + Number(dataBegin + next.size() + 8 + data.size(), 4) + Number(0, 4) +
           Number(headerSize + folderSize + next.size(), 4) + Number(0, 4) + Number(0x0103, 2) + Number(1, 2) +
           Number(members.size(), 2) + Number(lies.isVolume ? 2 : 0, 2) + Number(7, 2) + Number(0, 2) + next +
           Number(dataBegin + next.size(), 4) + Number(1, 2) + Number(0, 2) + files +
           Number(CabinetSum(sizes, CabinetSum(data, 0)), 4) + sizes + data;
}

} // namespace

std::string Container(std::string_view kind, const ContainerMembers& members) {
    return std::ranges::find(LibraryKinds, kind) != LibraryKinds.end() ? ByLibrary(kind, members)
                                                                       : Handmade(kind, members, {});
}

std::string Handmade(std::string_view kind, const ContainerMembers& members, const HandmadeLies& lies) {
    return kind == "rar"    ? Rar(members, lies)
           : kind == "rar4" ? Rar4(members, lies)
           : kind == "lzh"  ? Lzh(members, lies)
                            : Cabinet(members, lies);
}

std::string SevenZipOfMemory(char dictionary, bool isHeaderPacked) {
    // Stored pieces of LZMA2, and what a header says of them, from where to where they lie in the archive.
    const auto stored = [](const std::string& bytes) {
        return std::string{1, 0, static_cast<char>(bytes.size() - 1)} + bytes + '\0';
    };
    const auto streams = [](std::size_t from, const std::string& packed, const std::string& bytes, char property) {
        return std::string{6, static_cast<char>(from), 1, 9, static_cast<char>(packed.size()), 0} +
               std::string{7, 11, 1, 0, 1, 0x21, 0x21, 1, property, 12, static_cast<char>(bytes.size()), 10, 1} +
               Number(Crc32(bytes), 4) + '\0';
    };
    const std::string file = "secret", packed = stored(file);
    const std::string name("a\0.\0t\0x\0t\0\0\0", 12);
    std::string header = std::string{1, 4} + streams(0, packed, file, dictionary) +
                         std::string{8, 0, 0, 5, 1, 17, 13, 0} + name + std::string(2, '\0');
    std::string bytes = packed;
    if (isHeaderPacked) {
        bytes += stored(header);
        header = '\x17' + streams(packed.size(), stored(header), header, 0) + '\0';
    }
    const std::string where = Number(bytes.size(), 8) + Number(header.size(), 8) + Number(Crc32(header), 4);
    return "7z\xBC\xAF\x27\x1C" + Number(4 << 8, 2) + Number(Crc32(where), 4) + where + bytes + header;
}

std::string TarXzOfMemory(char dictionary) {
    constexpr std::size_t block = 12, property = 16, sum = 20;
    std::string bytes = Container("tar.xz", {{"a.txt", "secret"}});
    bytes[property] = dictionary;
    return bytes.replace(sum, 4, Number(Crc32(std::string_view(bytes).substr(block, sum - block)), 4));
}

} // namespace korvadex::test
