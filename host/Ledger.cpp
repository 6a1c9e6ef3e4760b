#include "host/Ledger.h"

#include <utility>

namespace kovalune::host {

void Ledger::addMisuse(std::string text) {
    const std::lock_guard lock(mutex_);
    report_.misuse.push_back(std::move(text));
}

void Ledger::addGuardDamage(std::string text) {
    const std::lock_guard lock(mutex_);
    report_.guardDamage.push_back(std::move(text));
}

void Ledger::addCall(std::string call, std::string arguments) {
    const std::lock_guard lock(mutex_);
    calls_.push_back({std::move(call), std::move(arguments)});
}

void Ledger::leaveParamCheckouts(int count, int byFault) {
    const std::lock_guard lock(mutex_);
    report_.paramCheckouts += count;
    report_.leftByFault += byFault;
}

void Ledger::leaveLayerCheckouts(int count, int byFault) {
    const std::lock_guard lock(mutex_);
    report_.layerCheckouts += count;
    report_.leftByFault += byFault;
}

void Ledger::addStrayCheckin() {
    const std::lock_guard lock(mutex_);
    ++report_.strayCheckins;
}

AuditReport Ledger::report() const {
    const std::lock_guard lock(mutex_);
    return report_;
}

std::vector<CallRecord> Ledger::calls() const {
    const std::lock_guard lock(mutex_);
    return calls_;
}

void Ledger::clearCalls() {
    const std::lock_guard lock(mutex_);
    calls_.clear();
}

void Ledger::reset() {
    const std::lock_guard lock(mutex_);
    report_ = {};
}

} // namespace kovalune::host
