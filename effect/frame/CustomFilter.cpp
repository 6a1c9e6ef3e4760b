#include "effect/frame/CustomFilter.h"

#include "effect/pipeline/FrameDriver.h"

namespace kovalune {

PF_Err CustomFilter::dispatch(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                              PF_LayerDef* output, void* extra) {
    return BaseFilter::dispatch(cmd, in, out, params, output, extra);
}

PF_Err CustomFilter::renderFrame(RenderSettings& settings) {
    switch (settings.pixelFormat) {
    case PF_PixelFormat_ARGB128:
        return renderFrame32(settings);
    case PF_PixelFormat_ARGB64:
        return renderFrame16(settings);
    case PF_PixelFormat_ARGB32:
        return renderFrame8(settings);
    default:
        return PF_Err_UNRECOGNIZED_PARAM_TYPE;
    }
}

} // namespace kovalune
