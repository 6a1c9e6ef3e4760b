#include "cli/Interrupt.h"

#include "cli/SignalAction.h"

#include <atomic>
#include <csignal>

namespace kovalune {

namespace {

std::atomic<int> signalThatCame{0};
static_assert(std::atomic<int>::is_always_lock_free);

// Only what a signal handler may do. The signal has its default meaning again when this is entered.
extern "C" void noteInterrupt(int signalNumber) {
    int none = 0;
    if (!signalThatCame.compare_exchange_strong(none, signalNumber)) {
        std::raise(signalNumber);
    }
}

} // namespace

Interrupt::Interrupt() {
    signalThatCame.store(0);
    for (const int signalNumber : kEndingSignals) {
        takeSignal(signalNumber, noteInterrupt);
    }
}

int Interrupt::signalNumber() const {
    return signalThatCame.load();
}

void Interrupt::release() {
    for (const int signalNumber : kEndingSignals) {
        giveSignalBack(signalNumber, noteInterrupt);
    }
}

void Interrupt::finish() {
    release();
    if (came()) {
        throw Interruption(signalNumber());
    }
}

void Interrupt::during(const std::function<void()>& body) {
    try {
        body();
    } catch (...) {
        finish();
        throw;
    }
    finish();
}

} // namespace kovalune
