#include "cli/RemovedOnSignal.h"

#include "cli/SignalAction.h"

#include <atomic>
#include <csignal>
#include <cstring>
#include <string>
#include <unistd.h>

namespace kovalune {

namespace {

// What the handler reads. Longer names cannot be opened anyway.
constexpr std::size_t kNameBytes = 4096;
char removedName[kNameBytes];
std::atomic<bool> armed{false};
std::atomic<bool> signalCame{false};
static_assert(std::atomic<bool>::is_always_lock_free);

// Only what a signal handler may do. The signal has its default meaning again when this is entered, and strikes
// when it is left.
extern "C" void removeAndEnd(int signalNumber) {
    signalCame.store(true);
    if (armed.load())
        ::unlink(removedName);
    ::raise(signalNumber);
}

} // namespace

RemovedOnSignal::RemovedOnSignal(const std::filesystem::path& file) {
    const std::string name = file.string();
    if (name.size() >= kNameBytes)
        return;
    std::memcpy(removedName, name.c_str(), name.size() + 1);
    armed.store(true);
    for (const int signalNumber : kEndingSignals)
        takeSignal(signalNumber, removeAndEnd);
}

RemovedOnSignal::~RemovedOnSignal() {
    for (const int signalNumber : kEndingSignals)
        giveSignalBack(signalNumber, removeAndEnd);
    armed.store(false);
}

bool RemovedOnSignal::struck() const {
    return signalCame.load();
}

} // namespace kovalune
