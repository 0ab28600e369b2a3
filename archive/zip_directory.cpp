#include "archive/zip_directory.h"

#include "archive/zip_bytes.h"
#include "platform/code_page.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace korvadex {

namespace {

constexpr std::uint64_t MaxComment = 0xFFFF, MaxDirectory = 256u << 20;
constexpr std::uint64_t Full16 = 0xFFFF, Full32 = 0xFFFFFFFF; // the number stands in the 64-bit record

// The records at the end, with nothing checked but that they are there.
struct End {
    std::uint64_t at = 0; // of the first of them
    std::uint64_t count = 0, directorySize = 0, directoryOffset = 0;
    bool isPartOfMany = false, is64 = false;
    std::string comment;
};

// The 64-bit record stands right before its locator, or at the offset given there.
void ReadEnd64(zip_source_t* file, std::uint64_t locatorAt, End& end) {
    const auto locator = BytesAt(file, locatorAt, ZipRecord::Locator64Size);
    if (!locator || Little(*locator, 0, 4) != ZipRecord::Locator64)
        return;
    for (const std::uint64_t at : {locatorAt - ZipRecord::End64Size, Little(*locator, 8, 8)}) {
        const auto record = at < locatorAt ? BytesAt(file, at, ZipRecord::End64Size) : std::nullopt;
        if (!record || Little(*record, 0, 4) != ZipRecord::End64)
            continue;
        end = {.at = at,
               .count = Little(*record, 32, 8),
               .directorySize = Little(*record, 40, 8),
               .directoryOffset = Little(*record, 48, 8),
               .isPartOfMany = Little(*record, 16, 4) != 0,
               .is64 = true,
               .comment = end.comment};
        return;
    }
}

End ReadEnd(zip_source_t* file, std::string_view tail, std::uint64_t tailAt, std::size_t found) {
    const std::string_view record = tail.substr(found);
    End end = {.at = tailAt + found,
               .count = Little(record, 10, 2),
               .directorySize = Little(record, 12, 4),
               .directoryOffset = Little(record, 16, 4),
               .isPartOfMany = Little(record, 4, 2) != 0,
               .comment = std::string(record.substr(ZipRecord::EndSize, Little(record, 20, 2)))};
    if (end.at >= ZipRecord::Locator64Size)
        ReadEnd64(file, end.at - ZipRecord::Locator64Size, end);
    return end;
}

// One member of the old directory, as it goes into the new one.
class MemberRecord {
  public:
    // The bytes from its first on; false when it is none, or not all there.
    bool Read(std::string_view bytes) {
        if (bytes.size() < ZipRecord::CentralSize || Little(bytes, 0, 4) != ZipRecord::Central)
            return false;
        const std::size_t nameSize = Little(bytes, 28, 2), extraSize = Little(bytes, 30, 2);
        size = ZipRecord::CentralSize + nameSize + extraSize + Little(bytes, 32, 2);
        if (bytes.size() < size)
            return false;
        fixed = bytes.substr(0, ZipRecord::CentralSize);
        name = bytes.substr(ZipRecord::CentralSize, nameSize);
        kind.method = static_cast<std::uint16_t>(Little(fixed, 10, 2));
        unpackedSize = Little(fixed, 24, 4);
        packedSize = Little(fixed, 20, 4);
        offset = Little(fixed, 42, 4);
        ReadExtra(bytes.substr(ZipRecord::CentralSize + nameSize, extraSize));
        return true;
    }

    std::size_t Size() const { return size; }
    MemberKind Kind() const { return kind; }
    std::string Rewritten() const;

  private:
    void ReadExtra(std::string_view extra);
    void ReadSizes(std::string_view field);
    std::string Encryption(std::string_view field);

