#include "package/sound_names.h"

#include "package/config_readers.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

Result<std::vector<std::string>> ReadSoundLines(const FileSystem& files, const std::string& path) {
    auto lines = ReadConfigLines(files, path);
    if (lines)
        for (std::string& line : *lines)
            line = FoldCase(line);
    return lines;
}

bool IsGaugeSound(std::string_view key, const std::vector<std::string>& soundLines) {
    const std::size_t ending = key.find(".wav");
    if (ending == std::string_view::npos)
        return false;
    const std::string_view stem = key.substr(0, ending);
    return std::none_of(soundLines.begin(), soundLines.end(),
                        [&](const std::string& line) { return line.find(stem) != std::string::npos; });
}

} // namespace korvadex
