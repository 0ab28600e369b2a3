#include "cli/screen.h"

#include "platform/code_page.h"

#include <algorithm>
#include <functional>

namespace korvadex {

namespace {

constexpr std::size_t MostLetters = 70;

} // namespace

void TextScreen::Write(std::ostream& stream, std::string text) {
    for (const auto& [path, hostPath] : hostPaths)
        for (auto at = text.find(path); at != text.npos; at = text.find(path, at + hostPath.size()))
            text.replace(at, path.size(), hostPath);
    HideProgress();
    hasSpoken = true;
    for (const char letter : text)
        if (letter == '\n' || static_cast<unsigned char>(letter) >= ' ')
            stream << letter; // no name in it commands the terminal
    stream.flush();
}

void TextScreen::SayInPlaceOf(const std::string& path, const std::string& hostPath) {
    hostPaths.emplace_back(path, hostPath);
    if (hostPath.starts_with('/'))
        hostPaths.emplace_back(path + "\\", hostPath + (hostPath.ends_with('/') ? "" : "/"));
    // What lies in a directory before the directory.
    std::ranges::sort(hostPaths, std::ranges::greater(), [](const auto& each) { return each.first.size(); });
}

bool TextScreen::ReadLine(std::string& line) {
    if (!std::getline(streams.in, line))
        return false;
    if (line.ends_with('\r'))
        line.pop_back();
    return true;
}

void TextScreen::ShowProgress(int percent, const std::string& status) {
    const std::string line = std::to_string(percent) + " %  " + std::string(FirstLetters(status, MostLetters));
    if (!streams.isErrorTerminal || line == progress)
        return;
    HideProgress();
    streams.error << line << std::flush;
    progress = line;
}

void TextScreen::HideProgress() {
    if (!progress.empty())
        streams.error << "\r" << std::string(progress.size(), ' ') << "\r" << std::flush;
    progress.clear();
}

} // namespace korvadex
