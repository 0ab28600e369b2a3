#include "sim/config_lines.h"

#include "package/config_text.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <span>

namespace korvadex {

namespace {

constexpr std::size_t UsualRoom = 64 << 10; // most files are read in one go

} // namespace

std::string ConfigLines::Read(const FileSystem& files, const FileEntry& entry) {
    lines.clear();
    std::size_t size = 0;
    std::string fault = ReadBytes(files, entry, size);
    if (fault.empty()) {
        Fold(size);
        ForEachLine(lower, [&](std::string_view line, std::string_view) { lines.push_back(line); });
    }
    return fault;
}

std::string ConfigLines::ReadBytes(const FileSystem& files, const FileEntry& entry, std::size_t& size) {
    const std::string tooLarge = "too large for a configuration file";
    if (entry.info.size > MaxConfigBytes)
        return tooLarge;
    auto file = files.OpenForReading(entry.path);
    if (!file)
        return DescribeFault(file.status());
    std::size_t room = std::max(static_cast<std::size_t>(entry.info.size) + 1, UsualRoom);
    for (;;) {
        if (text.size() < size + room)
            text.resize(size + room);
        const auto count = (*file)->Read(std::as_writable_bytes(std::span(text.data() + size, room)));
        if (!count)
            return DescribeFault(count.status());
        size += *count;
        if (size > MaxConfigBytes)
            return tooLarge;
        // A file as long as the directory says, with room behind it, has no more. Any other, and one of which it says
        // nothing, is read until nothing comes.
        if (*count == 0 || (*count < room && size == entry.info.size))
            return "";
        room = std::max(size, UsualRoom);
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

} // namespace korvadex
