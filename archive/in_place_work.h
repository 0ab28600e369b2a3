// Many files rewritten in place: a few are worked on ahead of their turn, and all are put in their places together.
#pragma once

#include "archive/in_place.h"
#include "archive/replace_batch.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace korvadex {

// Why a file was not packed or unpacked: the code of the library, and the cause where it is known.
struct Problem {
    int code = 0; // 0: there is none
    std::string cause = {};
};

// A file that is being worked on, in threads of its own where that helps.
class InPlaceJob {
  public:
    InPlaceJob() = default;
    virtual ~InPlaceJob() = default;
    InPlaceJob(const InPlaceJob&) = delete;
    InPlaceJob& operator=(const InPlaceJob&) = delete;

    // What it holds in memory.
    virtual std::uint64_t Bytes() const = 0;
    // Ends the work. No problem when what takes the file's place waits in the batch, or nothing was to be done.
    virtual Problem Finish(CommandContext& context, ReplaceBatch& batch) = 0;
};

struct InPlaceWork {
    std::function<std::unique_ptr<InPlaceJob>(const std::string& path)> begin;
    int writeFault; // the code of a file that could not take its place
    std::string (*describe)(const std::string& path, const Problem& problem); // for the user
};

unsigned ProcessorCount();

// Begins the files in order and finishes them in order, then calls afterEach. What was not done, and why.
std::vector<FileFailure> WorkThrough(CommandContext& context, const std::vector<std::string>& paths,
                                     const InPlaceWork& work, const std::function<void()>& afterEach);

} // namespace korvadex
