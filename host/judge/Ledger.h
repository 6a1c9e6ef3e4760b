// The judge's book of misuse, guard damage, things left behind and, if wanted, every call in order.
// Safe to write from several threads.
#pragma once

#include "host/CallWatch.h"
#include "host/judge/Audit.h"
#include "host/judge/Faults.h"
#include "host/judge/JudgeOptions.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace kovalune::host::judge {

class Ledger : public CallWatch {
public:
    Ledger(const JudgeOptions& options, FaultDesk& faults) : options_(options), faults_(faults) {}

    std::unique_ptr<Operation> beginOperation(ProgressFunction onProgress) override;
    bool logsCalls() const override { return options_.recordCalls; }
    void called(const char* call, const std::string& arguments) override;
    void misused(const std::string& text) override;
    void strayCheckin() override;
    void paramsLeftOut(int open, int refused) override;
    void layersLeftOut(int open, int refused) override;

    void addGuardDamage(std::string text);

    /// What the book holds; live memory and suites are counted elsewhere.
    AuditReport report() const;
    void reset(); ///< the log stays

    std::vector<CallRecord> calls() const;
    void clearCalls();

private:
    const JudgeOptions& options_;
    FaultDesk& faults_;
    mutable std::mutex mutex_;
    AuditReport report_;
    std::vector<CallRecord> calls_;
};

} // namespace kovalune::host::judge
