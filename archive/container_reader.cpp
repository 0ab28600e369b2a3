#include "archive/container_reader.h"

#include "archive/container_bytes.h"
#include "archive/container_memory.h"
#include "archive/container_names.h"
#include "archive/container_source.h"
#include "archive/container_sums.h"
#include "archive/container_volume.h"
#include "archive/unzip_code.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <cerrno>
#include <libdeflate.h>
#include <map>
#include <optional>
#include <utility>

namespace korvadex {

namespace {

constexpr std::size_t PieceSize = 1u << 20;
constexpr std::size_t MaxMembers = 1'000'000;
// After as many damaged members, or so many headers that were read again, the rest is not tried.
constexpr int MaxFailures = 100;
constexpr std::size_t MaxHeadersAgain = 5'000'000;
// Earlier and later ones stand for none: before 1980 (in every time zone), after 2242.
constexpr std::time_t FirstTime = 315532800 - 24 * 3600, LastTime = std::time_t{1} << 33;

constexpr const char* IsEncrypted = "It is encrypted in a way that Korvadex cannot read.";

FileTime TimeOf(archive_entry& entry) {
    const std::time_t time = archive_entry_mtime_is_set(&entry) != 0 ? archive_entry_mtime(&entry) : 0;
    return time < FirstTime || time > LastTime ? FileTime{} : FileTime(std::chrono::seconds(time));
}

// Why a member of this kind is not unpacked; "" for files and directories.
std::string RefusalOf(archive_entry& entry) {
    const auto kind = archive_entry_filetype(&entry);
    if (kind == AE_IFLNK || archive_entry_hardlink(&entry) || archive_entry_symlink(&entry))
        return "it is a link";
    return kind == 0 || kind == AE_IFREG || kind == AE_IFDIR ? "" : "it is no file";
}

// The UnzipCode for what libarchive has just said.
int CodeOfFailure(archive& reader, const ContainerSource& source) {
    const char* words = archive_error_string(&reader);
    const std::string text = FoldCase(words ? words : "");
    const auto says = [&](const char* word) { return text.find(word) != std::string::npos; };
    if (archive_errno(&reader) == ENOMEM)
        return UnzipCode::NoMemory;
    if (says("unsupported") || says("not supported") || says("unexpected codec") || says("encrypt"))
        return UnzipCode::Unsupported;
    return source.HasEnded() ? UnzipCode::Truncated : UnzipCode::Error;
}

// libarchive unpacks members of the old rar wrongly that are larger than what that remembers, which their sums tell.
// They may be sound.
bool MayBeSound(archive& reader, std::uint64_t size) {
    constexpr std::uint64_t remembered = 4u << 20;
    const char* words = archive_error_string(&reader);
    const bool isCut = FoldCase(words ? words : "").starts_with("truncated");
    const int format = archive_format(&reader) & ARCHIVE_FORMAT_BASE_MASK;
    return format == ARCHIVE_FORMAT_RAR && size > remembered && !isCut;
}

// What is remembered of a member beside what everybody sees.
struct Entry {
    std::size_t header = 0; // the how manieth header of the archive leads to its bytes
    bool isEncrypted = false, hasSize = true;
};

class ContainerReader : public ArchiveReader {
  public:
    ContainerReader(const FileSystem& files, const std::string& path, std::uint64_t begin)
        : source(files, path, begin) {}

    // Reads the headers of all members. Ok, or why there is nothing to be had.
    int List();
    bool HasEncryptedHeaders() const;
    ContainerSource& Source() { return source; }

    const std::vector<ArchiveMember>& Members() const override { return members; }
    bool HasUnreadableRecords() const override { return hasUnreadableRecords; }
    std::size_t CommentSize() const override { return 0; }
    void Announce(std::vector<std::size_t>) override {}
    std::string WhyUnreadable(std::size_t member) const override;
    int Open(std::size_t member, const std::string& password) override;
    int Read(const Sink& sink) override;

  private:
    bool Begin();
    int Check();
    int NextHeader();
    void AddMember(std::size_t header);
    int FailedAt(std::size_t header, int code);

