#include "render/LinkedEffect.h"

#include "hostapi/EntryPoint.h"
#include "render/LocaleGuard.h"

#include <atomic>

namespace kovalune::render {

namespace {

// The first call is of a command that hosts send one at a time.
PF_Err enterLinked(PF_Cmd command, PF_InData* in, PF_OutData* out, PF_ParamDef* params[], PF_LayerDef* output,
                   void* extra) {
    static std::atomic<bool> entered{false};
    if (entered) {
        return EntryPointFunc(command, in, out, params, output, extra);
    }
    const LocaleGuard guard;
    const PF_Err err = EntryPointFunc(command, in, out, params, output, extra);
    entered = true;
    return err;
}

} // namespace

host::EffectModule& linkedEffect() {
    static host::EffectModule effect = host::EffectModule::linked(enterLinked, host::SetDown::kNever);
    return effect;
}

host::HostOptions toolOptions(int threads) {
    host::HostOptions options;
    options.threads = threads;
    options.iterations = kToolIterations;
    return options;
}

} // namespace kovalune::render
