#include "archive/in_place.h"

#include "archive/deflated_file.h"
#include "archive/exchange.h"
#include "archive/inflaters.h"
#include "archive/mod_unzip.h"
#include "archive/mod_zip.h"
#include "archive/whole_size.h"
#include "archive/zip_bytes.h"
#include "package/file_primitives.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <array>
#include <deque>
#include <future>
#include <memory>
#include <optional>
#include <span>
#include <thread>
#include <utility>

namespace korvadex {

namespace {

constexpr int BestZipLevel = 9;

unsigned ProcessorCount() {
    return std::clamp(std::thread::hardware_concurrency(), 1u, 16u);
}

// A file that was not packed or unpacked: the code of the library, and the cause where it is known.
struct Problem {
    int code = 0;
    std::string cause;
};

std::string UnzipProblem(const std::string& path, const Problem& problem) {
    const std::string code = " (code " + std::to_string(problem.code) + ")";
    if (problem.cause.empty())
        return "There was a problem unzipping file " + path + ".  It may be corrupt." + code;
    return "There was a problem unzipping file " + path + "." + code + "  (" + problem.cause + ")";
}

std::string ZipProblem(const std::string& path, const Problem& problem) {
    return "There was a problem zipping file " + path + ". (code " + std::to_string(problem.code) + ")  (" +
           problem.cause + ")";
}

modUnzip InPlaceUnzip(const std::string& path) {
    modUnzip unzip;
    unzip.uPromptOverwrite = 0;
    unzip.uOverwriteFiles = 1;
    unzip.uDisplayComment = 0;
    unzip.uExtractList = 0;
    unzip.uHonorDirectories = 1;
    unzip.uPasswordAsked = 1; // nothing is packed with a password, so none is asked for
    unzip.uZipFileName = path;
    return unzip;
}

Problem ProblemOf(const Status& status) {
    return {UnzipCode::DiskFull, DescribeFault(status.fault)};
}

// Code 0 when the unpacked file waits in the exchange.
Problem Unpack(CommandContext& context, const std::string& path, Exchange& exchange) {
    const auto seen = context.files.Info(path);
    if (!seen || !ReadPackedMember(context.files, path))
        return {UnzipCode::NotAnArchive, ""};
    const auto directory = exchange.DirectoryFor(path);
    if (!directory)
        return ProblemOf(directory.status());
    // What is unpacked is checked on the way, so that a test before would only do the work twice.
    modUnzip unzip = InPlaceUnzip(path);
    unzip.uExtractDir = *directory;
    const UnpackReport report = unzip.UnzipArchive(context);
    Problem problem{report.code, ""};
    if (problem.code == UnzipCode::Ok) {
        if (const Status added = exchange.Add(*directory, path, *seen); !added)
            problem = ProblemOf(added);
    } else if (problem.code == UnzipCode::DiskFull) {
        problem.cause = report.refused.empty() ? DescribeFault(FileFault::DiskFull) : report.refused.front().reason;
    }
    if (problem.code != UnzipCode::Ok)
        exchange.Drop(*directory, path);
    return problem;
}

// A packed file that is unpacked while others are written.
struct Unpacking {
    Unpacking(std::string filePath, Inflaters& workers) : path(std::move(filePath)), inflaters(workers) {}
    Unpacking(const Unpacking&) = delete;
    Unpacking& operator=(const Unpacking&) = delete;
    ~Unpacking() {
        if (isAhead)
            inflaters.Wait(job); // its buffer must not go while a thread works on it
    }

