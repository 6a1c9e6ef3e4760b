// The reference host in the middle of a command, for code that needs a PF_InData with working callbacks. It
// watches what that code takes and gives back, and fails the test at its end if anything is left or damaged.
#pragma once

#include "host/CommandContext.h"
#include "host/HostState.h"
#include "host/ParamStore.h"
#include "host/judge/JudgedHost.h"

#include <optional>
#include <string>
#include <vector>

namespace kovalune::test {

/// Audit on, uncleared memory poisoned, one iteration a "processor".
host::judge::JudgeOptions strictOptions();

/// The same with this many iterations, in shuffled order on `threads` threads.
host::judge::JudgeOptions shuffledOptions(int iterations, int threads, uint64_t seed);

class StrictHost {
public:
    explicit StrictHost(const host::judge::JudgeOptions& options = strictOptions());
    ~StrictHost();
    StrictHost(const StrictHost&) = delete;
    StrictHost& operator=(const StrictHost&) = delete;

    /// Of several hosts in a scope, the one made last answers calls; this puts another one in its place.
    class Turn {
    public:
        explicit Turn(StrictHost& host) : scope_(&host.context_) {}

    private:
        host::ContextScope scope_;
    };

    PF_InData* in() { return &in_; }

    /// This command's own copy of the table, open to change.
    PF_UtilCallbacks& utils() { return utils_; }

    host::judge::JudgeOptions& options() { return host_.options(); }
    host::HostState& state() { return host_.state(); }

    /// From here on host calls and progress calls count from 1 again, under these faults.
    void arm(const host::judge::FaultPlan& plan) { operation_.emplace(host_.options(), plan); }

    /// Name of the call that the armed fault struck, empty if none.
    std::string struckCall() const { return operation_->failedCall(); }

    host::judge::AuditReport audit() const { return host_.audit(); }

    /// The calls since the last `clearCalls`, in order (with JudgeOptions::recordCalls).
    std::vector<host::judge::CallRecord> calls() const { return host_.calls(); }

    /// Their names.
    std::vector<std::string> callNames() const;
    int countCalls(const std::string& name) const;
    void clearCalls() { host_.clearCalls(); }

    /// The places of these calls among all fallible ones since `clearCalls`, as FaultPlan counts them.
    std::vector<int> faultNumbersOf(const std::string& name) const;

private:
    host::judge::JudgedHost host_;
    std::optional<host::judge::JudgedOperation> operation_;
    host::ParamStore params_;
    host::CommandContext context_;
    host::ContextScope scope_;
    PF_UtilCallbacks utils_;
    PF_InData in_;
};

} // namespace kovalune::test
