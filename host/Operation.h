// The faults of one operation and the count of its fallible host calls. An operation is the set-up of a
// session, one command, or one render with both of its commands; it may run on several threads.
#pragma once

#include "host/Options.h"

#include <atomic>
#include <mutex>
#include <optional>
#include <string>

namespace kovalune::host {

class Operation {
public:
    explicit Operation(const FaultPlan& plan) : plan_(plan) {}

    /// Counts one fallible call; the code if this is the call that is to fail.
    std::optional<PF_Err> strike(const char* call);

    /// Counts one progress call; true from the planned one on, and after cancel().
    bool progressCancelled();

    void cancel() { cancelled_ = true; }
    bool cancelled() const { return cancelled_; }

    bool failsIterateAfter() const { return plan_.failIterateAfter; }
    int callsCounted() const { return counted_; }
    std::string failedCall() const;
    bool faultStruck() const { return faultStruck_; }

    /// Numbers the iterate_generic calls from 0, so that each is shuffled in its own way.
    unsigned nextIterateCall() { return iterateCalls_++; }

private:
    const FaultPlan plan_;
    std::atomic<int> counted_{0};
    std::atomic<int> progressCalls_{0};
    std::atomic<unsigned> iterateCalls_{0};
    std::atomic<bool> cancelled_{false};
    std::atomic<bool> faultStruck_{false};
    mutable std::mutex mutex_;
    std::string failedCall_;
};

} // namespace kovalune::host
