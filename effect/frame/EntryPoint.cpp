// The one function that the host calls, for every command, and the capture of everything that goes wrong
// below it.

#include "hostapi/EntryPoint.h"

#include "effect/frame/life/EffectInstance.h"
#include "effect/share/AEUtil/AEException.h"
#include "effect/share/AEUtil/SuiteHolder.h"

#include <cstdio>
#include <exception>

namespace {

using namespace kovalune;

PF_Err runCommand(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef** params, PF_LayerDef* output,
                  void* extra) {
    EffectInstance& effect = effectInstance();
    PF_Err result = effect.setUpOnFirstCall(in, out, params, output);
    effect.pendingErrors().clear();
    if (result == PF_Err_NONE) {
        result = effect.filter().dispatch(cmd, in, out, params, output, extra);
    }
    if (cmd == PF_Cmd_GLOBAL_SETDOWN) {
        effect.end();
    }
    if (result == PF_Err_NONE) {
        result = effect.pendingErrors().first().value_or(PF_Err_NONE);
    }
    return result;
}

void writeMessage(PF_OutData* out, const char* text) {
    std::snprintf(out->return_msg, sizeof out->return_msg, "%s", text);
}

/// The code of the exception in flight, whose message goes to the host.
PF_Err captureException(PF_OutData* out) {
    try {
        throw;
    } catch (const AEUtil::AEException& exception) {
        writeMessage(out, exception.what());
        return exception.code();
    } catch (const std::exception& exception) {
        writeMessage(out, exception.what());
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    } catch (long code) {
        const auto err = static_cast<PF_Err>(code);
        std::snprintf(out->return_msg, sizeof out->return_msg, "error code = %d\n%s", err,
                      AEUtil::errorName(err));
        return err;
    } catch (...) {
        writeMessage(out, "不明なエラー");
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
}

} // namespace

// On Windows Kovalune.def exports it: what the code itself said would hold for every library that the effect is linked into.
#if defined(_WIN32)
#define KOVALUNE_EXPORT
#else
#define KOVALUNE_EXPORT __attribute__((visibility("default")))
#endif

extern "C" KOVALUNE_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data,
                                                 PF_ParamDef* params[], PF_LayerDef* output, void* extra) {
    // Outside the capture: without a basic suite nothing can be done, and the failure leaves as an exception.
    AEUtil::requireBasicSuite(in_data->pica_basicP);
    try {
        return runCommand(cmd, in_data, out_data, params, output, extra);
    } catch (...) {
        return captureException(out_data);
    }
}
