#include "host/CallbackSupport.h"
#include "host/CallbackTables.h"
#include "host/ParamStore.h"

#include <cstdint>
#include <limits>

namespace kovalune::host {

namespace {

/// A time in another scale in units of the host's own, towards the past.
A_long hostTime(A_long time, A_u_long scale, A_u_long hostScale) {
    if (scale == hostScale) {
        return time;
    }
    const int64_t scaled = int64_t{time} * hostScale;
    const int64_t floored = scaled / scale - (scaled % scale < 0 ? 1 : 0);
    return static_cast<A_long>(
        std::clamp<int64_t>(floored, std::numeric_limits<A_long>::min(), std::numeric_limits<A_long>::max()));
}

PF_Err checkoutParam(PF_ProgPtr ref, PF_ParamIndex index, A_long time, A_long step, A_u_long scale,
                     PF_ParamDef* param) {
    const auto arguments = [&] { return joined(index, time, step, scale); };
    return countedCall("checkout_param", ref, arguments, [&](CommandContext& context) -> PF_Err {
        if (param == nullptr || scale == 0) {
            return PF_Err_BAD_CALLBACK_PARAM;
        }
        if (index < 0 || index >= context.params.size()) {
            return PF_Err_INVALID_INDEX;
        }
        *param = context.definitionAt(index, hostTime(time, scale, context.host.options.timeScale));
        handOver(context, param);
        context.paramCheckedOut(param);
        return PF_Err_NONE;
    });
}

PF_Err checkinParam(PF_ProgPtr ref, PF_ParamDef* param) {
    const auto body = [&](CommandContext& context) -> PF_Err {
        if (context.paramCheckedIn(param)) {
            return PF_Err_NONE;
        }
        if (context.operation.anyRefused()) {
            context.host.watch.strayCheckin();
        } else {
            context.host.watch.misused("check-in of a parameter that is not checked out");
        }
        return PF_Err_BAD_CALLBACK_PARAM;
    };
    return countedCall("checkin_param", ref, noArguments, body,
                       [&](CommandContext& context) { context.paramExcused(param); });
}

PF_Err addParam(PF_ProgPtr ref, PF_ParamIndex index, PF_ParamDef* def) {
    const auto arguments = [&] { return joined(index, def != nullptr ? def->name : "null"); };
    return countedCall("add_param", ref, arguments, [&](CommandContext& context) -> PF_Err {
        if (context.command != PF_Cmd_PARAMS_SETUP) {
            context.host.watch.misused("add_param outside of the parameter set-up");
            return PF_Err_INVALID_CALLBACK;
        }
        return def == nullptr ? PF_Err_BAD_CALLBACK_PARAM : context.params.add(index, *def);
    });
}

PF_Err abortRequested(PF_ProgPtr ref) {
    return shielded(PF_Err{PF_Err_OUT_OF_MEMORY}, [&]() -> PF_Err {
        const CommandContext* context = contextOf(ref, "abort");
        if (context == nullptr) {
            return PF_Err_BAD_CALLBACK_PARAM;
        }
        return context->operation.cancelled() ? PF_Interrupt_CANCEL : PF_Err_NONE;
    });
}

PF_Err progress(PF_ProgPtr ref, A_long current, A_long total) {
    const auto arguments = [&] { return joined(current, total); };
    return countedCall("progress", ref, arguments, [&](CommandContext& context) -> PF_Err {
        return context.operation.goesOn(current, total) ? PF_Err_NONE : PF_Interrupt_CANCEL;
    });
}

} // namespace

PF_InteractCallbacks interactCallbacks() {
    PF_InteractCallbacks table{};
    table.checkout_param = checkoutParam;
    table.checkin_param = checkinParam;
    table.add_param = addParam;
    table.abort = abortRequested;
    table.progress = progress;
    table.register_ui = Unsupported<"register_ui">::call;
    table.checkout_layer_audio = Unsupported<"checkout_layer_audio">::call;
    table.checkin_layer_audio = Unsupported<"checkin_layer_audio">::call;
    table.get_audio_data = Unsupported<"get_audio_data">::call;
    return table;
}

} // namespace kovalune::host
