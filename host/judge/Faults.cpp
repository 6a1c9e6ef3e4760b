#include "host/judge/Faults.h"

#include <cstddef>
#include <numeric>
#include <random>
#include <utility>

namespace kovalune::host::judge {

void FaultDesk::arm(const FaultPlan& plan) {
    const std::lock_guard lock(mutex_);
    armed_ = plan;
}

FaultPlan FaultDesk::take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(armed_, FaultPlan{});
}

void FaultDesk::noteEnded(OperationCount count) {
    const std::lock_guard lock(mutex_);
    last_ = std::move(count);
}

OperationCount FaultDesk::last() const {
    const std::lock_guard lock(mutex_);
    return last_;
}

JudgedOperation::JudgedOperation(const JudgeOptions& options, const FaultPlan& plan,
                                 ProgressFunction onProgress, FaultDesk* desk)
    : Operation(std::move(onProgress)), options_(options), plan_(plan), desk_(desk) {}

JudgedOperation::~JudgedOperation() {
    if (desk_ != nullptr) {
        desk_->noteEnded({counted_, std::move(failedCall_)});
    }
}

std::optional<Refusal> JudgedOperation::refusalOf(const char* call) {
    const int number = counted_.fetch_add(1) + 1;
    if (number != plan_.failCall) {
        return std::nullopt;
    }
    const std::lock_guard lock(mutex_);
    failedCall_ = call;
    struck_ = true;
    return Refusal{plan_.failCode, plan_.failIterateAfter};
}

std::vector<A_long> JudgedOperation::passOrder(A_long passes) {
    if (!options_.shuffleIterations) {
        return {};
    }
    std::vector<A_long> order(static_cast<std::size_t>(passes));
    std::iota(order.begin(), order.end(), 0);
    // std::shuffle is left to each library; this order is the same with all of them.
    std::mt19937_64 random(options_.shuffleSeed + iterateCalls_++);
    for (std::size_t left = order.size(); left > 1; --left) {
        std::swap(order[left - 1], order[static_cast<std::size_t>(random() % left)]);
    }
    return order;
}

bool JudgedOperation::goesOn(A_long current, A_long total) {
    if (options_.onProgress && !options_.onProgress(current, total)) {
        cancel();
    }
    const int number = progressCalls_.fetch_add(1) + 1;
    if (plan_.cancelAtProgress > 0 && number >= plan_.cancelAtProgress) {
        cancel();
    }
    return Operation::goesOn(current, total);
}

std::string JudgedOperation::failedCall() const {
    const std::lock_guard lock(mutex_);
    return failedCall_;
}

} // namespace kovalune::host::judge
