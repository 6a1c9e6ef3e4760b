// The reference host: its options, memory pools, threads, suites and audit, shared by its sessions.
// Several hosts may live in one process, and sessions of one host may render on several threads at once.
#pragma once

#include "host/Audit.h"
#include "host/HostError.h"
#include "host/Options.h"

#include <memory>
#include <string>
#include <vector>

namespace kovalune::host {

struct HostState;

class Host {
public:
    /// Throws HostError for options out of range.
    explicit Host(HostOptions options = {});
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// May be changed whenever no command runs; the next command goes by the new values, and is refused
    /// with a HostError if one of them is out of range.
    HostOptions& options();
    const HostOptions& options() const;

    /// The faults of the next operation; they are spent with it, also when none of them struck.
    void armFaults(const FaultPlan& plan);

    /// Of the operation that ended last: how many fallible host calls it made, and which one was made to
    /// fail (empty: none). The results of run() and render() carry the same for their own operation.
    int callsCounted() const;
    std::string failedCallName() const;

    /// Checks all guard bytes too, so nothing may be writing pixels meanwhile.
    AuditReport audit() const;

    /// Forgets misuse, damage and all counts of things whose frame or command has ended. Live memory and
    /// suites stay counted.
    void resetAudit();

    std::vector<CallRecord> calls() const;
    void clearCalls();

    /// For the host's own parts.
    HostState& state() const { return *state_; }

private:
    std::unique_ptr<HostState> state_;
};

} // namespace kovalune::host
