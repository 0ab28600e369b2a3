// Members of an archive unpacked ahead of their turn, by the processors that would otherwise idle while files are
// written.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <span>
#include <thread>
#include <vector>

struct libdeflate_decompressor;

namespace korvadex {

// One member in memory: its packed bytes and, behind them in the same buffer, room for the unpacked ones.
struct InflateJob {
    std::uint64_t index = 0; // of the member
    std::unique_ptr<std::byte[]> buffer;
    std::size_t capacity = 0;
    std::size_t packedSize = 0, size = 0;
    std::uint32_t crc = 0;
    bool isStored = false; // the packed bytes are the unpacked ones
    int code = 0;          // the outcome, an Info-ZIP code
    bool isDone = false;

    std::span<const std::byte> Unpacked() const { return {buffer.get() + (isStored ? 0 : packedSize), size}; }
};

// The threads see nothing of the program but the jobs given to them. Without threads Start does the work itself.
class Inflaters {
  public:
    explicit Inflaters(unsigned threadCount);
    ~Inflaters(); // jobs that no one has begun are dropped
    Inflaters(const Inflaters&) = delete;
    Inflaters& operator=(const Inflaters&) = delete;

    // The job must stay where it is until Wait has returned, or this object is gone.
    void Start(InflateJob& job);
    void Wait(InflateJob& job);

  private:
    struct DecompressorFreer {
        void operator()(libdeflate_decompressor* decompressor) const;
    };
    using Decompressor = std::unique_ptr<libdeflate_decompressor, DecompressorFreer>;

    static int Inflate(const InflateJob& job, Decompressor& decompressor);
    void Work();

    std::mutex mutex; // guards what follows, and isDone of each job
    std::condition_variable begun, finished;
    std::deque<InflateJob*> waiting;
    bool isEnding = false;
    Decompressor ownDecompressor;
    std::vector<std::thread> threads;
};

} // namespace korvadex
