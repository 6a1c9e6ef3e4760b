#include "host/CallbackSupport.h"
#include "host/ParamStore.h"
#include "host/SmartFrame.h"

namespace kovalune::host {

namespace {

PF_Err outsideOfItsCommand(CommandContext& context, const char* call) {
    context.host.watch.misused(joined(call, "outside of its command"));
    return PF_Err_INVALID_CALLBACK;
}

PF_Err checkoutLayer(PF_ProgPtr ref, PF_ParamIndex index, A_long id, const PF_RenderRequest* request,
                     A_long time, A_long step, A_u_long scale, PF_CheckoutResult* result) {
    const auto arguments = [&] {
        const PF_LRect rect = request != nullptr ? request->rect : PF_LRect{};
        return joined(index, id, rect.left, rect.top, rect.right, rect.bottom, time, step, scale);
    };
    return countedCall("checkout_layer", ref, arguments, [&](CommandContext& context) -> PF_Err {
        if (context.smart == nullptr || context.command != PF_Cmd_SMART_PRE_RENDER) {
            return outsideOfItsCommand(context, "checkout_layer");
        }
        if (request == nullptr || result == nullptr) {
            return PF_Err_BAD_CALLBACK_PARAM;
        }
        if (index < 0 || index >= context.params.size()) {
            return PF_Err_INVALID_INDEX;
        }
        const PF_ParamDef param = context.params.definitionAt(index, 0);
        handOver(context, result);
        return context.smart->checkoutLayer(index, id, *request, param, *result);
    });
}

PF_Err checkoutLayerPixels(PF_ProgPtr ref, A_long id, PF_EffectWorld** pixels) {
    return countedCall(
        "checkout_layer_pixels", ref, [&] { return joined(id); },
        [&](CommandContext& context) -> PF_Err {
            if (context.smart == nullptr || context.command != PF_Cmd_SMART_RENDER) {
                return outsideOfItsCommand(context, "checkout_layer_pixels");
            }
            if (pixels == nullptr) {
                return PF_Err_BAD_CALLBACK_PARAM;
            }
            return context.smart->checkoutPixels(id, *pixels);
        });
}

PF_Err checkinLayerPixels(PF_ProgPtr ref, A_long id) {
    const auto body = [&](CommandContext& context) -> PF_Err {
        if (context.smart == nullptr || context.command != PF_Cmd_SMART_RENDER) {
            return outsideOfItsCommand(context, "checkin_layer_pixels");
        }
        return context.smart->checkinPixels(id);
    };
    return countedCall(
        "checkin_layer_pixels", ref, [&] { return joined(id); }, body,
        [&](CommandContext& context) {
            if (context.smart != nullptr) {
                context.smart->excuse(id);
            }
        });
}

PF_Err checkoutOutput(PF_ProgPtr ref, PF_EffectWorld** output) {
    return countedCall("checkout_output", ref, noArguments, [&](CommandContext& context) -> PF_Err {
        if (context.smart == nullptr || context.command != PF_Cmd_SMART_RENDER) {
            return outsideOfItsCommand(context, "checkout_output");
        }
        if (output == nullptr) {
            return PF_Err_BAD_CALLBACK_PARAM;
        }
        *output = context.host.manners.givesOutputWorld() ? context.smart->output() : nullptr;
        return PF_Err_NONE;
    });
}

} // namespace

PF_PreRenderCallbacks* preRenderCallbacks() {
    static PF_PreRenderCallbacks table = [] {
        PF_PreRenderCallbacks made{};
        made.checkout_layer = checkoutLayer;
#ifdef KOVALUNE_HOST_LONG_RECTS
        made.GuidMixInPtr = Unsupported<"GuidMixInPtr">::call;
#endif
        return made;
    }();
    return &table;
}

PF_SmartRenderCallbacks* smartRenderCallbacks() {
    static PF_SmartRenderCallbacks table{checkoutLayerPixels, checkinLayerPixels, checkoutOutput};
    return &table;
}

} // namespace kovalune::host
