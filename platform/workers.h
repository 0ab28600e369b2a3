// Threads that do work in the order in which it comes, for as long as a command lasts.
#pragma once

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace korvadex {

inline unsigned ProcessorCount() {
    return std::clamp(std::thread::hardware_concurrency(), 1u, 16u);
}

// Each thread has tools of its own, which it keeps from one task to the next.
template<class Tools>
class Workers {
  public:
    explicit Workers(unsigned count) {
        threads.reserve(count);
        try {
            for (unsigned i = 0; i < count; ++i)
                threads.emplace_back([this] { Work(); });
        } catch (const std::system_error&) {
            // The system has no more of them: those that there are do the work, or Start does it.
        }
    }
    // Drops what no thread has begun.
    ~Workers() {
        {
            const std::lock_guard lock(mutex);
            isEnding = true;
            waiting.clear();
        }
        begun.notify_all();
        for (auto& thread : threads)
            thread.join();
    }
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    // Ready when the task is done, or dropped.
    std::future<void> Start(std::function<void(Tools&)> work) {
        Task task(std::move(work));
        std::future<void> done = task.get_future();
        if (threads.empty()) {
            task(ownTools);
            return done;
        }
        {
            const std::lock_guard lock(mutex);
            waiting.push_back(std::move(task));
        }
        begun.notify_one();
        return done;
    }

    // Does the next task that no thread has begun here. False when there is none.
    bool DoNext() {
        std::unique_lock lock(mutex);
        if (waiting.empty())
            return false;
        Task task = std::move(waiting.front());
        waiting.pop_front();
        lock.unlock();
        task(ownTools);
        return true;
    }

  private:
    using Task = std::packaged_task<void(Tools&)>;

    void Work() {
        Tools tools;
        std::unique_lock lock(mutex);
        for (;;) {
            begun.wait(lock, [&] { return isEnding || !waiting.empty(); });
            if (isEnding)
                return;
            Task task = std::move(waiting.front());
            waiting.pop_front();
            lock.unlock();
            task(tools);
            lock.lock();
        }
    }

    std::mutex mutex; // guards the next three
    std::condition_variable begun;
    std::deque<Task> waiting;
    bool isEnding = false;
    Tools ownTools;
    std::vector<std::thread> threads;
};

} // namespace korvadex
