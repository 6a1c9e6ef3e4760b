#include "effect/frame/life/LoadRoutine.h"

#include "effect/frame/life/EffectInstance.h"
#include "effect/params/FxOptionDlg/DialogBase.h"
#include "effect/params/ParamRegistry.h"

namespace kovalune {

bool loadRoutine(LoadReason reason) {
    switch (reason) {
    case LoadReason::kProcessDetach:
        FxOptionDlg::freeDialogMap();
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
