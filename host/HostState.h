// The parts of a Host, as its callbacks use them.
#pragma once

#include "host/Handles.h"
#include "host/Ledger.h"
#include "host/MemoryPool.h"
#include "host/Operation.h"
#include "host/Options.h"
#include "host/SuiteLedger.h"
#include "host/ThreadPool.h"
#include "host/Worlds.h"

#include <mutex>
#include <string>

namespace kovalune::host {

/// Throws HostError for values out of range.
void checkOptions(const HostOptions& options);

struct HostState {
    HostOptions options;
    Ledger ledger;
    MemoryPool pool;
    WorldStore worlds{pool, ledger};
    HandleStore handles{pool, ledger};
    SuiteLedger suites;
    ThreadPool threads;

    int threadCount() const;    ///< 1 to 64
    int iterationCount() const; ///< what PF_Iterations_ONCE_PER_PROCESSOR means

    FaultPlan takePlan(); ///< the armed faults, which are spent with it
    void armFaults(const FaultPlan& plan);
    void noteEnded(const Operation& operation);
    int lastCallsCounted() const;
    std::string lastFailedCall() const;

private:
    mutable std::mutex mutex_;
    FaultPlan armed_;
    int lastCounted_ = 0;
    std::string lastFailed_;
};

} // namespace kovalune::host
