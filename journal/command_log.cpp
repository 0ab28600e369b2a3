#include "journal/command_log.h"

#include "platform/windows_path.h"

#include <algorithm>
#include <utility>

namespace korvadex {

CommandLog::CommandLog(FileSystem& fileSystem, std::string logPath, std::string firstLine)
    : files(fileSystem), path(std::move(logPath)), heading(std::move(firstLine)) {}

Result<std::size_t> CommandLog::Append(const Record& record) {
    if (count == 0)
        if (const Status status = Open(); !status)
            return status;
    if (const Status status = Write(LineOf(record)); !status)
        return status;
    records.push_back(record);
    isVoid.push_back(false);
    return count++;
}

void CommandLog::Void(std::size_t number) {
    if (number >= isVoid.size())
        return;
    isVoid[number] = true;
    if (Write(LineOf(Record{.kind = RecordKind::Void, .size = number}))) {
        records.push_back({});
        isVoid.push_back(true);
        ++count;
    }
}

void CommandLog::VoidRoundTrip() {
    std::vector<std::size_t> last; // the newest first
    for (std::size_t i = records.size(); i-- > 0 && last.size() < 2;)
        if (!isVoid[i] && records[i].kind != RecordKind::DirectoryTime)
            last.push_back(i);
    const auto isRename = [&](std::size_t number) { return records[number].kind == RecordKind::Renamed; };
    if (last.size() == 2 && std::ranges::all_of(last, isRename) && records[last[0]].path == records[last[1]].other &&
        records[last[0]].other == records[last[1]].path)
        for (const std::size_t number : last)
            Void(number);
}

Status CommandLog::Append(const std::vector<LeftPlace>& left) {
    std::string text;
    for (const LeftPlace& place : left)
        text += LineOf(place);
    return text.empty() ? trouble : Write(text);
}

Status CommandLog::Flush() {
    if (!trouble || isFlushed || !file)
        return trouble;
    trouble = file->Flush();
    if (trouble && !isNameFlushed)
        trouble = files.Flush(std::vector{WithoutBackslash(ParentDirectory(path))}).front();
    isFlushed = isNameFlushed = bool(trouble);
    return trouble;
}

std::vector<Record> CommandLog::Records(std::size_t from) const {
    std::vector<Record> counting;
    for (const std::size_t number : Numbers(from))
        counting.push_back(records[number]);
    return counting;
}

std::vector<std::size_t> CommandLog::Numbers(std::size_t from) const {
    std::vector<std::size_t> numbers;
    for (std::size_t i = from; i < records.size(); ++i)
        if (!isVoid[i])
            numbers.push_back(i);
    return numbers;
}

void CommandLog::Abandon() {
    if (std::exchange(file, nullptr))
        static_cast<void>(files.Delete(path));
    records.clear();
    isVoid.clear();
    count = 0;
    trouble = {};
}

Status CommandLog::Open() {
    if (!trouble)
        return trouble;
    const auto made = EnsureRealDirectory(files, WithoutBackslash(ParentDirectory(path)));
    auto opened = made ? files.CreateNew(path) : Result<std::unique_ptr<OutputFile>>(made.status());
    if (!opened)
        return trouble = opened.status();
    file = std::move(*opened);
    return Write(heading);
}

Status CommandLog::Write(const std::string& text) {
    if (trouble) {
        trouble = file ? WriteAll(*file, std::as_bytes(std::span(text))) : Status{FileFault::Failed, path};
        isFlushed = false;
    }
    return trouble;
}

} // namespace korvadex
