#include "cli/Interrupt.h"

#include "cli/SignalAction.h"

#include <array>
#include <atomic>
#include <csignal>

namespace kovalune {

namespace {

constexpr std::array<int, 2> kSignals = {SIGINT, SIGTERM};

std::atomic<bool> signalCame{false};
static_assert(std::atomic<bool>::is_always_lock_free);

// Only what a signal handler may do. The signal has its default meaning again when this is entered.
extern "C" void noteInterrupt(int signalNumber) {
    if (signalCame.exchange(true))
        std::raise(signalNumber);
}

} // namespace

Interrupt::Interrupt() {
    signalCame.store(false);
    for (const int signalNumber : kSignals)
        takeSignal(signalNumber, noteInterrupt);
}

bool Interrupt::came() const {
    return signalCame.load();
}

void Interrupt::release() {
    for (const int signalNumber : kSignals)
        giveSignalBack(signalNumber, noteInterrupt);
}

} // namespace kovalune
