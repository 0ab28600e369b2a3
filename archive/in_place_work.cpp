#include "archive/in_place_work.h"

#include "archive/unzip_code.h"
#include "archive/whole_size.h"
#include "archive/zip_library.h"
#include "package/progress.h"

#include <algorithm>
#include <new>

namespace korvadex {

static_assert(UnzipCode::NoMemory == ZipCode::NoMemory);

void InPlaceWork::Plan(std::size_t package, const std::vector<std::string>& paths) {
    // Those before it had no turn.
    std::erase_if(plan, [&](const Planned& each) { return each.package < package; });
    const auto end = std::ranges::find_if(plan, [&](const Planned& each) { return each.package > package; });
    if (!std::ranges::equal(plan.begin(), end, paths.begin(), paths.end(), {}, &Planned::path)) {
        plan.erase(plan.begin(), end);
        for (auto path = paths.rbegin(); path != paths.rend(); ++path)
            plan.push_front({package, *path, nullptr});
    }
    nextPackage = std::max(nextPackage, package + 1);
}

std::unique_ptr<InPlaceJob> InPlaceWork::Begin(const std::string& path) {
    try {
        return kind.begin(context, path);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

// Enough for all processors while the files before them are flushed.
void InPlaceWork::BeginAhead() {
    constexpr std::size_t maxJobs = 256;
    constexpr std::size_t maxForeseen = 2; // at once: each takes a walk, and most may have nothing to be done
    const std::size_t lastForeseen = std::min(packageCount, nextPackage + maxForeseen);
    std::uint64_t bytes = 0;
    for (std::size_t i = 0; i < maxJobs && bytes < MaxWholeSize; ++i) {
        for (; i == plan.size() && nextPackage < lastForeseen; ++nextPackage)
            for (std::string& path : foresee(nextPackage))
                plan.push_back({nextPackage, std::move(path), nullptr});
        if (i == plan.size())
            return;
        if (!plan[i].job)
            plan[i].job = Begin(plan[i].path);
        if (!plan[i].job)
            return; // those before it hold what it needs, and it begins in its turn
        bytes += plan[i].job->Bytes();
    }
}

std::vector<FileFailure> InPlaceWork::Take(std::size_t package, const std::vector<std::string>& paths,
                                           const std::function<void()>& afterEach) {
    std::vector<FileFailure> failures;
    ReplaceBatch batch(context);
    Plan(package, paths);
    for (const std::string& path : paths) {
        BeginAhead();
        auto job = std::move(plan.front().job);
        plan.pop_front();
        const auto now = context.files.Info(path);
        if (job && (!now || *now != job->seen)) // what was read is no longer what is there
            job = Begin(path);
        if (const Problem problem = job ? job->Finish(context, batch) : Problem{UnzipCode::NoMemory, NoMemoryText};
            problem.code != 0)
            failures.push_back({path, kind.describe(path, problem)});
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
        failures.push_back({failed.path, kind.describe(failed.path, {kind.writeFault, DescribeFault(failed)})});
    return failures;
}

} // namespace korvadex
