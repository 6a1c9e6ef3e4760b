#include "host/Operation.h"

namespace kovalune::host {

std::optional<PF_Err> Operation::strike(const char* call) {
    const int number = counted_.fetch_add(1) + 1;
    if (number != plan_.failCall) {
        return std::nullopt;
    }
    const std::lock_guard lock(mutex_);
    failedCall_ = call;
    faultStruck_ = true;
    return plan_.failCode;
}

bool Operation::progressCancelled() {
    const int number = progressCalls_.fetch_add(1) + 1;
    if (plan_.cancelAtProgress > 0 && number >= plan_.cancelAtProgress) {
        cancelled_ = true;
    }
    return cancelled_;
}

std::string Operation::failedCall() const {
    const std::lock_guard lock(mutex_);
    return failedCall_;
}

} // namespace kovalune::host
