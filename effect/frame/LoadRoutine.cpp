#include "effect/frame/LoadRoutine.h"

#include "effect/frame/EffectInstance.h"
#include "effect/params/ParamRegistry.h"

namespace kovalune {

bool loadRoutine(LoadReason reason) {
    switch (reason) {
    case LoadReason::kProcessDetach:
        paramRegistry().clear();
        effectInstance().freePendingErrors();
        return true;
    case LoadReason::kProcessAttach:
    case LoadReason::kThreadAttach:
    case LoadReason::kThreadDetach:
        return true;
    }
    return false;
}

} // namespace kovalune
