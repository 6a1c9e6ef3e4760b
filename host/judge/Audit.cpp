#include "host/judge/Audit.h"

namespace kovalune::host::judge {

bool AuditReport::clean() const {
    return liveHandles == 0 && liveLocks == 0 && liveSuites == 0 && liveWorlds == 0 && paramCheckouts == 0 &&
           layerCheckouts == 0 && misuse.empty() && guardDamage.empty();
}

std::string AuditReport::text() const {
    std::string result;
    const auto count = [&result](int number, const char* what) {
        if (number != 0) {
            result += std::to_string(number) + " " + what + "\n";
        }
    };
    count(liveHandles, "handles not disposed of");
    count(liveLocks, "handle locks not undone");
    count(liveSuites, "suites not released");
    count(liveWorlds, "worlds not disposed of");
    count(paramCheckouts, "parameters not checked in");
    count(layerCheckouts, "layers not checked in");
    for (const std::string& line : misuse) {
        result += "misuse: " + line + "\n";
    }
    for (const std::string& line : guardDamage) {
        result += "damage: " + line + "\n";
    }
    return result;
}

} // namespace kovalune::host::judge
