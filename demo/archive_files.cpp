#include "demo/archive_files.h"

#include <zip.h>

#include <cstdint>
#include <memory>
#include <stdexcept>

namespace korvadex::demo {

namespace {

// 18 May 2002, 14:30, as archives store it. Given in this form it does not depend on the time zone.
constexpr unsigned DosDate = (2002 - 1980) << 9 | 5 << 5 | 18;
constexpr unsigned DosTime = 14 << 11 | 30 << 5;

struct FreeSource {
    void operator()(zip_source_t* source) const { zip_source_free(source); }
};
using ZipSource = std::unique_ptr<zip_source_t, FreeSource>;
struct DiscardZip {
    void operator()(zip_t* zip) const { zip_discard(zip); }
};
using ZipHandle = std::unique_ptr<zip_t, DiscardZip>;

void Require(bool isGood, const char* step) {
    if (!isGood)
        throw std::runtime_error(std::string("making a zip archive: ") + step);
}

void AddMember(zip_t* zip, const std::string& name, const std::string& bytes) {
    zip_int64_t index;
    if (name.ends_with('/')) {
        index = zip_dir_add(zip, name.c_str(), ZIP_FL_ENC_UTF_8);
    } else {
        zip_source_t* source = zip_source_buffer(zip, bytes.data(), bytes.size(), 0);
        Require(source != nullptr, "a member");
        index = zip_file_add(zip, name.c_str(), source, ZIP_FL_ENC_UTF_8);
        if (index < 0)
            zip_source_free(source);
    }
    Require(index >= 0, name.c_str());
    const auto at = static_cast<zip_uint64_t>(index);
    Require(zip_file_set_dostime(zip, at, static_cast<zip_uint16_t>(DosTime), static_cast<zip_uint16_t>(DosDate), 0) ==
                0,
            "a time");
    const zip_uint32_t attributes = name.ends_with('/') ? 0x10 : 0x20; // directory, archive
    Require(zip_file_set_external_attributes(zip, at, 0, ZIP_OPSYS_DOS, attributes) == 0, "attributes");
}

std::string ReadSource(zip_source_t* source) {
    zip_stat_t stat;
    Require(zip_source_open(source) == 0 && zip_source_stat(source, &stat) == 0, "reading it back");
    std::string bytes(static_cast<std::size_t>(stat.size), '\0');
    const zip_int64_t count = zip_source_read(source, bytes.data(), bytes.size());
    zip_source_close(source);
    Require(count >= 0 && static_cast<std::size_t>(count) == bytes.size(), "reading it back");
    return bytes;
}

void PutLittle(std::string& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i)
        bytes += static_cast<char>(value >> (8 * i) & 0xFF);
}

} // namespace

std::string ZipArchive(const Members& members) {
    ZipSource source(zip_source_buffer_create(nullptr, 0, 0, nullptr));
    Require(source != nullptr, "memory");
    ZipHandle zip(zip_open_from_source(source.get(), ZIP_TRUNCATE, nullptr));
    Require(zip != nullptr, "opening");
    zip_source_keep(source.get()); // one for the archive, one to read it back
    for (const auto& [name, bytes] : members)
        AddMember(zip.get(), name, bytes);
    Require(zip_close(zip.get()) == 0, "closing");
    static_cast<void>(zip.release());
    return ReadSource(source.get());
}

std::string Cabinet(const Members& members) {
    constexpr std::size_t BlockLimit = 32768;
    std::string data, names;
    for (const auto& [name, bytes] : members) {
        PutLittle(names, static_cast<std::uint32_t>(bytes.size()), 4);
        PutLittle(names, static_cast<std::uint32_t>(data.size()), 4);
        PutLittle(names, 0, 2); // folder
        PutLittle(names, DosDate, 2);
        PutLittle(names, DosTime, 2);
        PutLittle(names, 0x20, 2);
        names += name + '\0';
        data += bytes;
    }
    std::string blocks;
    std::uint32_t blockCount = 0;
    for (std::size_t at = 0; at < data.size(); at += BlockLimit, ++blockCount) {
        const std::string block = data.substr(at, BlockLimit);
        PutLittle(blocks, 0, 4); // no checksum
        PutLittle(blocks, static_cast<std::uint32_t>(block.size()), 2);
        PutLittle(blocks, static_cast<std::uint32_t>(block.size()), 2);
        blocks += block;
    }
    constexpr std::uint32_t HeaderLength = 36, FolderLength = 8;
    const auto nameLength = static_cast<std::uint32_t>(names.size());
    const std::uint32_t dataStart = HeaderLength + FolderLength + nameLength;
    std::string bytes = "MSCF";
    PutLittle(bytes, 0, 4);
    PutLittle(bytes, dataStart + static_cast<std::uint32_t>(blocks.size()), 4);
    PutLittle(bytes, 0, 4);
    PutLittle(bytes, HeaderLength + FolderLength, 4); // where the names begin
    PutLittle(bytes, 0, 4);
    PutLittle(bytes, 0x0103, 2); // version 1.3
    PutLittle(bytes, 1, 2);      // folders
    PutLittle(bytes, static_cast<std::uint32_t>(members.size()), 2);
    PutLittle(bytes, 0, 2); // flags
    PutLittle(bytes, 0, 4); // set, number in the set
    PutLittle(bytes, dataStart, 4);
    PutLittle(bytes, blockCount, 2);
    PutLittle(bytes, 0, 2); // stored
    return bytes + names + blocks;
}

} // namespace korvadex::demo
