#include "archive/in_place_work.h"

#include "package/progress.h"

#include <algorithm>
#include <deque>
#include <thread>

namespace korvadex {

unsigned ProcessorCount() {
    return std::clamp(std::thread::hardware_concurrency(), 1u, 16u);
}

std::vector<FileFailure> WorkThrough(CommandContext& context, const std::vector<std::string>& paths,
                                     const InPlaceWork& work, const std::function<void()>& afterEach) {
    constexpr std::uint64_t maxBytes = 128u << 20;
    const std::size_t maxJobs = ProcessorCount() + 1;
    std::vector<FileFailure> failures;
    ReplaceBatch batch(context);
    std::deque<std::unique_ptr<InPlaceJob>> ahead;
    std::uint64_t bytes = 0;
    auto next = paths.begin();
    for (const std::string& path : paths) {
        while (next != paths.end() && (ahead.empty() || (ahead.size() < maxJobs && bytes < maxBytes))) {
            ahead.push_back(work.begin(*next++));
            bytes += ahead.back()->Bytes();
        }
        bytes -= ahead.front()->Bytes();
        if (const Problem problem = ahead.front()->Finish(context, batch); problem.code != 0)
            failures.push_back({path, work.describe(path, problem)});
        ahead.pop_front();
        if (batch.IsFull())
            batch.Commit();
        try {
            afterEach();
        } catch (const Stopped&) {
            batch.Commit();
            throw;
        }
    }
    batch.Commit();
    for (const Status& failed : batch.Failures())
        failures.push_back({failed.path, work.describe(failed.path, {work.writeFault, DescribeFault(failed)})});
    return failures;
}

} // namespace korvadex
