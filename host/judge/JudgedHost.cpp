#include "host/judge/JudgedHost.h"

#include "host/HostState.h"

#include <utility>

namespace kovalune::host::judge {

JudgedHost::JudgedHost(JudgeOptions options)
    : JudgeParts(std::move(options)), Host(judgeOptions, HostLayer{ledger, memory, manners}) {}

AuditReport JudgedHost::audit() const {
    AuditReport report = ledger.report();
    const HandleBalance handles = state().handles.balance();
    report.liveHandles = handles.live;
    report.liveLocks = handles.locks;
    report.liveSuites = state().suites.live();
    const WorldBalance worlds = state().worlds.balance();
    report.liveWorlds = worlds.live;
    report.leftByFault += worlds.refused;
    const auto keep = [&report](std::string damage) {
        if (!damage.empty()) {
            report.guardDamage.push_back(std::move(damage));
        }
    };
    state().worlds.forEach([&keep](const WorldMemory& world) { keep(GuardedMemory::damageOf(world)); });
    state().handles.forEach([&keep](const MemoryBlock& block) { keep(GuardedMemory::damageOf(block)); });
    return report;
}

} // namespace kovalune::host::judge
