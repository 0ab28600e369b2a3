#include "archive/inflaters.h"

#include "archive/unzip_code.h"

#include <libdeflate.h>
#include <system_error>

namespace korvadex {

namespace {

// Waking a thread costs more than a member of this size.
constexpr std::size_t SmallSize = 64 * 1024;

} // namespace

void Inflaters::DecompressorFreer::operator()(libdeflate_decompressor* decompressor) const {
    libdeflate_free_decompressor(decompressor);
}

Inflaters::Inflaters(unsigned threadCount) {
    threads.reserve(threadCount);
    try {
        for (unsigned i = 0; i < threadCount; ++i)
            threads.emplace_back([this] { Work(); });
    } catch (const std::system_error&) {
        // The system has no more of them: those that there are do the work, or Start does it.
    }
}

Inflaters::~Inflaters() {
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
        waiting.clear();
    }
    begun.notify_all();
    for (auto& thread : threads)
        thread.join();
}

int Inflaters::Inflate(const InflateJob& job, Decompressor& decompressor) {
    if (!job.isStored) {
        if (!decompressor)
            decompressor.reset(libdeflate_alloc_decompressor());
        if (!decompressor)
            return UnzipCode::NoMemory;
        // Without a place for the actual size the library itself wants exactly the promised one.
        if (libdeflate_deflate_decompress(decompressor.get(), job.buffer.get(), job.packedSize,
                                          job.buffer.get() + job.packedSize, job.size, nullptr) != LIBDEFLATE_SUCCESS)
            return UnzipCode::Error;
    }
    const auto bytes = job.Unpacked();
    return libdeflate_crc32(0, bytes.data(), bytes.size()) == job.crc ? UnzipCode::Ok : UnzipCode::Error;
}

void Inflaters::Start(InflateJob& job) {
    if (threads.empty() || job.size < SmallSize) {
        job.code = Inflate(job, ownDecompressor);
        job.isDone = true;
        return;
    }
    {
        const std::lock_guard lock(mutex);
        waiting.push_back(&job);
    }
    begun.notify_one();
}

void Inflaters::Wait(InflateJob& job) {
    std::unique_lock lock(mutex);
    finished.wait(lock, [&] { return job.isDone; });
}

void Inflaters::Work() {
    Decompressor decompressor;
    std::unique_lock lock(mutex);
    for (;;) {
        begun.wait(lock, [&] { return isEnding || !waiting.empty(); });
        if (isEnding)
            return;
        InflateJob& job = *waiting.front();
        waiting.pop_front();
        lock.unlock();
        const int code = Inflate(job, decompressor);
        lock.lock();
        job.code = code;
        job.isDone = true;
        finished.notify_one();
    }
}

} // namespace korvadex
