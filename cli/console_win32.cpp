#include "cli/console.h"

#include "platform/win32.h"

#include <shellapi.h>

#include <atomic>

namespace korvadex {

namespace {

// The system calls the handler in a thread of its own.
std::atomic<bool> isInterrupted = false;

BOOL WINAPI NoteEvent(DWORD /*event*/) {
    isInterrupted = true;
    return TRUE;
}

struct ArgumentsFreer {
    void operator()(wchar_t** arguments) const { LocalFree(arguments); }
};

// The console is the shell's as well, which goes on with what it had.
class ConsoleInUtf8 {
  public:
    ConsoleInUtf8() {
        SetConsoleCP(CP_UTF8);
        SetConsoleOutputCP(CP_UTF8);
    }
    ~ConsoleInUtf8() {
        SetConsoleCP(input);
        SetConsoleOutputCP(output);
    }
    ConsoleInUtf8(const ConsoleInUtf8&) = delete;
    ConsoleInUtf8& operator=(const ConsoleInUtf8&) = delete;

  private:
    const UINT input = GetConsoleCP(), output = GetConsoleOutputCP();
};

HANDLE HandleOf(StandardStream stream) {
    return GetStdHandle(stream == StandardStream::In    ? STD_INPUT_HANDLE
                        : stream == StandardStream::Out ? STD_OUTPUT_HANDLE
                                                        : STD_ERROR_HANDLE);
}

} // namespace

bool IsTerminal(StandardStream stream) {
    DWORD mode = 0;
    return GetConsoleMode(HandleOf(stream), &mode) != 0;
}

std::vector<std::string> OpenConsole(int /*count*/, char** /*arguments*/) {
    static const ConsoleInUtf8 untilTheEnd;
    int count = 0;
    const std::unique_ptr<wchar_t*, ArgumentsFreer> wide(CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::string> arguments;
    for (int i = 1; wide && i < count; ++i)
        arguments.push_back(FromWide(wide.get()[i]));
    return arguments;
}

void NoteInterrupts() {
    SetConsoleCtrlHandler(NoteEvent, TRUE);
}

bool WasInterrupted() {
    return isInterrupted;
}

SilentInput::SilentInput() {
    DWORD mode = 0;
    if (!GetConsoleMode(HandleOf(StandardStream::In), &mode))
        return;
    before = mode;
    isSilent = SetConsoleMode(HandleOf(StandardStream::In), mode & ~static_cast<DWORD>(ENABLE_ECHO_INPUT)) != 0;
}

SilentInput::~SilentInput() {
    if (isSilent)
        SetConsoleMode(HandleOf(StandardStream::In), before);
}

} // namespace korvadex