    const std::string path;
    Inflaters& inflaters;
    FileInfo seen;        // as it was before it was read
    bool isAhead = false; // otherwise the unzip library takes it, when it is its turn
    InflateJob job;
};

bool ReadFully(InputFile& file, std::span<std::byte> bytes) {
    const auto count = file.Read(bytes);
    return count && *count == bytes.size();
}

// The packed bytes, which stand behind the header, its name and its further fields.
bool ReadPacked(const FileSystem& files, const std::string& path, InflateJob& job) {
    const auto file = files.OpenForReading(path);
    std::array<std::byte, ZipRecord::LocalSize> header;
    if (!file || !ReadFully(**file, header))
        return false;
    const auto field = [&](std::size_t at) {
        return std::to_integer<std::size_t>(header[at]) | std::to_integer<std::size_t>(header[at + 1]) << 8;
    };
    std::vector<std::byte> rest(field(26) + field(28));
    return ReadFully(**file, rest) && ReadFully(**file, std::span(job.buffer.get(), job.packedSize));
}

std::unique_ptr<Unpacking> BeginUnpacking(const FileSystem& files, const std::string& path, Inflaters& inflaters) {
    constexpr std::uint32_t stored = 0, deflated = 8;
    auto unpacking = std::make_unique<Unpacking>(path, inflaters);
    const auto info = files.Info(path);
    const auto member = ReadPackedMember(files, path);
    const bool isUsual =
        info && member && !member->isEncrypted &&
        (member->method == deflated || (member->method == stored && member->packedSize == member->size)) &&
        member->size + member->packedSize <= MaxWholeSize;
    if (!isUsual)
        return unpacking;
    unpacking->seen = *info;
    InflateJob& job = unpacking->job;
    job.packedSize = static_cast<std::size_t>(member->packedSize);
    job.size = static_cast<std::size_t>(member->size);
    job.crc = member->crc;
    job.isStored = member->method == stored;
    job.capacity = job.packedSize + job.size;
    job.buffer = std::make_unique_for_overwrite<std::byte[]>(job.capacity);
    unpacking->isAhead = ReadPacked(files, path, job);
    if (unpacking->isAhead)
        inflaters.Start(job);
    return unpacking;
}

Status WriteNew(FileSystem& files, const std::string& path, std::span<const std::byte> bytes) {
    // In small pieces, which the system takes faster than one large one.
    constexpr std::size_t pieceSize = 128 * 1024;
    auto file = files.CreateNew(path);
    Status status = file.status();
    while (status && !bytes.empty()) {
        const auto piece = bytes.first(std::min(bytes.size(), pieceSize));
        status = (*file)->Write(piece);
        bytes = bytes.subspan(piece.size());
    }
    return status ? (*file)->Close(false) : status;
}

Problem FinishUnpacking(CommandContext& context, Unpacking& unpacking, Exchange& exchange) {
    if (!unpacking.isAhead)
        return Unpack(context, unpacking.path, exchange);
    unpacking.inflaters.Wait(unpacking.job);
    if (unpacking.job.code != UnzipCode::Ok)
        return {unpacking.job.code, ""};
    const auto directory = exchange.DirectoryFor(unpacking.path);
    if (!directory)
        return ProblemOf(directory.status());
    Status status = WriteNew(context.files, *directory + LastPathComponent(unpacking.path), unpacking.job.Unpacked());
    if (status)
        status = exchange.Add(*directory, unpacking.path, unpacking.seen);
    if (status)
        return {};
    exchange.Drop(*directory, unpacking.path);
    return ProblemOf(status);
}

// Goes through the paths in order, a few of them ahead of their turn and not too many bytes at once.
template<class Job>
void WorkAhead(const std::vector<std::string>& paths, const std::function<Job(const std::string&)>& begin,
               const std::function<std::uint64_t(const Job&)>& bytesOf, const std::function<void(Job&)>& finish) {
    constexpr std::uint64_t maxBytes = 128u << 20;
    const std::size_t maxJobs = ProcessorCount() + 1;
    std::deque<Job> ahead;
    std::uint64_t bytes = 0;
    auto next = paths.begin();
    for (std::size_t done = 0; done < paths.size(); ++done) {
        while (next != paths.end() && (ahead.empty() || (ahead.size() < maxJobs && bytes < maxBytes))) {
            ahead.push_back(begin(*next++));
            bytes += bytesOf(ahead.back());
        }
        bytes -= bytesOf(ahead.front());
        finish(ahead.front());
        ahead.pop_front();
    }
}

// A file on its way into an archive.
struct Packing {
    std::string path;
    std::unique_ptr<DeflatedFile> contents; // none when it is packed already, or is packed while it is written
    std::future<void> packed;
    bool isPackedAlready = false;
    FileInfo seen; // as it was before it was read
    std::uint64_t size = 0;
};

Packing BeginPacking(CommandContext& context, const std::string& path) {
    Packing packing;
    packing.path = path;
    packing.isPackedAlready = path.empty() || UnzipFileInPlace(context, path, true) == UnzipCode::Ok;
    const auto info = context.files.Info(path);
    if (packing.isPackedAlready || !info || info->kind != EntryKind::File)
        return packing;
    packing.seen = *info;
    auto contents = std::make_unique<DeflatedFile>(context.files, path);
    if (!contents->Read(*info) || !contents->IsRead())
        return packing;
    packing.size = info->size;
    packing.contents = std::move(contents);
    packing.packed = std::async(std::launch::async, [file = packing.contents.get()] { file->Pack(BestZipLevel); });
    return packing;
}

std::string CauseOf(const CommandContext& context, const std::string& directory, int zipCode, std::uint64_t size) {
    const auto space = context.files.FreeSpace(directory);
    switch (zipCode) {
    case ZipCode::NoMemory:
        return "there was not enough memory";
    case ZipCode::TooBig:
        return "it is larger than 4 GB";
    case ZipCode::ReadError:
    case ZipCode::CannotOpen:
        return "it could not be read";
    default:
        return space && *space < size ? DescribeFault(FileFault::DiskFull) : "the archive could not be written";
    }
}

// Code 0 when the packed file waits in the exchange, or nothing was to be done.
Problem FinishPacking(CommandContext& context, Packing& packing, Exchange& exchange) {
    if (packing.isPackedAlready)
        return {};
    if (packing.packed.valid())
        packing.packed.wait();
    const auto directory = exchange.DirectoryFor(packing.path);
    if (!directory)
        return {ZipCode::CannotCreate, DescribeFault(directory.fault())};
    modZip zip;
    zip.zJunkDir = 1;
    zip.zLevel = '0' + BestZipLevel;
    zip.zNumberFiles = 1;
    zip.zZipNames[0] = packing.path;
    zip.zPrepared = packing.contents.get();
    zip.zZipFileName = *directory + LastPathComponent(packing.path);
    Problem problem{zip.ZipArchive(context), ""};
    if (problem.code != ZipCode::Ok)
        problem.cause = CauseOf(context, *directory, problem.code, packing.seen.size);
    else if (!ReadPackedMember(context.files, zip.zZipFileName))
        problem = {ZipCode::WriteError, "the archive could not be written"};
    else if (const Status added = exchange.Add(*directory, packing.path, packing.seen); !added)
        problem = {ZipCode::WriteError, DescribeFault(added.fault)};
    if (problem.code != ZipCode::Ok)
        exchange.Drop(*directory, packing.path);
    return problem;
}

} // namespace

int UnzipFileInPlace(CommandContext& context, const std::string& path, bool testOnly) {
    if (path.empty())
        return UnzipCode::Ok;
    if (testOnly) {
        if (!ReadPackedMember(context.files, path))
            return UnzipCode::NotAnArchive;
        modUnzip unzip = InPlaceUnzip(path);
        unzip.uTestZip = 1;
        return unzip.UnzipArchive(context).code;
    }
    Exchange exchange(context);
    Problem problem = Unpack(context, path, exchange);
    exchange.Commit();
    if (!exchange.Failures().empty())
        problem = ProblemOf(exchange.Failures().front());
    // A file that fails the test of an archive is left alone without a word; one that could not be written is not.
    if (problem.code == UnzipCode::DiskFull)
        context.user.Tell(UnzipProblem(path, problem), MessageIcon::Exclamation);
    return problem.code;
}

void ZipFileInPlace(CommandContext& context, const std::string& path) {
    for (const FileFailure& failure : ZipFilesInPlace(context, {path}, [] {}))
        context.user.Tell(failure.text, MessageIcon::Exclamation);
}

std::vector<FileFailure> UnzipFilesInPlace(CommandContext& context, const std::vector<std::string>& paths,
                                           const std::function<void()>& afterEach) {
    std::vector<FileFailure> failures;
    Exchange exchange(context);
    using Job = std::unique_ptr<Unpacking>;
    Inflaters inflaters(ProcessorCount() > 1 ? ProcessorCount() : 0);
    WorkAhead<Job>(
        paths, [&](const std::string& path) { return BeginUnpacking(context.files, path, inflaters); },
        [](const Job& job) { return job->job.capacity; },
        [&](Job& job) {
            const Problem problem = FinishUnpacking(context, *job, exchange);
            if (problem.code != UnzipCode::Ok && problem.code != UnzipCode::NotAnArchive)
                failures.push_back({job->path, UnzipProblem(job->path, problem)});
            if (exchange.IsFull())
                exchange.Commit();
            afterEach();
        });
    exchange.Commit();
    for (const Status& failed : exchange.Failures())
        failures.push_back({failed.path, UnzipProblem(failed.path, ProblemOf(failed))});
    return failures;
}

std::vector<FileFailure> ZipFilesInPlace(CommandContext& context, const std::vector<std::string>& paths,
                                         const std::function<void()>& afterEach) {
    std::vector<FileFailure> failures;
    Exchange exchange(context);
    WorkAhead<Packing>(
        paths, [&](const std::string& path) { return BeginPacking(context, path); },
        [](const Packing& packing) { return packing.size; },
        [&](Packing& packing) {
            const Problem problem = FinishPacking(context, packing, exchange);
            if (problem.code != ZipCode::Ok)
                failures.push_back({packing.path, ZipProblem(packing.path, problem)});
            if (exchange.IsFull())
                exchange.Commit();
            afterEach();
        });
    exchange.Commit();
    for (const Status& failed : exchange.Failures())
        failures.push_back({failed.path, ZipProblem(failed.path, {ZipCode::WriteError, DescribeFault(failed.fault)})});
    return failures;
}

} // namespace korvadex
