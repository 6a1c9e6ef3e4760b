// The road to a frame of hosts without SmartFX: PF_Cmd_RENDER reads the parameters and renders in one command.

#include "effect/frame/BaseFilter.h"
#include "effect/params/ParamGetter.h"
#include "effect/params/ReadOut.h"
#include "effect/share/AEUtil/WorldBasics.h"
#include "effect/share/Integers.h"

namespace kovalune {
namespace {

/// Hosts with rectangles of 32 bits may pass a corner that 16 bits do not hold. No world has it, so that such a rectangle
/// becomes one that no world holds either, and is no empty one: the frame's opening refuses it.
FrameRect frameRect(const PF_Rect& rect) {
    constexpr FrameRect kOutsideAll = {0, 0, -1, -1};
    const FrameRect narrow = {low16(rect.top), low16(rect.left), low16(rect.bottom), low16(rect.right)};
    const bool fits = narrow.top == rect.top && narrow.left == rect.left && narrow.bottom == rect.bottom &&
                      narrow.right == rect.right;
    return fits ? narrow : kOutsideAll;
}

} // namespace

PF_Err BaseFilter::render(PF_InData* in, PF_OutData* out, PF_ParamDef** params, PF_LayerDef* output) {
    PF_LayerDef* const input = &params[kInputLayer]->u.ld;
    if (in->appl_id == PF_AppID_PrMr) {
        return in->utils->copy(in->effect_ref, input, output, nullptr, nullptr);
    }
    RenderSettings settings;
    settings.inData = in;
    settings.outData = out;
    settings.inputWorld = input;
    settings.outputWorld = output;
    settings.extentRect = frameRect(in->extent_hint);

    GetParamByCheckout getter(in, params, false);
    ParameterCheckout checkout(getter);
    PF_Err err = AEUtil::queryPixelFormat(in, input, &settings.pixelFormat);
    if (err == PF_Err_NONE) {
        err = checkout.readInto(settings);
    }
    if (err == PF_Err_NONE) {
        err = renderFrame(settings);
    }
    const PF_Err givenBack = checkout.giveBack();
    return err != PF_Err_NONE ? err : givenBack;
}

} // namespace kovalune
