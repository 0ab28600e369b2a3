#include "archive/packed_member.h"

#include "archive/member_names.h"
#include "archive/zip_bytes.h"
#include "archive/zip_source.h"
#include "platform/windows_path.h"

namespace korvadex {

namespace {

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
    if (Little(*end, 8, 2) != 1 || Little(*end, 10, 2) != 1 || directorySize < ZipRecord::CentralSize ||
        directoryOffset + directorySize + ZipRecord::EndSize != size)
        return std::nullopt;
    const auto directory = BytesAt(source, directoryOffset, directorySize);
    if (!directory || Little(*directory, 0, 4) != ZipRecord::Central || Little(*directory, 42, 4) != 0)
        return std::nullopt;
    const std::size_t nameSize = Little(*directory, 28, 2);
    if (ZipRecord::CentralSize + nameSize > directorySize)
        return std::nullopt;
    return PackedMember{.name = directory->substr(ZipRecord::CentralSize, nameSize),
                        .size = Little(*directory, 24, 4),
                        .packedSize = Little(*directory, 20, 4),
                        .crc = static_cast<std::uint32_t>(Little(*directory, 16, 4)),
                        .method = static_cast<std::uint32_t>(Little(*directory, 10, 2)),
                        .isEncrypted = (Little(*directory, 8, 2) & 1) != 0};
}

} // namespace

bool BeginsLikeArchive(const FileSystem& files, const std::string& path) {
    const auto file = files.OpenForReading(path);
    std::string start(4, '\0');
    const auto count = file ? (*file)->Read(std::as_writable_bytes(std::span(start))) : file.status();
    return count && *count == start.size() && Little(start, 0, 4) == ZipRecord::Local;
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
