#include "cli/RemovedOnSignal.h"

#include "cli/SignalAction.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace kovalune {

namespace {

/// Longer names cannot be opened anyway.
constexpr std::size_t kNameBytes = 4096;

struct RemovedFile {
    std::array<char, kNameBytes> name{};
    std::atomic<bool> armed{false};
};

/// What the handler reads.
std::array<RemovedFile, RemovedOnSignal::kMostAtOnce> removedFiles;
std::atomic<bool> signalCame{false};
static_assert(std::atomic<bool>::is_always_lock_free);

bool isArmed(const RemovedFile& file) {
    return file.armed.load();
}

// Only what a signal handler may do. The signal has its default meaning again when this is entered, and strikes
// when it is left.
extern "C" void removeAndEnd(int signalNumber) {
    signalCame.store(true);
    for (const RemovedFile& file : removedFiles) {
        if (isArmed(file)) {
            ::unlink(file.name.data());
        }
    }
    ::raise(signalNumber);
}

} // namespace

RemovedOnSignal::RemovedOnSignal(const std::filesystem::path& file) {
    const std::string name = file.string();
    if (name.size() >= kNameBytes) {
        return;
    }
    auto* const free = std::find_if_not(removedFiles.begin(), removedFiles.end(), isArmed);
    if (free == removedFiles.end()) {
        throw std::logic_error("too many files are written at once");
    }
    place_ = static_cast<std::size_t>(free - removedFiles.begin());
    std::memcpy(free->name.data(), name.c_str(), name.size() + 1);
    free->armed.store(true);
    for (const int signalNumber : kEndingSignals) {
        takeSignal(signalNumber, removeAndEnd);
    }
}

RemovedOnSignal::~RemovedOnSignal() {
    if (!place_) {
        return;
    }
    const auto others = std::count_if(removedFiles.begin(), removedFiles.end(), isArmed) - 1;
    if (others == 0) {
        for (const int signalNumber : kEndingSignals) {
            giveSignalBack(signalNumber, removeAndEnd);
        }
    }
    removedFiles[*place_].armed.store(false);
}

bool RemovedOnSignal::struck() const {
    return signalCame.load();
}

} // namespace kovalune
