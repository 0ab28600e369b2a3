// Many files rewritten in place: those that come next are worked on ahead of their turn, and all of a package are put
// in their places together.
#pragma once

#include "archive/in_place.h"
#include "archive/replace_batch.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace korvadex {

// Why a file was not packed or unpacked: the code of the library, and the cause where it is known.
struct Problem {
    int code = 0; // 0: there is none
    std::string cause = {};
};
inline constexpr const char* NoMemoryText = "there was not enough memory";

// A file that is being worked on, by other threads where that helps.
class InPlaceJob {
  public:
    InPlaceJob(const FileSystem& files, std::string filePath) : path(std::move(filePath)) {
        if (const auto info = files.Info(path))
            seen = *info;
    }
    virtual ~InPlaceJob() = default;
    InPlaceJob(const InPlaceJob&) = delete;
    InPlaceJob& operator=(const InPlaceJob&) = delete;

    // What it holds in memory at most.
    virtual std::uint64_t Bytes() const = 0;
    // Ends the work. No problem when what takes the file's place waits in the batch, or nothing was to be done.
    virtual Problem Finish(CommandContext& context, ReplaceBatch& batch) = 0;

    const std::string path;
    std::optional<FileInfo> seen; // as it was before it was read
};

struct InPlaceKind {
    std::function<std::unique_ptr<InPlaceJob>(CommandContext& context, const std::string& path)> begin;
    int writeFault; // the code of a file that could not take its place
    std::string (*describe)(const std::string& path, const Problem& problem); // for the user
};
InPlaceKind MakePacking();
InPlaceKind MakeUnpacking();

class InPlaceWork {
  public:
    // The files of a package that is to come, as they seem to be now.
    using Foresee = std::function<std::vector<std::string>(std::size_t package)>;

    // Packages bear numbers in the order of their turns.
    InPlaceWork(CommandContext& commandContext, InPlaceKind inPlaceKind, std::size_t packages = 0,
                Foresee foreseePackage = {})
        : context(commandContext), kind(std::move(inPlaceKind)), packageCount(packages),
          foresee(std::move(foreseePackage)) {}

    // The turn of a package: finishes its files in order, then puts them in their places; afterEach is called once for
    // each. What was not done, and why.
    std::vector<FileFailure> Take(std::size_t package, const std::vector<std::string>& paths,
                                  const std::function<void()>& afterEach);

  private:
    struct Planned {
        std::size_t package;
        std::string path;
        std::unique_ptr<InPlaceJob> job; // none: not begun
    };

    void Plan(std::size_t package, const std::vector<std::string>& paths);
    void BeginAhead();
    std::unique_ptr<InPlaceJob> Begin(const std::string& path); // none: there is not enough memory

    CommandContext& context;
    const InPlaceKind kind;
    const std::size_t packageCount;
    const Foresee foresee;
    std::size_t nextPackage = 0; // to be foreseen
    std::deque<Planned> plan;
};

} // namespace korvadex
