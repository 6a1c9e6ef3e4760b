// Host calls that fail as planned. An operation under a plan counts its fallible calls and refuses the one that the
// plan names; the armed plan is spent with the operation, also when none of its faults struck.
#pragma once

#include "host/Operation.h"
#include "host/judge/JudgeOptions.h"

#include <atomic>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace kovalune::host::judge {

/// Faults for one operation: the construction of a Session, one run() or one render() (both of its commands).
struct FaultPlan {
    int failCall = 0; ///< the n-th counted host call fails, from 1; 0: none
    PF_Err failCode = PF_Err_INVALID_INDEX;
    bool failIterateAfter = false; ///< an iterate_generic chosen to fail runs all its iterations first
    int cancelAtProgress = 0;      ///< this progress call and all later ones report a cancel, from 1; 0: none
};

/// What the operation that ended last did.
struct OperationCount {
    int calls = 0;          ///< fallible host calls
    std::string failedCall; ///< empty: no fault struck
};

/// The plan for the next operation and the count of the last one.
class FaultDesk {
public:
    void arm(const FaultPlan& plan);
    FaultPlan take();

    void noteEnded(OperationCount count);
    OperationCount last() const;

private:
    mutable std::mutex mutex_;
    FaultPlan armed_;
    OperationCount last_;
};

class JudgedOperation : public Operation {
public:
    /// `desk`, where it is not null, gets the count at the end.
    JudgedOperation(const JudgeOptions& options, const FaultPlan& plan, ProgressFunction onProgress = {},
                    FaultDesk* desk = nullptr);
    ~JudgedOperation() override;

    bool mayRefuse() const override { return true; } // and counts what it is asked
    [[nodiscard]] std::optional<Refusal> refusalOf(const char* call) override;
    bool anyRefused() const override { return struck_; }

    /// Shuffled where the options say so, each iterate_generic in its own way.
    std::vector<A_long> passOrder(A_long passes) override;

    bool goesOn(A_long current, A_long total) override;

    int callsCounted() const { return counted_; }
    std::string failedCall() const;

private:
    const JudgeOptions& options_;
    const FaultPlan plan_;
    FaultDesk* const desk_;
    std::atomic<int> counted_{0};
    std::atomic<int> progressCalls_{0};
    std::atomic<unsigned> iterateCalls_{0};
    std::atomic<bool> struck_{false};
    mutable std::mutex mutex_;
    std::string failedCall_;
};

} // namespace kovalune::host::judge
