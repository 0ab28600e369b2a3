#include "ui/end_signals.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace korvadex {

namespace {

// The only thing that a signal's handler may touch; written once, before the handler is there.
int signalPipe[2] = {-1, -1};

extern "C" void NoteSignal(int /*number*/) {
    const int code = errno;
    static_cast<void>(!write(signalPipe[1], "", 1));
    errno = code;
}

} // namespace

void OnEndSignal(QObject* owner, std::function<void()> end) {
    if (pipe2(signalPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    auto* notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, owner);
    QObject::connect(notifier, &QSocketNotifier::activated, owner, [end = std::move(end)] {
        std::array<char, 16> taken{};
        while (read(signalPipe[0], taken.data(), taken.size()) > 0) {
        }
        end();
    });
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        struct sigaction action {
        }, old{};
        action.sa_handler = NoteSignal;
        action.sa_flags = SA_RESTART;
        if (sigaction(number, nullptr, &old) == 0 && old.sa_handler != SIG_IGN)
            sigaction(number, &action, nullptr);
    }
}

} // namespace korvadex
