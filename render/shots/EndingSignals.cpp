#include "render/shots/EndingSignals.h"

#include <unistd.h>

namespace kovalune::shots {

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

} // namespace kovalune::shots
