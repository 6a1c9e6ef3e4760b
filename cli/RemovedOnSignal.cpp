#include "cli/RemovedOnSignal.h"

#include <array>
#include <atomic>
#include <csignal>
#include <cstring>
#include <string>
#include <unistd.h>

namespace kovalune {

namespace {

constexpr std::array<int, 3> kSignals = {SIGINT, SIGTERM, SIGHUP};

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

bool hasDefault(int signalNumber) {
    struct sigaction action {};
    return ::sigaction(signalNumber, nullptr, &action) == 0 && (action.sa_flags & SA_SIGINFO) == 0 &&
           action.sa_handler == SIG_DFL;
}

bool isOurs(int signalNumber) {
    struct sigaction action {};
    return ::sigaction(signalNumber, nullptr, &action) == 0 && (action.sa_flags & SA_SIGINFO) == 0 &&
           action.sa_handler == removeAndEnd;
}

void handle(int signalNumber) {
    struct sigaction action {};
    action.sa_handler = removeAndEnd;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    ::sigfillset(&action.sa_mask);
    ::sigaction(signalNumber, &action, nullptr);
}

} // namespace

RemovedOnSignal::RemovedOnSignal(const std::filesystem::path& file) {
    const std::string name = file.string();
    if (name.size() >= kNameBytes)
        return;
    std::memcpy(removedName, name.c_str(), name.size() + 1);
    armed.store(true);
    for (const int signalNumber : kSignals) {
        if (hasDefault(signalNumber))
            handle(signalNumber);
    }
}

RemovedOnSignal::~RemovedOnSignal() {
    for (const int signalNumber : kSignals) {
        if (isOurs(signalNumber))
            std::signal(signalNumber, SIG_DFL);
    }
    armed.store(false);
}

bool RemovedOnSignal::struck() const {
    return signalCame.load();
}

} // namespace kovalune
