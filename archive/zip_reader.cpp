#include "archive/zip_reader.h"

#include "archive/packed_member.h"
#include "archive/piece_inflater.h"
#include "archive/read_ahead.h"
#include "archive/unzip_code.h"
#include "archive/zip_other_methods.h"
#include "archive/zip_source.h"

#include <algorithm>
#include <deque>
#include <libdeflate.h>
#include <utility>

namespace korvadex {

namespace {

constexpr std::size_t PieceSize = 1u << 20;
// No archive is older than its format; an earlier time stands for none.
constexpr std::time_t FirstMemberTime = 315532800 - 24 * 3600; // 1980, in every time zone

// UTC from the field that Info-ZIP adds; else the local time of the directory, which knows two-second steps.
FileTime TimeOf(zip_t* archive, std::uint64_t index, const zip_stat_t& info) {
    constexpr std::uint16_t extendedTimestamp = 0x5455;
    zip_uint16_t length = 0;
    const zip_uint8_t* field =
        zip_file_extra_field_get_by_id(archive, index, extendedTimestamp, 0, &length, ZIP_FL_CENTRAL);
    if (field && length >= 5 && (field[0] & 1) != 0) {
        std::uint32_t bits = 0;
        for (int i = 4; i >= 1; --i)
            bits = bits << 8 | field[i];
        return FileTime(std::chrono::seconds(static_cast<std::int32_t>(bits)));
    }
    if ((info.valid & ZIP_STAT_MTIME) == 0 || info.mtime < FirstMemberTime)
        return {};
    return FileTime(std::chrono::seconds(info.mtime));
}

// The mode that an archive made on Unix gives a member; 0 where it tells none.
std::uint32_t UnixModeOf(zip_t* archive, std::uint64_t index) {
    zip_uint8_t hostSystem = 0;
    zip_uint32_t attributes = 0;
    const bool isKnown = zip_file_get_external_attributes(archive, index, 0, &hostSystem, &attributes) == 0;
    return isKnown && (hostSystem == ZIP_OPSYS_UNIX || hostSystem == ZIP_OPSYS_OS_X) ? attributes >> 16 : 0;
}

class ZipReader : public ArchiveReader {
  public:
    ZipReader(ZipHandle openArchive, const ZipDirectory& directory)
        : archive(std::move(openArchive)), commentSize(directory.comment.size()),
          whole(*archive, zip_get_num_entries(archive.get(), 0) > 1) {
        const zip_int64_t count = zip_get_num_entries(archive.get(), 0);
        for (std::uint64_t index = 0; index < static_cast<std::uint64_t>(std::max<zip_int64_t>(count, 0)); ++index)
            ReadEntry(index, directory);
    }

    const std::vector<ArchiveMember>& Members() const override { return members; }
    bool HasUnreadableRecords() const override { return hasUnreadableRecords; }
    std::size_t CommentSize() const override { return commentSize; }

    void Announce(std::vector<std::size_t> indices) override { ahead.assign(indices.begin(), indices.end()); }
    std::string WhyUnreadable(std::size_t member) const override { return korvadex::WhyUnreadable(entries[member]); }
    int Open(std::size_t member, const std::string& password) override;
    int Read(const Sink& sink) override;

  private:
    void ReadEntry(std::uint64_t index, const ZipDirectory& directory);
    int Stream(const ZipMember& member, zip_file_t* file, const Sink& sink);
    int StreamUnpacked(const ZipMember& member, zip_file_t* file, const Sink& sink);

