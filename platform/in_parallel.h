// Waiting for many things at the same time, such as for a disk that confirms one file after another.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <system_error>
#include <thread>
#include <vector>

namespace korvadex {

// Calls routine(i) once for each i below count, on several threads; returns when all calls have.
template<class Routine>
void ForEachTogether(std::size_t count, const Routine& routine) {
    constexpr std::size_t maxThreads = 16;
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        for (std::size_t i = next++; i < count; i = next++)
            routine(i);
    };
    std::vector<std::thread> threads;
    try {
        while (threads.size() + 1 < std::min(maxThreads, count))
            threads.emplace_back(work);
    } catch (const std::system_error&) {
        // The system has no more of them: those that there are do the work.
    }
    work();
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace korvadex
