#include "cli/console.h"

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace korvadex {

namespace {

// The only thing that a signal's handler may touch.
std::atomic<bool> isInterrupted = false;

extern "C" void NoteSignal(int /*number*/) {
    isInterrupted = true;
}

} // namespace

bool IsTerminal(StandardStream stream) {
    return isatty(stream == StandardStream::In    ? STDIN_FILENO
                  : stream == StandardStream::Out ? STDOUT_FILENO
                                                  : STDERR_FILENO) == 1;
}

std::vector<std::string> OpenConsole(int count, char** arguments) {
    std::signal(SIGPIPE, SIG_IGN); // "| head" must not cut a command off
    // A stream that came closed would be the first file that is opened, and what is said would go into that.
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(stream, F_GETFD) == -1)
            static_cast<void>(open("/dev/null", O_RDWR));
    return {arguments + (count > 0 ? 1 : 0), arguments + count};
}

void NoteInterrupts() {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {
        }, old{};
        action.sa_handler = NoteSignal; // without SA_RESTART: a question that waits for its answer ends
        if (sigaction(number, nullptr, &old) == 0 && old.sa_handler != SIG_IGN)
            sigaction(number, &action, nullptr);
    }
}

bool WasInterrupted() {
    return isInterrupted;
}

SilentInput::SilentInput() {
    termios state{};
    if (tcgetattr(STDIN_FILENO, &state) != 0)
        return;
    before = state.c_lflag;
    state.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    isSilent = tcsetattr(STDIN_FILENO, TCSANOW, &state) == 0;
}

SilentInput::~SilentInput() {
    termios state{};
    if (!isSilent || tcgetattr(STDIN_FILENO, &state) != 0)
        return;
    state.c_lflag = static_cast<tcflag_t>(before);
    tcsetattr(STDIN_FILENO, TCSANOW, &state);
}

} // namespace korvadex