    ContainerSource source;
    ContainerHandle handle;
    archive_entry* header = nullptr;
    std::vector<ArchiveMember> members;
    std::vector<Entry> entries;                 // one for each member
    std::map<std::string, std::size_t> headers; // of files, by their names
    std::vector<RarMember> rarMembers;          // one for each header
    bool hasUnreadableRecords = false;
    std::size_t next = 0;    // the header that comes next
    std::size_t current = 0; // the member that was opened
    int failures = 0;
    std::size_t headersAgain = 0;
    std::optional<std::size_t> deadEnd; // no way leads to this header and those behind it
    int deadEndCode = UnzipCode::Ok;
    std::unique_ptr<std::byte[]> piece;
};

bool ContainerReader::Begin() {
    handle.reset();
    handle = source.Begin();
    next = 0;
    return bool(handle);
}

// Compares the sums that stand beside the members and not in them.
int ContainerReader::Check() {
    const int format = archive_format(handle.get()) & ARCHIVE_FORMAT_BASE_MASK;
    if (format == ARCHIVE_FORMAT_RAR || format == ARCHIVE_FORMAT_RAR_V5)
        rarMembers = ReadRarMembers(source);
    if (format == ARCHIVE_FORMAT_CAB)
        return CheckCabinet(source);
    const int layers = archive_filter_count(handle.get()) - 1;
    if (layers < 1)
        return UnzipCode::Ok;
    const bool isGzip = layers == 1 && archive_filter_code(handle.get(), 0) == ARCHIVE_FILTER_GZIP;
    handle.reset(); // two readers would take twice the memory
    return isGzip ? CheckGzip(source) : CheckPacking(source);
}

int ContainerReader::NextHeader() {
    const Utf8Names names;
    ++next;
    return archive_read_next_header(handle.get(), &header);
}

void ContainerReader::AddMember(std::size_t number) {
    const Utf8Names names;
    auto name = NameOf(*header);
    if (!name) {
        hasUnreadableRecords = true;
        return;
    }
    const bool isDirectory = archive_entry_filetype(header) == AE_IFDIR;
    if (isDirectory && !name->ends_with('/') && !name->ends_with('\\'))
        *name += '/';
    Entry entry{number, archive_entry_is_encrypted(header) != 0, archive_entry_size_is_set(header) != 0};
    auto size = static_cast<std::uint64_t>(std::max<la_int64_t>(archive_entry_size(header), 0));
    std::string refusal = RefusalOf(*header);
    // On a disc two names may lead to the same bytes, which is no link: each is a file.
    const auto link = HardLinkOf(*header);
    const bool isOnDisc = (archive_format(handle.get()) & ARCHIVE_FORMAT_BASE_MASK) == ARCHIVE_FORMAT_ISO9660;
    if (const auto shared = link && isOnDisc ? headers.find(*link) : headers.end(); shared != headers.end()) {
        entry = entries[shared->second];
        size = members[shared->second].size;
        refusal.clear();
    } else if (!isDirectory) {
        headers[*name] = members.size();
    }
    ArchiveMember member{ReadMemberName(*name), isDirectory ? 0 : size, 0, TimeOf(*header), false};
    if (!isDirectory)
        TakeForFile(member.name);
    if (member.name.refusal.empty())
        member.name.refusal = refusal;
    // The archive does not tell how much of it a member takes.
    member.packedSize = members.empty() ? source.Size() : 0;
    members.push_back(std::move(member));
    entries.push_back(entry);
}

int ContainerReader::List() {
    if (MemoryToUnpack(source) > MostMemory)
        return UnzipCode::NoMemory;
    if (!Begin())
        return source.WantsMemory() ? UnzipCode::NoMemory : UnzipCode::NotAnArchive;
    for (;;) {
        const std::size_t number = next;
        const int result = NextHeader();
        if (result == ARCHIVE_EOF)
            break;
        const bool isEntry = result == ARCHIVE_OK || result == ARCHIVE_WARN;
        const bool isKnown = archive_format(handle.get()) != 0;
        if (!isEntry && members.empty())
            return isKnown ? FailedAt(number, CodeOfFailure(*handle, source)) : UnzipCode::NotAnArchive;
        hasUnreadableRecords = hasUnreadableRecords || result != ARCHIVE_OK;
        if (!isEntry || members.size() == MaxMembers) {
            hasUnreadableRecords = true;
            FailedAt(number, isEntry ? UnzipCode::BadArchive : CodeOfFailure(*handle, source));
            break;
        }
        AddMember(number);
    }
    // Bytes that are all 0 would do for an empty one.
    const bool isTar = (archive_format(handle.get()) & ARCHIVE_FORMAT_BASE_MASK) == ARCHIVE_FORMAT_TAR;
    if (const int code = Check(); code == UnzipCode::Error || code == UnzipCode::NoMemory)
        FailedAt(0, code);
    return members.empty() && isTar ? UnzipCode::NotAnArchive : UnzipCode::Ok;
}

bool ContainerReader::HasEncryptedHeaders() const {
    const char* words = handle ? archive_error_string(handle.get()) : nullptr;
    const bool saysSo = FoldCase(words ? words : "").find("encrypt") != std::string::npos;
    return saysSo || (handle && archive_read_has_encrypted_entries(handle.get()) == 1);
}

int ContainerReader::FailedAt(std::size_t number, int code) {
    deadEnd = number;
    deadEndCode = code;
    return code;
}

std::string ContainerReader::WhyUnreadable(std::size_t member) const {
    const std::size_t number = entries[member].header;
    if (entries[member].isEncrypted || (number < rarMembers.size() && rarMembers[number].isEncrypted))
        return IsEncrypted;
    return entries[member].hasSize || members[member].name.isDirectory ? "" : "The archive does not tell its size.";
}

int ContainerReader::Open(std::size_t member, const std::string& /*password*/) {
    current = member;
    const std::size_t target = entries[member].header;
    if (deadEnd && target >= *deadEnd)
        return deadEndCode;
    if (!handle || next > target) {
        failures += handle ? 0 : 1;
        headersAgain += target;
        if (failures > MaxFailures || headersAgain > MaxHeadersAgain || !Begin())
            return FailedAt(0, UnzipCode::Error);
    }
    while (next <= target) {
        const std::size_t number = next;
        if (const int result = NextHeader(); result != ARCHIVE_OK && result != ARCHIVE_WARN)
            return FailedAt(number, result == ARCHIVE_EOF ? UnzipCode::Error : CodeOfFailure(*handle, source));
    }
    return UnzipCode::Ok;
}

int ContainerReader::Read(const Sink& sink) {
    if (!piece)
        piece = std::make_unique_for_overwrite<std::byte[]>(PieceSize);
    const std::size_t number = entries[current].header;
    const std::uint64_t size = members[current].size;
    const bool hasSum = number < rarMembers.size() && rarMembers[number].crc;
    const std::uint32_t sum = hasSum ? *rarMembers[number].crc : 0;
    std::uint64_t total = 0;
    std::uint32_t crc = 0;
    for (;;) {
        const la_ssize_t count = archive_read_data(handle.get(), piece.get(), PieceSize);
        if (count == 0) {
            const bool isRight = total == size && (!hasSum || crc == sum);
            return isRight ? UnzipCode::Ok : source.HasEnded() ? UnzipCode::Truncated : UnzipCode::Error;
        }
        if (count < 0) {
            int code = CodeOfFailure(*handle, source);
            if (code != UnzipCode::NoMemory && MayBeSound(*handle, size))
                code = UnzipCode::Unsupported;
            if (count == ARCHIVE_FATAL)
                handle.reset();
            return source.HasFailed() ? UnzipCode::Error : code;
        }
        total += static_cast<std::uint64_t>(count);
        crc = hasSum ? libdeflate_crc32(crc, piece.get(), static_cast<std::size_t>(count)) : 0;
        if (total > size)
            return UnzipCode::Error;
        if (const int code = sink(std::span(piece.get(), static_cast<std::size_t>(count))); code != UnzipCode::Ok)
            return code;
    }
}

OpenedArchive OpenAt(const FileSystem& files, const std::string& path, std::uint64_t begin) {
    auto reader = std::make_unique<ContainerReader>(files, path, begin);
    const int code = reader->List();
    if (code != UnzipCode::NotAnArchive && IsOneOfSeveral(reader->Source(), path))
        return {nullptr, UnzipCode::Unsupported, IsOnePart};
    if (code == UnzipCode::Ok)
        return {std::move(reader), code};
    if (code != UnzipCode::NotAnArchive && reader->HasEncryptedHeaders())
        return {nullptr, UnzipCode::Unsupported, std::string(IsEncrypted) + "  " + UnpackElsewhere};
    if (code == UnzipCode::NoMemory)
        return {nullptr, code, std::string(TakesTooMuchMemory) + "  " + UnpackElsewhere};
    return {nullptr, code, code == UnzipCode::Unsupported ? std::string(IsPackedOddly) + "  " + UnpackElsewhere : ""};
}

} // namespace

OpenedArchive OpenContainer(const FileSystem& files, const std::string& path) {
    return OpenAt(files, path, 0);
}

OpenedArchive OpenContainerBehind(std::string_view program, const FileSystem& files, const std::string& path) {
    constexpr int maxTries = 16; // a program that unpacks archives knows their marks
    OpenedArchive best{nullptr, UnzipCode::NotAnArchive};
    std::size_t begin = FindContainer(program, 0);
    for (int i = 0; i < maxTries && begin != std::string_view::npos; ++i, begin = FindContainer(program, begin + 1)) {
        OpenedArchive opened = OpenAt(files, path, begin);
        if (opened.reader && !opened.reader->Members().empty())
            return opened;
        if (!opened.reader && best.explanation.empty())
            best = std::move(opened);
    }
    return best;
}

std::size_t FindContainer(std::string_view program, std::size_t from) {
    const auto marks = {OldRarMark, NewRarMark, SevenZipMark, CabinetMark};
    std::size_t first = std::string_view::npos;
    for (const std::string_view mark : marks)
        first = std::min(first, program.find(mark, from));
    return first;
}

} // namespace korvadex
