#include "platform/text_file.h"

#include "platform/code_page.h"

#include <array>

namespace korvadex {

namespace {

constexpr std::size_t BufferSize = 256 * 1024;

std::span<const std::byte> BytesOf(std::string_view text) {
    return std::as_bytes(std::span(text.data(), text.size()));
}

Status FillScratch(const FileSystem& files, std::unique_ptr<OutputFile> file, const std::string& scratch,
                   std::string_view bytes) {
    if (auto status = file->Write(BytesOf(bytes)); !status)
        return status;
    if (auto status = file->Close(true); !status)
        return status;
    const auto written = ReadBytes(files, scratch);
    if (!written)
        return written.status();
    if (*written != bytes)
        return {FileFault::Failed, scratch, 0};
    return {};
}

// What the user had set on the file that is about to be replaced; its time is that of the new bytes.
void KeepAttributes(FileSystem& files, const std::string& path, const std::string& scratch) {
    const auto written = files.Info(scratch);
    if (written && files.CopyAttributes(path, scratch)) {
        static_cast<void>(files.SetReadOnly(scratch, false));
        static_cast<void>(files.SetTime(scratch, written->time));
    }
}

} // namespace

Result<std::string> ReadBytes(const FileSystem& files, const std::string& path) {
    auto file = files.OpenForReading(path);
    if (!file)
        return file.status();
    // Nearly all are small.
    constexpr std::size_t firstSize = 32 * 1024;
    std::string bytes(firstSize, '\0');
    for (std::size_t used = 0;;) {
        if (used == bytes.size())
            bytes.resize(2 * used);
        const auto count = (*file)->Read(std::as_writable_bytes(std::span(bytes).subspan(used)));
        if (!count)
            return count.status();
        used += *count;
        if (*count == 0) {
            bytes.resize(used);
            return bytes;
        }
    }
}

std::vector<std::string> SplitLines(std::string_view bytes) {
    std::vector<std::string> lines;
    ForEachLine(bytes, [&](std::string_view line, std::string_view) { lines.push_back(FromCodePage(line)); });
    return lines;
}

Result<std::vector<std::string>> ReadLines(const FileSystem& files, const std::string& path) {
    const auto bytes = ReadBytes(files, path);
    if (!bytes)
        return bytes.status();
    return SplitLines(*bytes);
}

std::optional<std::string> JoinLines(const std::vector<std::string>& lines) {
    std::string bytes;
    for (const auto& line : lines) {
        const auto encoded = ToCodePage(line);
        if (!encoded)
            return std::nullopt;
        bytes += *encoded;
        bytes += "\r\n";
    }
    return bytes;
}

Status WriteBytesWhole(FileSystem& files, const std::string& path, std::string_view bytes, const std::string& scratch) {
    auto file = files.CreateNew(scratch);
    if (!file)
        return file.status(); // a file of that name is not ours to delete
    auto status = FillScratch(files, std::move(*file), scratch, bytes);
    if (status) {
        KeepAttributes(files, path, scratch);
        status = files.Replace(scratch, path);
    }
    if (!status)
        static_cast<void>(files.Delete(scratch));
    return status;
}

Status WriteLinesWhole(FileSystem& files, const std::string& path, const std::vector<std::string>& lines,
                       const std::string& scratch) {
    const auto bytes = JoinLines(lines);
    if (!bytes)
        return {FileFault::BadName, path, 0};
    return WriteBytesWhole(files, path, *bytes, scratch);
}

bool SameBytes(const FileSystem& files, const std::string& a, const std::string& b) {
    const auto infoA = files.Info(a), infoB = files.Info(b);
    if (!infoA || !infoB || infoA->kind != EntryKind::File || infoB->kind != EntryKind::File ||
        infoA->size != infoB->size)
        return false;
    auto fileA = files.OpenForReading(a), fileB = files.OpenForReading(b);
    if (!fileA || !fileB)
        return false;
    std::vector<std::byte> bufferA(BufferSize), bufferB(BufferSize);
    // A read may be short: what one file gave is asked of the other, piece by piece.
    for (;;) {
        const auto count = (*fileA)->Read(bufferA);
        if (!count)
            return false;
        std::size_t got = 0;
        const std::size_t wanted = *count == 0 ? 1 : *count; // at the end the other must end as well
        while (got < wanted) {
            const auto more = (*fileB)->Read(std::span(bufferB).subspan(got, wanted - got));
            if (!more)
                return false;
            if (*more == 0)
                break;
            got += *more;
        }
        if (got != *count ||
            !std::equal(bufferA.begin(), bufferA.begin() + static_cast<std::ptrdiff_t>(got), bufferB.begin()))
            return false;
        if (*count == 0)
            return true;
    }
}

} // namespace korvadex
