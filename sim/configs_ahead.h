// Configuration files, read one after another and ahead of their turn on a thread of their own.
#pragma once

#include "package/walk.h"
#include "platform/workers.h"

#include <cstddef>
#include <deque>
#include <future>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

class ConfigLines {
  public:
    void Read(const FileSystem& files, const FileEntry& entry);
    // Why it could not be read; "" when it was.
    const std::string& Fault() const { return fault; }
    // In lower case.
    const std::vector<std::string_view>& Lines() const { return lines; }

  private:
    std::string ReadBytes(const FileSystem& files, const FileEntry& entry, std::size_t& size);
    void Fold(std::size_t size);

    std::string fault, text, folded;
    std::string_view lower;
    std::vector<std::string_view> lines;
};

class ConfigsAhead {
  public:
    explicit ConfigsAhead(const FileSystem& fileSystem) : files(fileSystem) {}

    void Add(const FileEntry& entry);
    std::size_t Count() const { return count; }

    struct Config {
        const FileEntry& entry;
        const ConfigLines& text;
    };
    // Each one that was added in turn, as often as there are such. It stays until the next call.
    Config Next();

  private:
    struct Batch {
        std::vector<FileEntry> entries;
        std::vector<ConfigLines> texts;
        std::uint64_t bytes = 0;
        std::future<void> done; // when it was begun
    };
    struct NoTools {};

    void BeginBatches(unsigned threads);

    const FileSystem& files;
    std::size_t count = 0, next = 0; // `next` in the first batch
    std::deque<std::unique_ptr<Batch>> batches;
    std::size_t begun = 0;                    // of the batches
    std::uint64_t begunBytes = 0;             // in these
    std::unique_ptr<Workers<NoTools>> worker; // last: its thread ends before the batches go
};

} // namespace korvadex
