// What the judge has seen of an effect's manners: what is still held, and what was done wrong.
// Counts and misuse are always kept; guard bytes exist only with JudgeOptions::audit.
#pragma once

#include <string>
#include <vector>

namespace kovalune::host::judge {

/// The balance at one moment. Everything an effect must give back is 0 when it behaves.
struct AuditReport {
    int liveHandles = 0;    ///< without those that the host itself holds, such as sequence data
    int liveLocks = 0;      ///< of all live handles
    int liveSuites = 0;     ///< acquired and not released
    int liveWorlds = 0;     ///< made by the effect and not disposed of
    int paramCheckouts = 0; ///< still out when their command ended
    int layerCheckouts = 0; ///< likewise; the host takes the pixels back all the same
    int leftByFault = 0;   ///< of the kinds above, but alive because the host itself failed to take them back
    int strayCheckins = 0; ///< of parameters not checked out, after an injected fault (misuse without one)

    std::vector<std::string> misuse;
    std::vector<std::string> guardDamage;

    /// Nothing held, nothing misused, nothing damaged. What was left by a fault or strayed after one is excused.
    [[nodiscard]] bool clean() const;

    /// One line per finding; empty when clean.
    std::string text() const;
};

/// One host call in the order of arrival, such as {"AcquireSuite", "PF World Suite 2"}.
struct CallRecord {
    std::string call;
    std::string arguments;

    friend bool operator==(const CallRecord&, const CallRecord&) = default;
};

} // namespace kovalune::host::judge
