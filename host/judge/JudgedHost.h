// The reference host with a judge over it: it books what an effect holds and does wrong, keeps guard bytes around what
// an effect writes, logs host calls, and makes them fail as planned.
#pragma once

#include "host/Host.h"
#include "host/judge/Audit.h"
#include "host/judge/Faults.h"
#include "host/judge/GuardedMemory.h"
#include "host/judge/JudgeOptions.h"
#include "host/judge/Ledger.h"
#include "host/judge/Misbehaviour.h"

#include <string>
#include <vector>

namespace kovalune::host::judge {

/// There before the host that they stand over, and until after its end.
struct JudgeParts {
    explicit JudgeParts(JudgeOptions given) : judgeOptions(std::move(given)) {}

    JudgeOptions judgeOptions;
    FaultDesk faults;
    Ledger ledger{judgeOptions, faults};
    GuardedMemory memory{judgeOptions, ledger};
    Misbehaviour manners{judgeOptions};
};

class JudgedHost : private JudgeParts, public Host {
public:
    /// Throws HostError for options out of range.
    explicit JudgedHost(JudgeOptions options = {});

    /// All of them, as Host::options has those of every host.
    JudgeOptions& options() { return judgeOptions; }
    const JudgeOptions& options() const { return judgeOptions; }

    /// The faults of the next operation; they are spent with it, also when none of them struck.
    void armFaults(const FaultPlan& plan) { faults.arm(plan); }

    /// Of the operation that ended last: how many fallible host calls it made, and which one was made to fail (empty:
    /// none).
    int callsCounted() const { return faults.last().calls; }
    std::string failedCallName() const { return faults.last().failedCall; }

    /// Checks all guard bytes too, so nothing may be writing pixels meanwhile.
    AuditReport audit() const;

    /// Forgets misuse, damage and all counts of things whose frame or command has ended. Live memory and suites stay
    /// counted.
    void resetAudit() { ledger.reset(); }

    std::vector<CallRecord> calls() const { return ledger.calls(); }
    void clearCalls() { ledger.clearCalls(); }
};

} // namespace kovalune::host::judge
