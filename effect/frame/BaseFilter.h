// The effect as a table of operations, one for each thing that the host asks of it. The objects have no
// state: all that belongs to a render lives in its RenderSettings.
#pragma once

#include "effect/share/RenderSettings.h"
#include "hostapi/HostApi.h"

namespace kovalune {

/// Every operation returns a host error code, 0 for success.
class BaseFilter {
public:
    BaseFilter() = default;
    virtual ~BaseFilter() = default;
    BaseFilter(const BaseFilter&) = delete;
    BaseFilter& operator=(const BaseFilter&) = delete;

    /// Turns a command into an operation; a command without one returns 0.
    virtual PF_Err dispatch(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                            PF_LayerDef* output, void* extra);

    virtual PF_Err about(PF_InData* in, PF_OutData* out, PF_ParamDef** params, PF_LayerDef* output);
    virtual PF_Err globalSetup(PF_InData* in, PF_OutData* out, PF_ParamDef** params, PF_LayerDef* output);
    virtual PF_Err globalSetdown(PF_InData* in, PF_OutData* out, PF_ParamDef** params, PF_LayerDef* output);
    virtual PF_Err paramsSetup(PF_InData* in, PF_OutData* out, PF_ParamDef** params, PF_LayerDef* output);
    virtual PF_Err userChangedParam(PF_InData* in, PF_OutData* out, PF_ParamDef** params, PF_LayerDef* output,
                                    void* extra);
    virtual PF_Err updateParamsUI(PF_InData* in, PF_OutData* out, PF_ParamDef** params, PF_LayerDef* output);
    virtual PF_Err render(PF_InData* in, PF_OutData* out, PF_ParamDef** params, PF_LayerDef* output);
    virtual PF_Err smartPreRender(PF_InData* in, PF_OutData* out, PF_PreRenderExtra* extra);
    virtual PF_Err smartRender(PF_InData* in, PF_OutData* out, PF_SmartRenderExtra* extra);
    virtual PF_Err sequenceSetup(PF_InData* in, PF_OutData* out);
    virtual PF_Err sequenceSetdown(PF_InData* in, PF_OutData* out);
    virtual PF_Err sequenceFlatten(PF_InData* in, PF_OutData* out);
    virtual PF_Err sequenceResetup(PF_InData* in, PF_OutData* out);
    virtual PF_Err queryDynamicFlags(PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                                     PF_LayerDef* output);
    virtual PF_Err event(PF_InData* in, PF_OutData* out, PF_ParamDef** params, PF_LayerDef* output,
                         void* extra);
    virtual PF_Err arbitraryCallback(PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                                     PF_LayerDef* output, void* extra);

    /// Asks the host for the layer with the output's own request: no margin, although the effect blurs.
    virtual PF_Err preRenderInput(PF_InData* in, PF_OutData* out, PF_PreRenderExtra* extra,
                                  RenderSettings& settings);
    virtual PF_Err beforeRender(RenderSettings& settings);
    virtual PF_Err sequenceDefault(PF_InData* in, PF_OutData* out);
    virtual PF_Err firstCall(PF_InData* in, PF_OutData* out, PF_ParamDef** params, PF_LayerDef* output);
    virtual PF_Err renderFrame(RenderSettings& settings);
};

/// Writes the about text into `return_msg`; the long form names the build.
void writeAboutText(PF_InData* in, PF_OutData* out, bool longForm);

} // namespace kovalune
