#include "effect/frame/BaseFilter.h"

#include "effect/frame/OptionDialog.h"
#include "effect/params/EnableRules.h"

namespace kovalune {

PF_Err BaseFilter::dispatch(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                            PF_LayerDef* output, void* extra) {
    switch (cmd) {
    case PF_Cmd_ABOUT:
        return about(in, out, params, output);
    case PF_Cmd_GLOBAL_SETUP:
        return globalSetup(in, out, params, output);
    case PF_Cmd_GLOBAL_SETDOWN:
        return globalSetdown(in, out, params, output);
    case PF_Cmd_PARAMS_SETUP:
        return paramsSetup(in, out, params, output);
    case PF_Cmd_SEQUENCE_SETUP:
        return sequenceSetup(in, out);
    case PF_Cmd_SEQUENCE_RESETUP:
        return sequenceResetup(in, out);
    case PF_Cmd_SEQUENCE_FLATTEN:
        return sequenceFlatten(in, out);
    case PF_Cmd_SEQUENCE_SETDOWN:
        return sequenceSetdown(in, out);
    case PF_Cmd_DO_DIALOG:
        showOptionDialog(in, params);
        return PF_Err_NONE;
    case PF_Cmd_RENDER:
        return render(in, out, params, output);
    case PF_Cmd_USER_CHANGED_PARAM:
        return userChangedParam(in, out, params, output, extra);
    case PF_Cmd_UPDATE_PARAMS_UI:
        return updateParamsUI(in, out, params, output);
    case PF_Cmd_EVENT:
        return event(in, out, params, output, extra);
    case PF_Cmd_QUERY_DYNAMIC_FLAGS:
        return queryDynamicFlags(in, out, params, output);
    case PF_Cmd_ARBITRARY_CALLBACK:
        return arbitraryCallback(in, out, params, output, extra);
    case PF_Cmd_SMART_PRE_RENDER:
        return smartPreRender(in, out, static_cast<PF_PreRenderExtra*>(extra));
    case PF_Cmd_SMART_RENDER:
        return smartRender(in, out, static_cast<PF_SmartRenderExtra*>(extra));
    default:
        return PF_Err_NONE;
    }
}

PF_Err BaseFilter::globalSetdown(PF_InData*, PF_OutData*, PF_ParamDef**, PF_LayerDef*) {
    return PF_Err_NONE;
}

PF_Err BaseFilter::userChangedParam(PF_InData*, PF_OutData*, PF_ParamDef**, PF_LayerDef*, void*) {
    return PF_Err_NONE;
}

PF_Err BaseFilter::updateParamsUI(PF_InData* in, PF_OutData*, PF_ParamDef** params, PF_LayerDef*) {
    return updateParamEnables(in, params);
}

PF_Err BaseFilter::queryDynamicFlags(PF_InData*, PF_OutData*, PF_ParamDef**, PF_LayerDef*) {
    return PF_Err_NONE;
}

PF_Err BaseFilter::event(PF_InData*, PF_OutData*, PF_ParamDef**, PF_LayerDef*, void*) {
    return PF_Err_NONE;
}

PF_Err BaseFilter::arbitraryCallback(PF_InData*, PF_OutData*, PF_ParamDef**, PF_LayerDef*, void*) {
    return PF_Err_NONE;
}

PF_Err BaseFilter::beforeRender(RenderSettings&) {
    return PF_Err_NONE;
}

PF_Err BaseFilter::firstCall(PF_InData*, PF_OutData*, PF_ParamDef**, PF_LayerDef*) {
    return PF_Err_NONE;
}

PF_Err BaseFilter::renderFrame(RenderSettings&) {
    return PF_Err_INTERNAL_STRUCT_DAMAGED;
}

} // namespace kovalune
