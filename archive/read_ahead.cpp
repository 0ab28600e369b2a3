#include "archive/read_ahead.h"

#include "archive/unzip_code.h"
#include "archive/whole_size.h"

#include <algorithm>
#include <thread>

namespace korvadex {

namespace {

// More than this many would only wait for the disk.
constexpr unsigned MaxThreads = 4;

unsigned ThreadCount(bool onAllProcessors) {
    const unsigned processors = std::thread::hardware_concurrency();
    return onAllProcessors && processors > 1 ? std::min(processors, MaxThreads) : 0;
}

} // namespace

ReadAhead::ReadAhead(zip_t& openArchive, bool onAllProcessors)
    : archive(openArchive), maxJobs(ThreadCount(onAllProcessors) + 2), inflaters(ThreadCount(onAllProcessors)) {}

ReadAhead::Buffer ReadAhead::TakeBuffer(std::size_t size) {
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

void ReadAhead::DropFirst() {
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

int ReadAhead::ReadPacked(const ZipMember& member, InflateJob& job) {
    const std::unique_ptr<zip_file_t, ZipFileCloser> file(zip_fopen_index(&archive, member.index, ZIP_FL_COMPRESSED));
    if (!file)
        return FailureOf(member, archive, nullptr);
    const zip_int64_t count = job.packedSize == 0 ? 0 : zip_fread(file.get(), job.buffer.get(), job.packedSize);
    if (count < 0)
        return FailureOf(member, archive, file.get());
    return static_cast<std::size_t>(count) == job.packedSize ? UnzipCode::Ok : UnzipCode::Truncated;
}

bool ReadAhead::Begin(const ZipMember& member) {
    if (isFirstHandedOut)
        DropFirst();
    auto job = std::make_unique<InflateJob>();
    job->index = member.index;
    job->packedSize = static_cast<std::size_t>(member.packedSize);
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

int ReadAhead::Take(const ZipMember& member, std::span<const std::byte>& bytes) {
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

} // namespace korvadex
