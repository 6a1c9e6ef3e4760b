// The host's book of misuse, guard damage, things left behind and, if wanted, every call in order.
// Safe to write from several threads.
#pragma once

#include "host/Audit.h"

#include <mutex>
#include <string>
#include <vector>

namespace kovalune::host {

class Ledger {
public:
    void addMisuse(std::string text);
    void addGuardDamage(std::string text);
    void addCall(std::string call, std::string arguments);

    /// Check-outs that were still open when their command ended; `byFault`: the host refused to take them
    /// back.
    void leaveParamCheckouts(int count, int byFault);
    void leaveLayerCheckouts(int count, int byFault);
    void addStrayCheckin();

    /// Fills in what this book holds; what lives elsewhere is the caller's to add.
    AuditReport report() const;
    std::vector<CallRecord> calls() const;
    void clearCalls();
    void reset();

private:
    mutable std::mutex mutex_;
    AuditReport report_;
    std::vector<CallRecord> calls_;
};

} // namespace kovalune::host
