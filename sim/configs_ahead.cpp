#include "sim/configs_ahead.h"

#include "package/config_text.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <span>

namespace korvadex {

namespace {

// So many at once that the threads seldom wait for each other, and so many bytes that wait for their turn.
constexpr std::size_t MaxFiles = 32;
constexpr std::uint64_t MaxBatchBytes = 1 << 20, MaxBytes = 32 << 20;

constexpr std::size_t FirstRoom = 4096; // where the directory gave no size, as for a link

std::uint64_t ExpectedSize(const FileEntry& entry) {
    return entry.info.kind == EntryKind::File ? std::min(entry.info.size, MaxConfigBytes) : MaxConfigBytes;
}

} // namespace

void ConfigLines::Read(const FileSystem& files, const FileEntry& entry) {
    lines.clear();
    std::size_t size = 0;
    fault = ReadBytes(files, entry, size);
    if (!fault.empty())
        return;
    Fold(size);
    lines.reserve(1 + static_cast<std::size_t>(std::ranges::count(lower, '\n')));
    ForEachLine(lower, [&](std::string_view line, std::string_view) { lines.push_back(line); });
}

std::string ConfigLines::ReadBytes(const FileSystem& files, const FileEntry& entry, std::size_t& size) {
    const std::string tooLarge = "too large for a configuration file";
    if (entry.info.size > MaxConfigBytes)
        return tooLarge;
    auto file = files.OpenForReading(entry.path);
    if (!file)
        return DescribeFault(file.status());
    // One byte more than the directory says, so that the end of the file is seen at once.
    std::size_t room = static_cast<std::size_t>(entry.info.size) + 1;
    for (;;) {
        if (text.size() < size + room)
            text.resize(size + room);
        const auto count = (*file)->Read(std::as_writable_bytes(std::span(text.data() + size, room)));
        if (!count)
            return DescribeFault(count.status());
        size += *count;
        if (size > MaxConfigBytes)
            return tooLarge;
        if (*count < room)
            return "";
        room = std::max<std::size_t>(size, FirstRoom);
    }
}

void ConfigLines::Fold(std::size_t size) {
    const std::string_view bytes = std::string_view(text).substr(0, size);
    if (!IsPlainConfig(bytes)) {
        folded = FoldCase(DecodeConfig(bytes));
        lower = folded;
        return;
    }
    for (char& letter : std::span(text.data(), size))
        letter = static_cast<char>(letter >= 'A' && letter <= 'Z' ? letter + ('a' - 'A') : letter);
    lower = bytes;
}

void ConfigsAhead::Add(const FileEntry& entry) {
    const std::uint64_t size = ExpectedSize(entry);
    if (batches.size() == begun || batches.back()->entries.size() == MaxFiles ||
        batches.back()->bytes + size > MaxBatchBytes) {
        BeginBatches(1);
        batches.push_back(std::make_unique<Batch>());
    }
    batches.back()->entries.push_back(entry);
    batches.back()->bytes += size;
    ++count;
}

// All that there are, for as long as they fit into memory beside each other. No thread for what is read in one go.
void ConfigsAhead::BeginBatches(unsigned threads) {
    while (begun < batches.size() && (begun == 0 || begunBytes + batches[begun]->bytes <= MaxBytes)) {
        Batch& batch = *batches[begun++];
        begunBytes += batch.bytes;
        if (!worker)
            worker = std::make_unique<Workers<NoTools>>(threads);
        batch.done = worker->Start([this, &batch](NoTools&) {
            batch.texts.resize(batch.entries.size());
            for (std::size_t i = 0; i < batch.texts.size(); ++i)
                batch.texts[i].Read(files, batch.entries[i]);
        });
    }
}

ConfigsAhead::Config ConfigsAhead::Next() {
    if (next == batches.front()->entries.size()) {
        begunBytes -= batches.front()->bytes;
        batches.pop_front();
        --begun;
        next = 0;
    }
    BeginBatches(0);
    Batch& batch = *batches.front();
    if (batch.done.valid())
        batch.done.get();
    ++next;
    return {batch.entries[next - 1], batch.texts[next - 1]};
}

} // namespace korvadex
