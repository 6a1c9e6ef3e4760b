#include "cli/SignalAction.h"

#include <unistd.h>

namespace kovalune {

namespace {

bool goesTo(int signalNumber, void (*handler)(int)) {
    struct sigaction action {};
    return ::sigaction(signalNumber, nullptr, &action) == 0 && (action.sa_flags & SA_SIGINFO) == 0 &&
           action.sa_handler == handler;
}

} // namespace

void takeSignal(int signalNumber, SignalHandler* handler) {
    if (!goesTo(signalNumber, SIG_DFL)) {
        return;
    }
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    ::sigfillset(&action.sa_mask);
    ::sigaction(signalNumber, &action, nullptr);
}

void giveSignalBack(int signalNumber, SignalHandler* handler) {
    if (goesTo(signalNumber, handler)) {
        std::signal(signalNumber, SIG_DFL);
    }
}

SignalsHeldBack::SignalsHeldBack() {
    sigset_t held;
    ::sigemptyset(&held);
    for (const int signalNumber : kEndingSignals) {
        ::sigaddset(&held, signalNumber);
    }
    ::pthread_sigmask(SIG_BLOCK, &held, &before_);
}

SignalsHeldBack::~SignalsHeldBack() {
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

void endBySignal(int signalNumber) noexcept {
    constexpr int kAsShellsCount = 128;
    std::signal(signalNumber, SIG_DFL);
    sigset_t only;
    ::sigemptyset(&only);
    ::sigaddset(&only, signalNumber);
    ::pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
    std::raise(signalNumber);
    ::_exit(kAsShellsCount + signalNumber); // what ends no process by default
}

} // namespace kovalune
