// The road to a frame of hosts with SmartFX: PF_Cmd_SMART_PRE_RENDER reads the parameters into a RenderSettings that waits in
// a host handle, PF_Cmd_SMART_RENDER adds the worlds and renders.

#include "effect/frame/BaseFilter.h"
#include "effect/params/ParamGetter.h"
#include "effect/params/ReadOut.h"
#include "effect/share/AEUtil/HandleLock.h"
#include "effect/share/AEUtil/Roomy.h"
#include "effect/share/AEUtil/WorldBasics.h"
#include "effect/share/Integers.h"

#include <algorithm>
#include <new>

namespace kovalune {
namespace {

constexpr A_long kLayerCheckoutId = 0;

FrameRect movedBy(const FrameRect& rect, int32_t dx, int32_t dy) {
    return {low16(wrappingAdd(rect.top, dy)), low16(wrappingAdd(rect.left, dx)),
            low16(wrappingAdd(rect.bottom, dy)), low16(wrappingAdd(rect.right, dx))};
}

bool isEmpty(const PF_LRect& rect) {
    return rect.left >= rect.right || rect.top >= rect.bottom;
}

void uniteInto(PF_LRect& rect, const PF_LRect& added) {
    if (isEmpty(rect)) {
        rect = added;
    } else if (!isEmpty(added)) {
        rect = {std::min(rect.left, added.left), std::min(rect.top, added.top),
                std::max(rect.right, added.right), std::max(rect.bottom, added.bottom)};
    }
}

PF_Err checkOutPixels(PF_InData* in, PF_SmartRenderExtra* extra, RenderSettings& settings) {
    settings.inputWorld = nullptr;
    settings.outputWorld = nullptr;
    const PF_SmartRenderCallbacks& callbacks = *extra->cb;
    const PF_Err err =
        callbacks.checkout_layer_pixels(in->effect_ref, kLayerCheckoutId, &settings.inputWorld);
    return err != PF_Err_NONE ? err : callbacks.checkout_output(in->effect_ref, &settings.outputWorld);
}

void fillRects(RenderSettings& settings) {
    const PF_EffectWorld& input = *settings.inputWorld;
    settings.extentRect = {0, 0, low16(input.height), low16(input.width)};
    settings.originRect = movedBy(settings.extentRect, input.origin_x, input.origin_y);
}

} // namespace

PF_Err BaseFilter::smartPreRender(PF_InData* in, PF_OutData* out, PF_PreRenderExtra* extra) {
    const AEUtil::NewHandle handle(in, sizeof(RenderSettings));
    if (handle.err() != PF_Err_NONE) {
        return handle.err();
    }
    auto* const settings = new (handle.memory()) RenderSettings();
    settings->fromPreRender = 1;
    extra->output->pre_render_data = handle.handle(); // the host's from here on

    GetParamByCheckout getter(in, nullptr, true);
    const PF_Err err = readParameters(settings, getter);
    return err != PF_Err_NONE ? err : preRenderInput(in, out, extra, *settings);
}

PF_Err BaseFilter::preRenderInput(PF_InData* in, PF_OutData*, PF_PreRenderExtra* extra, RenderSettings&) {
    const PF_RenderRequest request = extra->input->output_request;
    AEUtil::Roomy<PF_CheckoutResult> answer;
    const PF_Err err = extra->cb->checkout_layer(in->effect_ref, kInputLayer, kLayerCheckoutId, &request,
                                                 in->current_time, in->time_step, in->time_scale, &answer);
    uniteInto(extra->output->result_rect, answer.result_rect);
    uniteInto(extra->output->max_result_rect, answer.max_result_rect);
    return err;
}

PF_Err BaseFilter::smartRender(PF_InData* in, PF_OutData* out, PF_SmartRenderExtra* extra) {
    const AEUtil::HandleLock lock(in, static_cast<PF_Handle>(extra->input->pre_render_data));
    if (lock.memory() == nullptr) {
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
    RenderSettings& settings = *static_cast<RenderSettings*>(lock.memory());
    settings.inData = in;
    settings.outData = out;

    PF_Err err = checkOutPixels(in, extra, settings);
    if (settings.inputWorld != nullptr && settings.outputWorld != nullptr) {
        fillRects(settings);
        if (err == PF_Err_NONE) {
            err = AEUtil::queryPixelFormat(in, settings.inputWorld, &settings.pixelFormat);
        }
        if (err == PF_Err_NONE) {
            err = beforeRender(settings);
        }
        if (err == PF_Err_NONE) {
            err = renderFrame(settings);
        }
    }
    // After an error the layer stays checked out.
    return err != PF_Err_NONE ? err : extra->cb->checkin_layer_pixels(in->effect_ref, kLayerCheckoutId);
}

} // namespace kovalune
