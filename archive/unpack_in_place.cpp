#include "archive/in_place_work.h"
#include "archive/inflaters.h"
#include "archive/mod_unzip.h"
#include "archive/packed_member.h"
#include "platform/windows_path.h"
#include "platform/workers.h"

namespace korvadex {

namespace {

std::string Describe(const std::string& path, const Problem& problem) {
    const std::string code = " (code " + std::to_string(problem.code) + ")";
    if (problem.cause.empty())
        return "There was a problem unzipping file " + path + ".  It may be corrupt." + code;
    return "There was a problem unzipping file " + path + "." + code + "  (" + problem.cause + ")";
}

Problem ProblemOf(const Status& status) {
    return {UnzipCode::DiskFull, DescribeFault(status)};
}

Problem ProblemOf(int code) {
    return {code, code == UnzipCode::NoMemory ? NoMemoryText : ""};
}

// What is unpacked goes into the directory.
UnpackReport UnzipOne(CommandContext& context, const std::string& path, const std::string& directory, bool isTest) {
    modUnzip unzip;
    unzip.uTestZip = isTest ? 1 : 0;
    unzip.uHonorDirectories = 1;
    unzip.uOverwriteFiles = 1;
    unzip.uPasswordAsked = 1; // nothing is packed with a password, so none is asked for
    unzip.uZipFileName = path;
    unzip.uExtractDir = directory;
    return unzip.UnzipArchive(context);
}

// Through the unzip library. No problem when the unpacked file waits in the batch.
Problem Unpack(CommandContext& context, const std::string& path, ReplaceBatch& batch) {
    const auto seen = context.files.Info(path);
    if (!seen || !ReadPackedMember(context.files, path))
        return {UnzipCode::NotAnArchive};
    const auto directory = batch.DirectoryFor(path);
    if (!directory)
        return ProblemOf(directory.status());
    // What is unpacked is checked on the way, so that a test before would only do the work twice.
    const UnpackReport report = UnzipOne(context, path, *directory, false);
    Problem problem{report.code};
    if (report.code == UnzipCode::Ok) {
        if (const Status added = batch.Add(*directory, path, *seen); !added)
            problem = ProblemOf(added);
    } else if (report.code == UnzipCode::DiskFull) {
        problem.cause = report.refused.empty() ? DescribeFault(FileFault::DiskFull) : report.refused.front().reason;
    } else {
        problem = ProblemOf(report.code);
    }
    if (problem.code != UnzipCode::Ok)
        batch.Drop(*directory, path);
    return problem;
}

// A packed file that is unpacked in memory while others are written; or, when that cannot be or it is none at all, by
// the unzip library in its turn.
class Unpacking : public InPlaceJob {
  public:
    Unpacking(const FileSystem& files, const std::string& filePath, Inflaters& workers);
    ~Unpacking() override {
        if (isAhead)
            inflaters.Wait(job); // its buffer must not go while a thread works on it
    }
    std::uint64_t Bytes() const override { return job.capacity; }
    Problem Finish(CommandContext& context, ReplaceBatch& batch) override {
        const Problem problem = isAhead ? FinishAhead(context, batch) : Unpack(context, path, batch);
        if (problem.code != UnzipCode::NotAnArchive || !seen)
            return problem.code == UnzipCode::NotAnArchive ? Problem{} : problem;
        const auto read = ReadLikeArchive(context.files, path);
        return read || read.fault() == FileFault::NotFound ? Problem{} // it is not packed
                                                           : Problem{problem.code, DescribeFault(read.status())};
    }

  private:
    Problem FinishAhead(CommandContext& context, ReplaceBatch& batch);

    Inflaters& inflaters;
    bool isAhead = false;
    InflateJob job;
};

Unpacking::Unpacking(const FileSystem& files, const std::string& filePath, Inflaters& workers)
    : InPlaceJob(files, filePath), inflaters(workers) {
    const auto member = ReadPackedMember(files, path);
    if (!seen || !member || !member->FitsInOnePiece())
        return;
    job.packedSize = static_cast<std::size_t>(member->packedSize);
    job.size = static_cast<std::size_t>(member->size);
    job.crc = member->crc;
    job.isStored = member->IsStored();
    job.capacity = job.packedSize + job.size;
    job.buffer = std::make_unique_for_overwrite<std::byte[]>(job.capacity);
    isAhead = ReadPackedBytes(files, path, std::span(job.buffer.get(), job.packedSize));
    if (isAhead)
        inflaters.Start(job);
}

Problem Unpacking::FinishAhead(CommandContext& context, ReplaceBatch& batch) {
    inflaters.Wait(job);
    if (job.code != UnzipCode::Ok)
        return ProblemOf(job.code);
    const auto directory = batch.DirectoryFor(path);
    if (!directory)
        return ProblemOf(directory.status());
    Status status = WriteNew(context.files, *directory + LastPathComponent(path), job.Unpacked());
    if (status)
        status = batch.Add(*directory, path, *seen);
    if (status)
        return {};
    batch.Drop(*directory, path);
    return ProblemOf(status);
}

} // namespace

int UnzipFileInPlace(CommandContext& context, const std::string& path, bool testOnly) {
    if (path.empty())
        return UnzipCode::Ok;
    if (testOnly)
        return ReadPackedMember(context.files, path) ? UnzipOne(context, path, "", true).code : UnzipCode::NotAnArchive;
    ReplaceBatch batch(context);
    Problem problem = Unpack(context, path, batch);
    batch.Commit();
    if (!batch.Failures().empty())
        problem = ProblemOf(batch.Failures().front());
    // A file that fails the test of an archive is left alone without a word; one that could not be written is not.
    if (problem.code == UnzipCode::DiskFull)
        context.user.Tell(Describe(path, problem), MessageIcon::Exclamation);
    return problem.code;
}

std::vector<FileFailure> UnzipFilesInPlace(CommandContext& context, const std::vector<std::string>& paths,
                                           const std::function<void()>& afterEach) {
    return InPlaceWork(context, MakeUnpacking()).Take(0, paths, afterEach);
}

InPlaceKind MakeUnpacking() {
    const unsigned threads = ProcessorCount() > 1 ? ProcessorCount() : 0;
    return {[inflaters = std::make_shared<Inflaters>(threads)](CommandContext& context, const std::string& path) {
                return std::make_unique<Unpacking>(context.files, path, *inflaters);
            },
            UnzipCode::DiskFull, Describe};
}

} // namespace korvadex
