#include "sim/gauge_use.h"

#include "platform/workers.h"
#include "sim/config_lines.h"
#include "sim/name_matcher.h"

#include <algorithm>
#include <atomic>
#include <deque>
#include <future>
#include <iterator>
#include <mutex>
#include <optional>

namespace korvadex {

namespace {

// Panels that one thread looks through in one go.
struct Batch {
    std::vector<FileEntry> panels;
    std::vector<Unseen> unseen;
    std::future<void> done;
};
constexpr std::size_t BatchSize = 16;

// What a thread keeps from one batch to the next.
struct Searcher {
    ConfigLines config;
    NameMatcher* matcher = nullptr; // of its own
};

// While one thread walks through the simulator a second one lists the names, and then begins with the panels that are
// found by then; both do the rest.
class PanelSearch {
  public:
    PanelSearch(const FileSystem& fileSystem, const GaugeUse::ListNames& listNames) : files(fileSystem) {
        listed = workers.Start([this, &listNames](Searcher&) {
            const std::vector<std::string> list = listNames();
            nameCount = list.size();
            names.emplace(list);
        });
    }

    void Add(const FileEntry& panel) {
        if (batches.empty() || batches.back().panels.size() == BatchSize) {
            BeginLast();
            batches.emplace_back();
        }
        batches.back().panels.push_back(panel);
        ++count;
    }

    void Finish(const GaugeUse::Progress& progress) {
        BeginLast();
        listed.get();
        const int total = static_cast<int>(count);
        do
            progress(static_cast<int>(doneCount), total);
        while (workers.DoNext());
        for (Batch& batch : batches)
            batch.done.get();
        progress(total, total);
    }

    std::vector<Unseen> NotSearched() {
        std::vector<Unseen> all;
        for (Batch& batch : batches)
            std::ranges::move(batch.unseen, std::back_inserter(all));
        return all;
    }
    std::vector<bool> Used() const {
        std::vector<bool> used(nameCount);
        for (const NameMatcher& matcher : matchers) {
            for (std::size_t name = 0; name < nameCount; ++name)
                used[name] = used[name] || matcher.IsFound(name);
        }
        return used;
    }

  private:
    void BeginLast() {
        if (batches.empty())
            return;
        Batch& batch = batches.back();
        batch.done = workers.Start([this, &batch](Searcher& searcher) { Search(batch, searcher); });
    }

    void Search(Batch& batch, Searcher& searcher) {
        if (!names)
            return; // they could not be listed
        if (searcher.matcher == nullptr) {
            const std::lock_guard lock(mutex);
            searcher.matcher = &matchers.emplace_back(*names);
        }
        for (const FileEntry& panel : batch.panels) {
            if (std::string fault = searcher.config.Read(files, panel); !fault.empty())
                batch.unseen.push_back({panel.path, std::move(fault)});
            for (const std::string_view line : searcher.config.Lines()) {
                if (IsGaugeLine(line))
                    searcher.matcher->Search(line);
            }
        }
        doneCount += batch.panels.size();
    }

    const FileSystem& files;
    std::optional<NameMatcher> names; // none until they are listed
    std::size_t nameCount = 0;
    std::deque<Batch> batches;
    std::size_t count = 0; // of the panels
    std::atomic<std::size_t> doneCount = 0;
    std::mutex mutex; // guards the next one while panels are searched
    std::deque<NameMatcher> matchers;
    std::future<void> listed;
    Workers<Searcher> workers{1}; // last: its thread ends before what it works on
};

} // namespace

GaugeUse::GaugeUse(CommandContext& context, const ListNames& listNames, const Progress& progress) {
    PanelSearch search(context.files, listNames);
    unseen = FindConfigFiles(context.files, context.locations.Aircraft(), {.fileName = "panel.cfg"},
                             [&](const FileEntry& panel) { search.Add(panel); });
    search.Finish(progress);
    std::ranges::move(search.NotSearched(), std::back_inserter(unseen));
    isUsed = search.Used();
}

} // namespace korvadex
