#include "host/Host.h"

#include "host/HostState.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace kovalune::host {

namespace {

constexpr int kMostThreads = 64;
constexpr int kLargestPadding = 1 << 16;

void require(bool condition, const char* text) {
    if (!condition) {
        throw HostError(text);
    }
}

bool layoutNumber(int bytes) {
    return bytes >= 0 && bytes <= kLargestPadding && bytes % 4 == 0;
}

} // namespace

void checkOptions(const HostOptions& options) {
    require(options.threads >= 0 && options.threads <= kMostThreads, "threads must be 0 to 64");
    require(options.iterations >= 0, "iterations must not be negative");
    require(layoutNumber(options.rowPadding), "rowPadding must be a multiple of 4 from 0 to 65536");
    require(layoutNumber(options.rowGuard), "rowGuard must be a multiple of 4 from 0 to 65536");
    require(layoutNumber(options.dataOffset), "dataOffset must be a multiple of 4 from 0 to 65536");
    require(options.extraRecordBytes >= 0 && options.extraRecordBytes <= 32,
            "extraRecordBytes must be 0 to 32");
    require(options.timeScale != 0, "timeScale must not be 0");
}

int HostState::threadCount() const {
    if (options.threads > 0) {
        return std::min(options.threads, kMostThreads);
    }
    return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, kMostThreads);
}

int HostState::iterationCount() const {
    return options.iterations > 0 ? options.iterations : threadCount();
}

FaultPlan HostState::takePlan() {
    const std::lock_guard lock(mutex_);
    return std::exchange(armed_, FaultPlan{});
}

void HostState::armFaults(const FaultPlan& plan) {
    const std::lock_guard lock(mutex_);
    armed_ = plan;
}

void HostState::noteEnded(const Operation& operation) {
    const std::lock_guard lock(mutex_);
    lastCounted_ = operation.callsCounted();
    lastFailed_ = operation.failedCall();
}

int HostState::lastCallsCounted() const {
    const std::lock_guard lock(mutex_);
    return lastCounted_;
}

std::string HostState::lastFailedCall() const {
    const std::lock_guard lock(mutex_);
    return lastFailed_;
}

Host::Host(HostOptions options) : state_(std::make_unique<HostState>()) {
    checkOptions(options);
    state_->options = std::move(options);
}

Host::~Host() = default;

HostOptions& Host::options() {
    return state_->options;
}
const HostOptions& Host::options() const {
    return state_->options;
}

void Host::armFaults(const FaultPlan& plan) {
    state_->armFaults(plan);
}
int Host::callsCounted() const {
    return state_->lastCallsCounted();
}
std::string Host::failedCallName() const {
    return state_->lastFailedCall();
}

AuditReport Host::audit() const {
    AuditReport report = state_->ledger.report();
    const HandleBalance handles = state_->handles.balance();
    report.liveHandles = handles.live;
    report.liveLocks = handles.locks;
    report.liveSuites = state_->suites.live();
    const WorldBalance worlds = state_->worlds.balance();
    report.liveWorlds = worlds.live;
    report.leftByFault += worlds.leftByFault;
    for (std::vector<std::string> damage : {state_->worlds.findDamage(), state_->handles.findDamage()}) {
        report.guardDamage.insert(report.guardDamage.end(), damage.begin(), damage.end());
    }
    return report;
}

void Host::resetAudit() {
    state_->ledger.reset();
}

std::vector<CallRecord> Host::calls() const {
    return state_->ledger.calls();
}
void Host::clearCalls() {
    state_->ledger.clearCalls();
}

} // namespace kovalune::host
