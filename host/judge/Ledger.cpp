#include "host/judge/Ledger.h"

#include <utility>

namespace kovalune::host::judge {

std::unique_ptr<Operation> Ledger::beginOperation(ProgressFunction onProgress) {
    return std::make_unique<JudgedOperation>(options_, faults_.take(), std::move(onProgress), &faults_);
}

void Ledger::called(const char* call, const std::string& arguments) {
    const std::lock_guard lock(mutex_);
    calls_.push_back({call, arguments});
}

void Ledger::misused(const std::string& text) {
    const std::lock_guard lock(mutex_);
    report_.misuse.push_back(text);
}

void Ledger::strayCheckin() {
    const std::lock_guard lock(mutex_);
    ++report_.strayCheckins;
}

void Ledger::paramsLeftOut(int open, int refused) {
    const std::lock_guard lock(mutex_);
    report_.paramCheckouts += open;
    report_.leftByFault += refused;
}

void Ledger::layersLeftOut(int open, int refused) {
    const std::lock_guard lock(mutex_);
    report_.layerCheckouts += open;
    report_.leftByFault += refused;
}

void Ledger::addGuardDamage(std::string text) {
    const std::lock_guard lock(mutex_);
    report_.guardDamage.push_back(std::move(text));
}

AuditReport Ledger::report() const {
    const std::lock_guard lock(mutex_);
    return report_;
}

void Ledger::reset() {
    const std::lock_guard lock(mutex_);
    report_ = {};
}

std::vector<CallRecord> Ledger::calls() const {
    const std::lock_guard lock(mutex_);
    return calls_;
}

void Ledger::clearCalls() {
    const std::lock_guard lock(mutex_);
    calls_.clear();
}

} // namespace kovalune::host::judge
