#include "cli/console.h"

#include "platform/win32.h"

#include <shellapi.h>

#include <atomic>
#include <iostream>
#include <streambuf>

namespace korvadex {

namespace {

// The system calls the handler in a thread of its own.
std::atomic<bool> isInterrupted = false;

BOOL WINAPI NoteEvent(DWORD event) {
    isInterrupted = true;
    // Where the console closes, or the session ends, the system ends the program as soon as this returns.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        Sleep(INFINITE);
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

// What is typed, whatever its letters: the streams of the library only have those of one code page.
class TypedText : public std::streambuf {
  protected:
    int_type underflow() override {
        wchar_t letters[2048];
        DWORD count = 0;
        const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
        if (!ReadConsoleW(input, letters, static_cast<DWORD>(std::size(letters)), &count, nullptr) || count == 0 ||
            letters[0] == L'\x1A')
            return traits_type::eof();
        text = FromWide({letters, count});
        setg(text.data(), text.data(), text.data() + text.size());
        return traits_type::to_int_type(text.front());
    }

  private:
    std::string text;
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
    static TypedText typed;
    if (IsTerminal(StandardStream::In))
        std::cin.rdbuf(&typed);
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
