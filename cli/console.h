// The terminal, and what the system gives a program that was started from one.
#pragma once

#include <string>
#include <vector>

namespace korvadex {

enum class StandardStream { In, Out, Error };
bool IsTerminal(StandardStream stream);

// To be called before anything is shown: the streams take and give UTF-8. The arguments in it, without the program.
std::vector<std::string> OpenConsole(int count, char** arguments);

// From now on Ctrl+C, and the system's wish that the program ends, are only noted. What ignored them goes on to.
void NoteInterrupts();
bool WasInterrupted();

// While it lives what is typed is not shown.
class SilentInput {
  public:
    SilentInput();
    ~SilentInput();
    SilentInput(const SilentInput&) = delete;
    SilentInput& operator=(const SilentInput&) = delete;

  private:
    unsigned long before = 0;
    bool isSilent = false;
};

} // namespace korvadex
