#include "render/shots/SignalWatch.h"

#include "render/shots/EndingSignals.h"

#include <array>
#include <atomic>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <unistd.h>

namespace kovalune::shots {

namespace {

constexpr std::size_t kNameBytes = 4096; // longer names cannot be opened

} // namespace

/// Of one file at a time. Never freed: the handler may be walking the list.
struct RemovedOnSignal::Entry {
    std::array<char, kNameBytes> name{};
    std::atomic<bool> taken{true};  ///< by a RemovedOnSignal
    std::atomic<bool> armed{false}; ///< the name stands
    Entry* next = nullptr;          ///< does not change once the entry is in the list
};

namespace {

using Entry = RemovedOnSignal::Entry;

// All that the handler reads or writes.
std::atomic<Entry*> firstEntry{nullptr};
std::atomic<uint32_t> notes{0}; // how many Interrupts live, and below that the signal that came, 0: none
std::atomic<bool> processEnds{false};
static_assert(std::atomic<Entry*>::is_always_lock_free && std::atomic<uint32_t>::is_always_lock_free &&
              std::atomic<bool>::is_always_lock_free);

constexpr uint32_t kOneInterrupt = 0x100;

int signalIn(uint32_t state) {
    return static_cast<int>(state % kOneInterrupt);
}

/// Whether somebody leaves everything in order because of this signal.
bool isNoted(int signalNumber) {
    uint32_t state = notes.load();
    while (state >= kOneInterrupt && signalIn(state) == 0) {
        if (notes.compare_exchange_weak(state, state | static_cast<uint32_t>(signalNumber))) {
            return true;
        }
    }
    return false;
}

/// Only what a signal handler may do. All signals wait meanwhile; the one that is raised strikes when this is left.
extern "C" void onEndingSignal(int signalNumber) {
    if (isNoted(signalNumber)) {
        return;
    }
    processEnds.store(true);
    for (const Entry* entry = firstEntry.load(); entry != nullptr; entry = entry->next) {
        if (entry->armed.load()) {
            ::unlink(entry->name.data());
        }
    }
    struct sigaction byDefault {};
    byDefault.sa_handler = SIG_DFL;
    ::sigaction(signalNumber, &byDefault, nullptr);
    ::raise(signalNumber);
}

bool goesTo(int signalNumber, void (*handler)(int)) {
    struct sigaction action {};
    return ::sigaction(signalNumber, nullptr, &action) == 0 && (action.sa_flags & SA_SIGINFO) == 0 &&
           action.sa_handler == handler;
}

void changeHandler(void (*from)(int), void (*to)(int)) {
    struct sigaction action {};
    action.sa_handler = to;
    action.sa_flags = SA_RESTART;
    ::sigfillset(&action.sa_mask);
    for (const int signalNumber : kEndingSignals) {
        if (goesTo(signalNumber, from)) {
            ::sigaction(signalNumber, &action, nullptr);
        }
    }
}

// Of everything that watches, on all threads.
std::mutex watchersMutex;
int watchers = 0;

void beginWatching() {
    const std::scoped_lock lock(watchersMutex);
    if (watchers++ == 0) {
        changeHandler(SIG_DFL, onEndingSignal);
    }
}

void endWatching() {
    const std::scoped_lock lock(watchersMutex);
    if (--watchers == 0) {
        changeHandler(onEndingSignal, SIG_DFL);
    }
}

/// One that nobody has, or a new one; it is the caller's.
Entry* takeEntry() {
    for (Entry* entry = firstEntry.load(); entry != nullptr; entry = entry->next) {
        if (!entry->taken.exchange(true)) {
            return entry;
        }
    }
    auto* const entry = new Entry;
    entry->next = firstEntry.load();
    while (!firstEntry.compare_exchange_weak(entry->next, entry)) {
    }
    return entry;
}

} // namespace

Interrupt::Interrupt() {
    notes.fetch_add(kOneInterrupt);
    beginWatching();
}

int Interrupt::signalNumber() const {
    return released_ ? cameBefore_ : signalIn(notes.load());
}

void Interrupt::release() {
    if (released_) {
        return;
    }
    endWatching();
    // The last one takes the signal with it.
    uint32_t state = notes.load();
    uint32_t left = 0;
    do {
        left = state - kOneInterrupt;
    } while (!notes.compare_exchange_weak(state, left < kOneInterrupt ? 0 : left));
    cameBefore_ = signalIn(state);
    released_ = true;
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

RemovedOnSignal::RemovedOnSignal(const std::filesystem::path& file) {
    const std::string name = file.string();
    if (name.size() >= kNameBytes) {
        return;
    }
    entry_ = takeEntry();
    std::memcpy(entry_->name.data(), name.c_str(), name.size() + 1);
    entry_->armed.store(true);
    beginWatching();
}

RemovedOnSignal::~RemovedOnSignal() {
    if (entry_ == nullptr) {
        return;
    }
    endWatching();
    entry_->armed.store(false);
    entry_->taken.store(false);
}

bool RemovedOnSignal::isEnding() {
    return processEnds.load();
}

} // namespace kovalune::shots