    ZipHandle archive;
    const std::size_t commentSize;
    std::vector<ArchiveMember> members;
    std::vector<ZipMember> entries; // one for each member
    bool hasUnreadableRecords = false;
    std::deque<std::size_t> ahead; // members announced and not yet begun
    ReadAhead whole;
    std::size_t current = 0;                           // the member that was opened
    std::unique_ptr<zip_file_t, ZipFileCloser> opened; // when it does not fit in one piece
    std::unique_ptr<std::byte[]> piece;
};

void ZipReader::ReadEntry(std::uint64_t index, const ZipDirectory& directory) {
    constexpr std::uint64_t needed =
        ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE | ZIP_STAT_COMP_METHOD | ZIP_STAT_ENCRYPTION_METHOD;
    zip_stat_t info;
    zip_stat_init(&info);
    const char* stored = zip_get_name(archive.get(), index, ZIP_FL_ENC_RAW);
    if (!stored || zip_stat_index(archive.get(), index, 0, &info) != 0 || (info.valid & needed) != needed) {
        hasUnreadableRecords = true;
        return;
    }
    const MemberKind kind =
        index < directory.members.size() ? directory.members[index] : MemberKind{info.comp_method, true};
    entries.push_back({index, info.size, info.comp_size, info.crc, kind.method, info.encryption_method, kind.hasCrc});
    ArchiveMember member{ReadMemberName(stored), info.size, info.comp_size, TimeOf(archive.get(), index, info),
                         info.encryption_method != ZIP_EM_NONE};
    if (member.name.refusal.empty())
        member.name.refusal = RefusalOfKind(UnixModeOf(archive.get(), index));
    // A letter of two bytes may end in the one of a separator.
    if (member.name.refusal.empty() && member.name.isDirectory && info.size > 0)
        member.name.refusal = "its name is that of a directory";
    members.push_back(std::move(member));
}

int ZipReader::Open(std::size_t member, const std::string& password) {
    current = member;
    // While this one is written, others are unpacked already.
    while (!ahead.empty() && (!entries[ahead.front()].FitsInOnePiece() || whole.Begin(entries[ahead.front()])))
        ahead.pop_front();
    const ZipMember& entry = entries[member];
    if (entry.FitsInOnePiece())
        return UnzipCode::Ok;
    const zip_flags_t flags = entry.IsInflatedHere() || entry.IsOfOtherMethod() ? ZIP_FL_COMPRESSED : 0;
    opened.reset(entry.encryption == ZIP_EM_NONE
                     ? zip_fopen_index(archive.get(), entry.index, flags)
                     : zip_fopen_index_encrypted(archive.get(), entry.index, flags, password.c_str()));
    return opened ? UnzipCode::Ok : FailureOf(entry, *archive, nullptr);
}

int ZipReader::Read(const Sink& sink) {
    const ZipMember& entry = entries[current];
    if (entry.FitsInOnePiece()) {
        std::span<const std::byte> bytes;
        const int code = whole.Take(entry, bytes);
        return code != UnzipCode::Ok || bytes.empty() ? code : sink(bytes);
    }
    if (!piece)
        piece = std::make_unique_for_overwrite<std::byte[]>(PieceSize);
    const auto file = std::move(opened);
    if (entry.IsOfOtherMethod())
        return ReadOtherMethod(entry, *file, sink);
    return entry.IsInflatedHere() ? Stream(entry, file.get(), sink) : StreamUnpacked(entry, file.get(), sink);
}

int ZipReader::StreamUnpacked(const ZipMember& member, zip_file_t* file, const Sink& sink) {
    std::uint64_t total = 0;
    for (;;) {
        // The read after the last byte is the one that compares the CRC-32.
        const zip_int64_t count = zip_fread(file, piece.get(), PieceSize);
        if (count < 0)
            return FailureOf(member, *archive, file);
        if (count == 0)
            return total == member.size ? UnzipCode::Ok : UnzipCode::Error;
        total += static_cast<std::uint64_t>(count);
        if (total > member.size)
            return UnzipCode::Error;
        if (const int code = sink(std::span(piece.get(), static_cast<std::size_t>(count))); code != UnzipCode::Ok)
            return code;
    }
}

int ZipReader::Stream(const ZipMember& member, zip_file_t* file, const Sink& sink) {
    std::uint64_t total = 0;
    std::uint32_t crc = 0;
    const auto take = [&](std::span<const std::byte> bytes) {
        total += bytes.size();
        crc = libdeflate_crc32(crc, bytes.data(), bytes.size());
        return total > member.size ? UnzipCode::Error : sink(bytes);
    };
    PieceInflater inflater;
    for (;;) {
        // The read after the last byte is the one that compares an authentication code.
        const zip_int64_t count = zip_fread(file, piece.get(), PieceSize);
        if (count < 0) // a password was right, as far as its two check bytes tell
            return zip_error_code_zip(zip_file_get_error(file)) == ZIP_ER_CRC ? UnzipCode::Error
                                                                              : FailureOf(member, *archive, file);
        if (count == 0)
            break;
        const std::span<const std::byte> bytes(piece.get(), static_cast<std::size_t>(count));
        const int code = member.method == ZIP_CM_STORE ? take(bytes) : inflater.Inflate(bytes, take);
        if (code != UnzipCode::Ok)
            return code;
    }
    const bool isWhole = member.method == ZIP_CM_STORE || inflater.IsAtEnd();
    return isWhole && total == member.size && (!member.hasCrc || crc == member.crc) ? UnzipCode::Ok : UnzipCode::Error;
}

// What to say of an archive that the zip library does not open.
OpenedArchive Unopened(const FileSystem& files, const std::string& path, int zipError) {
    // A cut archive begins like any other but has lost its directory, which stands at the end.
    if (zipError == ZIP_ER_NOZIP && BeginsLikeArchive(files, path))
        return {nullptr, UnzipCode::Truncated};
    if (zipError == ZIP_ER_NOZIP)
        return {nullptr, UnzipCode::NotAnArchive, "There is no zip archive in it."};
    if (zipError == ZIP_ER_MULTIDISK)
        return {nullptr, UnzipCode::Unsupported, IsOnePart};
    return {nullptr, UnzipCodeOf(zipError)};
}

} // namespace

OpenedArchive OpenZipArchive(const FileSystem& files, const std::string& path) {
    ZipDirectory directory;
    ZipError error;
    ZipHandle archive = OpenZip(files, path, directory, error);
    if (!archive)
        return Unopened(files, path, error.code());
    return {std::make_unique<ZipReader>(std::move(archive), directory), UnzipCode::Ok};
}

} // namespace korvadex
