#include "cli/SignalAction.h"

#include <csignal>

namespace kovalune {

namespace {

bool goesTo(int signalNumber, void (*handler)(int)) {
    struct sigaction action {};
    return ::sigaction(signalNumber, nullptr, &action) == 0 && (action.sa_flags & SA_SIGINFO) == 0 &&
           action.sa_handler == handler;
}

} // namespace

void takeSignal(int signalNumber, SignalHandler* handler) {
    if (!goesTo(signalNumber, SIG_DFL))
        return;
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    ::sigfillset(&action.sa_mask);
    ::sigaction(signalNumber, &action, nullptr);
}

void giveSignalBack(int signalNumber, SignalHandler* handler) {
    if (goesTo(signalNumber, handler))
        std::signal(signalNumber, SIG_DFL);
}

} // namespace kovalune
