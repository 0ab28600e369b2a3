#include "archive/member_reader.h"

#include "archive/piece_inflater.h"
#include "archive/unzip_library.h"

#include <algorithm>
#include <thread>
#include <zlib.h>

namespace korvadex {

namespace {

constexpr std::uint64_t MaxWholeSize = 64u << 20;
// Packed and unpacked bytes together, and all that is unpacked ahead: memory stays small whatever the archive.
constexpr std::uint64_t MaxBuffers = 100u << 20;
constexpr std::size_t PieceSize = 1u << 20;
// More than this many would only wait for the disk.
constexpr unsigned MaxThreads = 4;

unsigned ThreadCount(bool readsAhead) {
    const unsigned processors = std::thread::hardware_concurrency();
    return readsAhead && processors > 1 ? std::min(processors, MaxThreads) : 0;
}

std::string NameOfMethod(std::uint16_t method) {
    switch (method) {
    case 1:
        return "shrink";
    case 2:
    case 3:
    case 4:
    case 5:
        return "reduce";
    case 6:
        return "implode";
    case 9:
        return "Deflate64";
    case 12:
        return "bzip2";
    case 14:
        return "LZMA";
    case 93:
        return "Zstandard";
    case 95:
        return "xz";
    case 98:
        return "PPMd";
    default:
        return "number " + std::to_string(method);
    }
}

// Its bytes are checked by what the encryption brings, and unpacked here.
bool IsAuthenticated(const Member& member) {
    const bool isAes = member.encryption == ZIP_EM_AES_128 || member.encryption == ZIP_EM_AES_192 ||
                       member.encryption == ZIP_EM_AES_256;
    return isAes && (member.method == ZIP_CM_DEFLATE || member.method == ZIP_CM_STORE);
}

} // namespace

std::string WhyUnreadable(const Member& member) {
    const bool isEncrypted = member.encryption != ZIP_EM_NONE;
    if (isEncrypted && zip_encryption_method_supported(member.encryption, 0) == 0)
        return "It is encrypted in a way that Korvadex cannot read.";
    const bool isKnown =
        zip_compression_method_supported(member.method, 0) != 0 && (member.hasCrc || IsAuthenticated(member));
    return isKnown ? ""
                   : "It is packed with the method " + NameOfMethod(member.method) + ", which Korvadex cannot unpack.";
}

int UnzipCodeOf(int zipError) {
    switch (zipError) {
    case ZIP_ER_OK:
        return UnzipCode::Ok;
    case ZIP_ER_NOZIP:
    case ZIP_ER_NOENT:
    case ZIP_ER_OPEN:
        return UnzipCode::NotAnArchive;
    case ZIP_ER_MEMORY:
        return UnzipCode::NoMemory;
    case ZIP_ER_EOF:
    case ZIP_ER_SEEK:
        return UnzipCode::Truncated;
    case ZIP_ER_COMPNOTSUPP:
    case ZIP_ER_ENCRNOTSUPP:
    case ZIP_ER_MULTIDISK:
    case ZIP_ER_OPNOTSUPP:
        return UnzipCode::Unsupported;
    case ZIP_ER_NOPASSWD:
    case ZIP_ER_WRONGPASSWD:
        return UnzipCode::BadPassword;
    case ZIP_ER_INCONS:
        return UnzipCode::BadArchive;
    default:
        return UnzipCode::Error;
    }
}

MemberReader::MemberReader(zip_t& openArchive, bool readsAhead)
    : archive(openArchive), maxJobs(ThreadCount(readsAhead) + 2), inflaters(ThreadCount(readsAhead)) {}

bool MemberReader::FitsInOnePiece(const Member& member) {
    return member.encryption == ZIP_EM_NONE && (member.method == ZIP_CM_DEFLATE || member.method == ZIP_CM_STORE) &&
           member.size <= MaxWholeSize && member.compressedSize <= MaxBuffers - member.size;
}

MemberReader::Buffer MemberReader::TakeBuffer(std::size_t size) {
    const auto fitting =
        std::find_if(spare.begin(), spare.end(), [&](const Buffer& buffer) { return buffer.capacity >= size; });
    if (fitting != spare.end()) {
        Buffer buffer = std::move(*fitting);
        spare.erase(fitting);
        return buffer;
    }
    spare.clear(); // all too small; kept, they would pile up
    // A little more where there is room, so that members of about one size share buffers.
    const std::size_t generous = size + size / 8;
    const std::size_t capacity = inUse + generous <= MaxBuffers ? generous : size;
    return {std::make_unique_for_overwrite<std::byte[]>(capacity), capacity};
}

void MemberReader::DropFirst() {
    InflateJob& job = *jobs.front();
    inflaters.Wait(job);
    inUse -= job.capacity;
    spare.push_back({std::move(job.buffer), job.capacity});
    jobs.pop_front();
    isFirstHandedOut = false;
    std::size_t spareBytes = 0;
    for (const auto& buffer : spare)
        spareBytes += buffer.capacity;
    if (inUse + spareBytes > MaxBuffers)
        spare.clear();
}

int MemberReader::FailureOf(const Member& member, zip_file_t* file) const {
    const int code = zip_error_code_zip(file ? zip_file_get_error(file) : zip_get_error(&archive));
    // The old cipher takes one wrong password in 256 for right: then the bytes make no sense.
    const bool isNonsense = code == ZIP_ER_CRC || code == ZIP_ER_ZLIB || code == ZIP_ER_COMPRESSED_DATA;
    if (member.encryption != ZIP_EM_NONE && isNonsense)
        return UnzipCode::BadPassword;
    return UnzipCodeOf(code);
}

int MemberReader::ReadPacked(const Member& member, InflateJob& job) {
    const std::unique_ptr<zip_file_t, FileCloser> file(zip_fopen_index(&archive, member.index, ZIP_FL_COMPRESSED));
    if (!file)
        return FailureOf(member, nullptr);
    const zip_int64_t count = job.packedSize == 0 ? 0 : zip_fread(file.get(), job.buffer.get(), job.packedSize);
    if (count < 0)
        return FailureOf(member, file.get());
    return static_cast<std::size_t>(count) == job.packedSize ? UnzipCode::Ok : UnzipCode::Truncated;
}

bool MemberReader::Begin(const Member& member) {
    if (isFirstHandedOut)
        DropFirst();
    auto job = std::make_unique<InflateJob>();
    job->index = member.index;
    job->packedSize = static_cast<std::size_t>(member.compressedSize);
    job->size = static_cast<std::size_t>(member.size);
    job->crc = member.crc;
    job->isStored = member.method == ZIP_CM_STORE;
    const std::size_t needed = job->packedSize + (job->isStored ? 0 : job->size);
    if (!jobs.empty() && (jobs.size() >= maxJobs || inUse + needed > MaxBuffers))
        return false;

    if (job->isStored && job->packedSize != job->size) {
        job->code = UnzipCode::BadArchive;
    } else {
        Buffer buffer = TakeBuffer(needed);
        job->buffer = std::move(buffer.bytes);
        job->capacity = buffer.capacity;
        inUse += job->capacity;
        job->code = ReadPacked(member, *job);
    }
    job->isDone = job->code != UnzipCode::Ok;
    jobs.push_back(std::move(job));
    if (!jobs.back()->isDone)
        inflaters.Start(*jobs.back());
    return true;
}

int MemberReader::ReadWhole(const Member& member, std::span<const std::byte>& bytes) {
    while (!jobs.empty() && (isFirstHandedOut || jobs.front()->index != member.index))
        DropFirst();
    if (jobs.empty())
        Begin(member);
    InflateJob& job = *jobs.front();
    inflaters.Wait(job);
    isFirstHandedOut = true;
    if (job.code == UnzipCode::Ok)
        bytes = job.Unpacked();
    return job.code;
}

int MemberReader::Open(const Member& member, const std::string& password) {
    // The library compares a CRC-32 where there may be none, and not the authentication of what it has unpacked: what
    // it gives packed it has authenticated to the last byte.
    const zip_flags_t flags = IsAuthenticated(member) ? ZIP_FL_COMPRESSED : 0;
    opened.reset(member.encryption == ZIP_EM_NONE
                     ? zip_fopen_index(&archive, member.index, 0)
                     : zip_fopen_index_encrypted(&archive, member.index, flags, password.c_str()));
    return opened ? UnzipCode::Ok : FailureOf(member, nullptr);
}

int MemberReader::Stream(const Member& member, const Sink& sink) {
    const auto file = std::move(opened);
    if (!piece)
        piece = std::make_unique_for_overwrite<std::byte[]>(PieceSize);
    if (IsAuthenticated(member))
        return StreamAuthenticated(member, file.get(), sink);
    std::uint64_t total = 0;
    for (;;) {
        // The read after the last byte is the one that compares the CRC-32.
        const zip_int64_t count = zip_fread(file.get(), piece.get(), PieceSize);
        if (count < 0)
            return FailureOf(member, file.get());
        if (count == 0)
            return total == member.size ? UnzipCode::Ok : UnzipCode::Error;
        total += static_cast<std::uint64_t>(count);
        if (total > member.size)
            return UnzipCode::Error;
        if (const int code = sink(std::span(piece.get(), static_cast<std::size_t>(count))); code != UnzipCode::Ok)
            return code;
    }
}

int MemberReader::StreamAuthenticated(const Member& member, zip_file_t* file, const Sink& sink) {
    std::uint64_t total = 0;
    std::uint32_t crc = 0;
    const auto take = [&](std::span<const std::byte> bytes) {
        total += bytes.size();
        crc = static_cast<std::uint32_t>(crc32_z(crc, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
        return total > member.size ? UnzipCode::Error : sink(bytes);
    };
    PieceInflater inflater;
    for (;;) {
        // The read after the last byte is the one that compares the authentication code.
        const zip_int64_t count = zip_fread(file, piece.get(), PieceSize);
        if (count < 0) // the password was right, as far as its two check bytes tell
            return zip_error_code_zip(zip_file_get_error(file)) == ZIP_ER_CRC ? UnzipCode::Error
                                                                              : FailureOf(member, file);
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

} // namespace korvadex
