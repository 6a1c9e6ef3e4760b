#include "host/CommandContext.h"

#include "host/HostState.h"
#include "host/ParamStore.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <unordered_map>

namespace kovalune::host {

namespace {

thread_local CommandContext* threadContext = nullptr;

std::mutex& liveMutex() {
    static std::mutex mutex;
    return mutex;
}

/// The running commands of all hosts by their references.
std::unordered_map<PF_ProgPtr, CommandContext*>& liveContexts() {
    static std::unordered_map<PF_ProgPtr, CommandContext*> contexts;
    return contexts;
}

PF_ProgPtr nextReference() {
    static std::atomic<uintptr_t> last{0};
    const uintptr_t number = ++last;
    PF_ProgPtr reference = nullptr;
    std::memcpy(&reference, &number, sizeof number);
    return reference;
}

} // namespace

CommandContext::CommandContext(HostState& hostState, Operation& commandOperation, ParamStore& paramTable,
                               PF_Cmd cmd)
    : host(hostState), operation(commandOperation), params(paramTable), command(cmd),
      watched(hostState.watch.logsCalls() || commandOperation.mayRefuse()), reference_(nextReference()) {
    const std::lock_guard lock(liveMutex());
    liveContexts().emplace(reference_, this);
}

CommandContext::~CommandContext() {
    {
        const std::lock_guard lock(liveMutex());
        liveContexts().erase(reference_);
    }
    int open = 0;
    int excused = 0;
    for (const auto& [record, checkouts] : checkouts_) {
        open += checkouts.open - checkouts.excused;
        excused += checkouts.excused;
    }
    host.watch.paramsLeftOut(open, excused);
}

void CommandContext::fillLayer(PF_ParamDef& def) const {
    if (inputLayer != nullptr) {
        def.u.ld = *inputLayer;
    }
    host.manners.firstParamFilled(def);
}

PF_ParamDef CommandContext::definitionAt(A_long index, A_long time) const {
    PF_ParamDef def = params.definitionAt(index, time);
    if (index == 0) {
        fillLayer(def);
    }
    return def;
}

PF_ParamDef CommandContext::shownAt(A_long index) const {
    const auto place = static_cast<std::size_t>(index);
    return place < shown.size() ? shown[place] : definitionAt(index, currentTime);
}

void CommandContext::paramCheckedOut(const PF_ParamDef* record) {
    const std::lock_guard lock(mutex_);
    ++checkouts_[record].open;
}

bool CommandContext::paramCheckedIn(const PF_ParamDef* record) {
    const std::lock_guard lock(mutex_);
    const auto found = checkouts_.find(record);
    if (found == checkouts_.end()) {
        return false;
    }
    Checkouts& checkouts = found->second;
    --checkouts.open;
    checkouts.excused = std::min(checkouts.excused, checkouts.open);
    if (checkouts.open == 0) {
        checkouts_.erase(found);
    }
    return true;
}

void CommandContext::paramExcused(const PF_ParamDef* record) {
    const std::lock_guard lock(mutex_);
    const auto found = checkouts_.find(record);
    if (found != checkouts_.end()) {
        found->second.excused = std::min(found->second.excused + 1, found->second.open);
    }
}

CommandContext* currentContext() {
    return threadContext;
}

ContextScope::ContextScope(CommandContext* context) : previous_(threadContext) {
    threadContext = context;
}
ContextScope::~ContextScope() {
    threadContext = previous_;
}

CommandContext* contextOf(PF_ProgPtr reference, const char* call) {
    CommandContext* current = threadContext;
    if (current != nullptr && current->reference() == reference) {
        return current;
    }
    if (current != nullptr) {
        current->host.watch.misused(std::string(call) + " with a wrong effect reference");
        return nullptr;
    }
    const std::lock_guard lock(liveMutex());
    const auto found = liveContexts().find(reference);
    return found == liveContexts().end() ? nullptr : found->second;
}

} // namespace kovalune::host