    std::size_t size = 0;
    std::string_view fixed, name;
    std::string fields; // those of the extra fields that the new directory takes over
    std::uint64_t unpackedSize = 0, packedSize = 0, offset = 0;
    MemberKind kind;
};

void MemberRecord::ReadExtra(std::string_view extra) {
    constexpr std::uint64_t sizes64 = 0x0001, encryption = 0x9901;
    constexpr std::size_t headSize = 4;
    while (extra.size() >= headSize) {
        const std::uint64_t id = Little(extra, 0, 2);
        const std::size_t length = headSize + Little(extra, 2, 2);
        if (length > extra.size())
            return;
        if (id == sizes64)
            ReadSizes(extra.substr(headSize, length - headSize));
        else if (id == encryption)
            fields += Encryption(extra.substr(0, length));
        else
            fields += extra.substr(0, length);
        extra.remove_prefix(length);
    }
}

void MemberRecord::ReadSizes(std::string_view field) {
    for (std::uint64_t* number : {&unpackedSize, &packedSize, &offset}) {
        if (*number != Full32 || field.size() < 8)
            continue;
        *number = Little(field, 0, 8);
        field.remove_prefix(8);
    }
}

// Of the second kind of AES, which has no CRC-32, the library would compare one all the same, unless it is asked for
// packed bytes: so it is told that they are packed.
std::string MemberRecord::Encryption(std::string_view field) {
    constexpr std::size_t versionAt = 4, methodAt = 9, wholeSize = 11;
    constexpr std::uint64_t withoutCrc = 2;
    if (field.size() < wholeSize)
        return std::string(field);
    kind.hasCrc = Little(field, versionAt, 2) != withoutCrc;
    kind.method = static_cast<std::uint16_t>(Little(field, methodAt, 2));
    std::string shown(field.substr(0, methodAt));
    return shown + LittleBytes(kind.method == ZIP_CM_STORE ? ZIP_CM_DEFLATE : kind.method, 2);
}

std::string MemberRecord::Rewritten() const {
    constexpr std::uint64_t saysUtf8 = 0x800;
    std::uint64_t flags = Little(fixed, 8, 2);
    if (!IsValidUtf8(name))
        flags &= ~saysUtf8;
    std::string sizes;
    const auto in32 = [&](std::uint64_t number) {
        if (number >= Full32)
            sizes += LittleBytes(number, 8);
        return LittleBytes(std::min(number, Full32), 4);
    };
    const std::string unpacked = in32(unpackedSize), packed = in32(packedSize), begin = in32(offset);
    if (!sizes.empty())
        sizes = LittleBytes(1, 2) + LittleBytes(sizes.size(), 2) + sizes;
    const std::string fixedFields(fixed);
    return fixedFields.substr(0, 8) + LittleBytes(flags, 2) + fixedFields.substr(10, 10) + packed + unpacked +
           LittleBytes(name.size(), 2) + LittleBytes(sizes.size() + fields.size(), 2) +
           std::string(4, '\0') + // no comment, and one disk alone
           fixedFields.substr(36, 6) + begin + std::string(name) + sizes + fields;
}

// The end of an archive, with so much before it that nothing else could be taken for an end.
std::string EndRecords(std::uint64_t count, std::uint64_t directoryAt, std::uint64_t directorySize) {
    const std::string apart(ZipRecord::EndSize + ZipRecord::Locator64Size + MaxComment, '\0');
    const std::string end64 = LittleBytes(ZipRecord::End64, 4) + LittleBytes(ZipRecord::End64Size - 12, 8) +
                              LittleBytes(45, 2) + LittleBytes(45, 2) + LittleBytes(0, 8) + LittleBytes(count, 8) +
                              LittleBytes(count, 8) + LittleBytes(directorySize, 8) + LittleBytes(directoryAt, 8);
    return apart + end64 + LittleBytes(ZipRecord::Locator64, 4) + LittleBytes(0, 4) +
           LittleBytes(directoryAt + directorySize + apart.size(), 8) + LittleBytes(1, 4) +
           LittleBytes(ZipRecord::End, 4) + LittleBytes(0, 4) + LittleBytes(Full16, 2) + LittleBytes(Full16, 2) +
           LittleBytes(Full32, 4) + LittleBytes(Full32, 4) + LittleBytes(0, 2);
}

// With the archive taken to begin there. False when no directory of that many members stands where it should.
bool ReadMembers(zip_source_t* file, const End& end, std::uint64_t begin, ZipDirectory& directory) {
    const auto old = BytesAt(file, begin + end.directoryOffset, end.directorySize);
    if (!old)
        return false;
    directory = {.begin = begin, .size = end.at - begin, .records = {}, .comment = end.comment, .members = {}};
    std::string_view rest = *old;
    for (MemberRecord member; member.Read(rest); member = {}) {
        directory.records += member.Rewritten();
        directory.members.push_back(member.Kind());
        rest.remove_prefix(member.Size());
    }
    // Some archives count their members modulo 65,536.
    const std::uint64_t count = directory.members.size();
    if (end.is64 ? count != end.count : (count & Full16) != end.count)
        return false;
    directory.records += EndRecords(count, directory.size, directory.records.size());
    return true;
}

// 0, or libzip's number for why the archive with this end cannot be read.
int ReadArchive(zip_source_t* file, const End& end, ZipDirectory& directory) {
    if (end.isPartOfMany)
        return ZIP_ER_MULTIDISK;
    if (end.directorySize > std::min(end.at, MaxDirectory) || end.directoryOffset > end.at - end.directorySize)
        return ZIP_ER_INCONS;
    // What is left over stands before the archive, or between the directory and its end.
    const std::uint64_t left = end.at - end.directorySize - end.directoryOffset;
    const auto start = BytesAt(file, 0, 4);
    // A file that begins with a member is an archive of its own, and another end in it that of one of its members.
    const bool isMember = left > 0 && start && Little(*start, 0, 4) == ZipRecord::Local;
    if ((!isMember && ReadMembers(file, end, left, directory)) || ReadMembers(file, end, 0, directory))
        return ZIP_ER_OK;
    return isMember ? ZIP_ER_NOZIP : ZIP_ER_INCONS;
}

} // namespace

int ReadZipDirectory(zip_source_t* file, ZipDirectory& directory) {
    constexpr int maxAttempts = 16; // the magic number may stand in comments and members as well
    const std::uint64_t size = SizeOf(file).value_or(0);
    const std::uint64_t tailSize = std::min(size, ZipRecord::EndSize + MaxComment);
    const auto tail = BytesAt(file, size - tailSize, tailSize);
    if (!tail)
        return ZIP_ER_READ;
    const std::string magic = LittleBytes(ZipRecord::End, 4);
    int error = ZIP_ER_NOZIP;
    std::string_view searched(*tail);
    for (int attempt = 0; attempt < maxAttempts; ++attempt) {
        const std::size_t at = searched.rfind(magic);
        if (at == std::string_view::npos)
            break;
        searched = searched.substr(0, at + magic.size() - 1);
        if (tailSize - at < ZipRecord::EndSize)
            continue;
        const int outcome = ReadArchive(file, ReadEnd(file, *tail, size - tailSize, at), directory);
        if (outcome == ZIP_ER_OK)
            return outcome;
        error = error == ZIP_ER_NOZIP ? outcome : error;
    }
    return error;
}

} // namespace korvadex
