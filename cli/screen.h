// What the command line reads and writes.
#pragma once

#include <istream>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace korvadex {

struct Streams {
    std::istream& in;
    std::ostream& out;
    std::ostream& error;
    bool isInTerminal = false, isErrorTerminal = false;
};

// Texts of boxes line by line, and one line that goes again while a command is at work.
class TextScreen {
  public:
    explicit TextScreen(const Streams& used) : streams(used) {}

    void Say(const std::string& text) { Write(streams.out, text + "\n"); }
    void Warn(const std::string& text) { Write(streams.error, text + "\n"); }
    // At the end of which an answer is typed.
    void Ask(const std::string& text) { Write(streams.error, text); }
    // None at the end of what is typed.
    bool ReadLine(std::string& line);
    bool CanAsk() const { return streams.isInTerminal && streams.isErrorTerminal; }

    // From now on, in all texts; also of a directory that ends in a backslash there.
    void SayInPlaceOf(const std::string& path, const std::string& hostPath);

    // On a terminal only.
    void ShowProgress(int percent, const std::string& status);
    void HideProgress();
    // False when something that was said could not be written.
    bool IsComplete() const { return streams.out.good() && streams.error.good(); }
    // Whether anything was said since this was last asked.
    bool HasSpoken() { return std::exchange(hasSpoken, false); }

  private:
    void Write(std::ostream& stream, std::string text);

    Streams streams;
    std::vector<std::pair<std::string, std::string>> hostPaths;
    std::string progress; // as it stands there
    bool hasSpoken = false;
};

} // namespace korvadex
