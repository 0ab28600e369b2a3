#include "archive/packed_member.h"

#include "archive/member_names.h"
#include "archive/whole_size.h"
#include "archive/zip_bytes.h"
#include "archive/zip_source.h"
#include "platform/windows_path.h"

#include <vector>

namespace korvadex {

namespace {

// The mode that an archive made on Unix gives the member of this record; 0 where it tells none.
std::uint32_t UnixMode(std::string_view record) {
    const std::uint64_t hostSystem = Little(record, 5, 1);
    const bool isKnown = hostSystem == ZIP_OPSYS_UNIX || hostSystem == ZIP_OPSYS_OS_X;
    return isKnown ? static_cast<std::uint32_t>(Little(record, 40, 2)) : 0;
}

// The only member of an archive that is the whole file, from its first byte to its last; none for anything else, such
// as a program with an archive behind it or an archive with a comment. What other programs forgive is no packed file.
std::optional<PackedMember> ReadOnlyMember(zip_source_t* source) {
    const std::uint64_t size = SizeOf(source).value_or(0);
    if (size < ZipRecord::LocalSize + ZipRecord::CentralSize + ZipRecord::EndSize)
        return std::nullopt;
    const auto start = BytesAt(source, 0, 4), end = BytesAt(source, size - ZipRecord::EndSize, ZipRecord::EndSize);
    if (!start || !end || Little(*start, 0, 4) != ZipRecord::Local || Little(*end, 0, 4) != ZipRecord::End)
        return std::nullopt;
    const std::uint64_t directorySize = Little(*end, 12, 4), directoryOffset = Little(*end, 16, 4);
    const bool isPartOfMany = Little(*end, 4, 4) != 0;
    if (isPartOfMany || Little(*end, 8, 2) != 1 || Little(*end, 10, 2) != 1 || directorySize < ZipRecord::CentralSize ||
        directoryOffset + directorySize + ZipRecord::EndSize != size)
        return std::nullopt;
    const auto directory = BytesAt(source, directoryOffset, directorySize);
    if (!directory || Little(*directory, 0, 4) != ZipRecord::Central || Little(*directory, 42, 4) != 0)
        return std::nullopt;
    const std::size_t nameSize = Little(*directory, 28, 2);
    const std::size_t restSize = Little(*directory, 30, 2) + Little(*directory, 32, 2);
    if (ZipRecord::CentralSize + nameSize + restSize != directorySize || !RefusalOfKind(UnixMode(*directory)).empty())
        return std::nullopt;
    return PackedMember{.name = directory->substr(ZipRecord::CentralSize, nameSize),
                        .size = Little(*directory, 24, 4),
                        .packedSize = Little(*directory, 20, 4),
                        .crc = static_cast<std::uint32_t>(Little(*directory, 16, 4)),
                        .method = static_cast<std::uint32_t>(Little(*directory, 10, 2)),
                        .isEncrypted = (Little(*directory, 8, 2) & 1) != 0};
}

bool ReadFully(InputFile& file, std::span<std::byte> bytes) {
    const auto count = file.Read(bytes);
    return count && *count == bytes.size();
}

// The next bytes of a file; "" when they are not all there.
std::string BytesFrom(InputFile& file, std::size_t count) {
    std::string bytes(count, '\0');
    return ReadFully(file, std::as_writable_bytes(std::span(bytes))) ? bytes : "";
}

} // namespace

bool PackedMember::FitsInOnePiece() const {
    const bool isKnown = method == ZIP_CM_DEFLATE || (IsStored() && packedSize == size);
    return !isEncrypted && isKnown && size + packedSize <= MaxWholeSize;
}

bool BeginsLikeArchive(const FileSystem& files, const std::string& path) {
    const auto file = files.OpenForReading(path);
    const std::string start = file ? BytesFrom(**file, 4) : "";
    return start.size() == 4 && Little(start, 0, 4) == ZipRecord::Local;
}

Result<bool> ReadLikeArchive(const FileSystem& files, const std::string& path) {
    const auto file = files.OpenForReading(path);
    if (!file)
        return file.status();
    std::vector<std::byte> bytes(64 * 1024);
    std::optional<bool> isArchive;
    for (;;) {
        const auto count = (*file)->Read(bytes);
        if (!count)
            return count.status();
        if (!isArchive)
            isArchive =
                *count >= 4 && Little({reinterpret_cast<const char*>(bytes.data()), 4}, 0, 4) == ZipRecord::Local;
        if (*count == 0 || !*isArchive)
            return *isArchive;
    }
}

bool ReadPackedBytes(const FileSystem& files, const std::string& path, std::span<std::byte> bytes) {
    const auto file = files.OpenForReading(path);
    const std::string header = file ? BytesFrom(**file, ZipRecord::LocalSize) : "";
    if (header.size() < ZipRecord::LocalSize)
        return false;
    // Behind the header stand the name and further fields.
    const std::size_t fieldsSize = Little(header, 26, 2) + Little(header, 28, 2);
    return BytesFrom(**file, fieldsSize).size() == fieldsSize && ReadFully(**file, bytes);
}

std::optional<PackedMember> ReadPackedMember(const FileSystem& files, const std::string& path) {
    const auto info = files.Info(path);
    if (!info || info->kind != EntryKind::File)
        return std::nullopt;
    ZipError error;
    const ZipSource source = MakeZipSource(files, path, error);
    if (!source || zip_source_open(source.get()) != 0)
        return std::nullopt;
    auto member = ReadOnlyMember(source.get());
    zip_source_close(source.get());
    if (!member)
        return std::nullopt;
    const MemberName memberName = ReadMemberName(member->name);
    const bool isOwn = memberName.components.size() == 1 && !memberName.isDirectory &&
                       EqualNoCase(memberName.components.front(), LastPathComponent(path));
    return isOwn ? member : std::nullopt;
}

std::uint64_t UnpackedSize(const FileSystem& files, const FileEntry& file) {
    const auto member = ReadPackedMember(files, file.path);
    return member ? member->size : file.info.size;
}

} // namespace korvadex
