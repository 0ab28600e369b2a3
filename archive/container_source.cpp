#include "archive/container_source.h"

#include "archive/container_names.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <span>
#include <string_view>

namespace korvadex {

namespace {

constexpr std::size_t BlockSize = 256u << 10;

using Allow = int (*)(archive*);
constexpr std::array<Allow, 7> Formats = {archive_read_support_format_7zip,   archive_read_support_format_rar,
                                          archive_read_support_format_rar5,   archive_read_support_format_lha,
                                          archive_read_support_format_cab,    archive_read_support_format_tar,
                                          archive_read_support_format_iso9660};
constexpr std::array<Allow, 1> NoFormat = {archive_read_support_format_raw};
constexpr std::array<Allow, 6> Filters = {archive_read_support_filter_none,  archive_read_support_filter_gzip,
                                          archive_read_support_filter_bzip2, archive_read_support_filter_xz,
                                          archive_read_support_filter_zstd,  archive_read_support_filter_compress};

// A filter that answers anything but OK would start a program of the system for its work.
bool AreAllowed(archive& reader, std::span<const Allow> kinds) {
    return std::ranges::all_of(kinds, [&](Allow allow) { return allow(&reader) == ARCHIVE_OK; });
}

} // namespace

ContainerSource::ContainerSource(const FileSystem& files, const std::string& path, std::uint64_t archiveBegin)
    : begin(archiveBegin) {
    ZipError error;
    file = MakeZipSource(files, path, error);
    isOpen = file && zip_source_open(file.get()) == 0;
    zip_stat_t stat;
    zip_stat_init(&stat);
    if (isOpen && zip_source_stat(file.get(), &stat) == 0)
        size = stat.size - std::min(begin, stat.size);
}

ContainerSource::~ContainerSource() {
    if (isOpen)
        zip_source_close(file.get());
}

la_ssize_t ContainerSource::Read(const void** buffer) {
    *buffer = block.data();
    if (position >= size) {
        hasEnded = true;
        return 0;
    }
    const bool isThere = zip_source_seek(file.get(), static_cast<zip_int64_t>(begin + position), SEEK_SET) == 0;
    const zip_int64_t count = isThere ? zip_source_read(file.get(), block.data(), block.size()) : -1;
    hasEnded = hasEnded || count == 0;
    hasFailed = hasFailed || count < 0;
    position += static_cast<std::uint64_t>(std::max<zip_int64_t>(count, 0));
    return static_cast<la_ssize_t>(count);
}

std::string ContainerSource::Peek(std::uint64_t from, std::size_t count) {
    std::string bytes(count, '\0');
    const bool isThere =
        isOpen && from <= size && zip_source_seek(file.get(), static_cast<zip_int64_t>(begin + from), SEEK_SET) == 0;
    const zip_int64_t got = isThere ? zip_source_read(file.get(), bytes.data(), count) : 0;
    bytes.resize(static_cast<std::size_t>(std::max<zip_int64_t>(got, 0)));
    return bytes;
}

la_ssize_t ContainerSource::OnRead(archive* reader, void* self, const void** buffer) {
    const la_ssize_t count = static_cast<ContainerSource*>(self)->Read(buffer);
    if (count < 0)
        archive_set_error(reader, EIO, "the file cannot be read");
    return count;
}

la_int64_t ContainerSource::OnSkip(archive* /*reader*/, void* self, la_int64_t request) {
    auto& source = *static_cast<ContainerSource*>(self);
    const std::uint64_t left = source.size - std::min(source.size, source.position);
    const std::uint64_t skipped = std::min(left, static_cast<std::uint64_t>(std::max<la_int64_t>(request, 0)));
    source.position += skipped;
    return static_cast<la_int64_t>(skipped);
}

la_int64_t ContainerSource::OnSeek(archive* /*reader*/, void* self, la_int64_t offset, int whence) {
    auto& source = *static_cast<ContainerSource*>(self);
    const auto end = static_cast<la_int64_t>(source.size);
    const la_int64_t from = whence == SEEK_SET   ? 0
                            : whence == SEEK_END ? end
                                                 : static_cast<la_int64_t>(source.position);
    if (offset < -from || offset > end - from) {
        source.hasEnded = true;
        return ARCHIVE_FATAL;
    }
    source.position = static_cast<std::uint64_t>(from + offset);
    return from + offset;
}

ContainerHandle ContainerSource::Begin(Kinds kinds) {
    const Utf8Names names; // what libarchive converts to it keeps in mind from the first time on
    ContainerHandle reader(archive_read_new());
    const std::span<const Allow> formats = kinds == Kinds::Archives ? std::span<const Allow>(Formats) : NoFormat;
    if (!isOpen || !reader || !AreAllowed(*reader, formats) || !AreAllowed(*reader, Filters))
        return nullptr;
    if (kinds == Kinds::Archives)
        KeepBytesOfNames(*reader);
    block.resize(BlockSize);
    position = 0;
    hasEnded = false;
    archive_read_set_callback_data(reader.get(), this);
    archive_read_set_read_callback(reader.get(), &OnRead);
    archive_read_set_skip_callback(reader.get(), &OnSkip);
    archive_read_set_seek_callback(reader.get(), &OnSeek);
    if (archive_read_open1(reader.get()) == ARCHIVE_OK)
        return reader;
    const char* words = archive_error_string(reader.get());
    wantsMemory = std::string_view(words ? words : "").find("memory") != std::string_view::npos;
    return nullptr;
}

} // namespace korvadex
