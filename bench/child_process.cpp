#include "bench/child_process.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace korvadex::bench {

Measure MeasureWork(const std::function<bool()>& work) {
    // What earlier work left to be written, or shares with the child page by page, shall not disturb this one.
    sync();
    malloc_trim(0);
    std::fflush(nullptr);
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        int code = 1;
        try {
            code = work() ? 0 : 1;
        } catch (const std::exception& failure) {
            std::fprintf(stderr, "%s\n", failure.what());
        }
        std::fflush(nullptr);
        _exit(code);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) != child)
        return {};
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    return {time.count(), static_cast<double>(usage.ru_maxrss) * 1024 / 1e6,
            WIFEXITED(status) && WEXITSTATUS(status) == 0};
}

Measure MeasureTool(const std::vector<std::string>& command) {
    return MeasureWork([&command] {
        std::vector<char*> arguments;
        for (const std::string& argument : command)
            arguments.push_back(const_cast<char*>(argument.c_str()));
        arguments.push_back(nullptr);
        dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
        execvp(arguments[0], arguments.data());
        std::perror(arguments[0]);
        return false;
    });
}

void Turns::Add(const Measure& measure) {
    seconds.push_back(measure.seconds);
    peakMega = std::max(peakMega, measure.peakMega);
}

double Turns::Median() const {
    std::vector<double> sorted = seconds;
    std::sort(sorted.begin(), sorted.end());
    return sorted[sorted.size() / 2];
}

std::function<Measure()> Ours(std::function<bool()> work) {
    return [work] { return MeasureWork(work); };
}

std::function<Measure()> Tool(std::vector<std::string> command) {
    return [command] { return MeasureTool(command); };
}

std::string TakeTurns(const Work& work, std::vector<Turns>& turns) {
    turns.resize(work.contenders.size());
    for (std::size_t i = 0; i < work.contenders.size(); ++i) {
        work.prepare();
        const Measure measure = work.contenders[i].run();
        const bool isOursFirst = i == 0 && turns[0].seconds.empty();
        if (!measure.isGood || (isOursFirst && !work.isDone()))
            return work.contenders[i].name;
        turns[i].Add(measure);
    }
    return "";
}

} // namespace korvadex::bench
