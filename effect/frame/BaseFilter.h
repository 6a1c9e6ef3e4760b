// The effect as a table of operations, one for each thing that the host asks of it. The objects have no
// state: all that belongs to a render lives in its RenderSettings.
#pragma once

#include "effect/share/RenderSettings.h"
#include "hostapi/HostApi.h"

namespace kovalune {

/// The host's index of the layer that the effect is on.
inline constexpr PF_ParamIndex kInputLayer = 0;

/// Every operation returns a host error code, 0 for success. The table of operations is frozen: also those that have
/// nothing to do here stay, in this order.
class BaseFilter {
public:
    BaseFilter() = default;
    virtual ~BaseFilter() = default;
    BaseFilter(const BaseFilter&) = delete;
    BaseFilter& operator=(const BaseFilter&) = delete;

    /// Turns a command into an operation; a command without one returns 0. Found in BaseFilter.cpp, as all that only return
    /// a code.
    [[nodiscard]] virtual PF_Err dispatch(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                                          PF_LayerDef* output, void* extra);

    // The effect's life: found in life/SetUp.cpp, but for the end.
    [[nodiscard]] virtual PF_Err about(PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                                       PF_LayerDef* output);
    [[nodiscard]] virtual PF_Err globalSetup(PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                                             PF_LayerDef* output);
    [[nodiscard]] virtual PF_Err globalSetdown(PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                                               PF_LayerDef* output);
    [[nodiscard]] virtual PF_Err paramsSetup(PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                                             PF_LayerDef* output);

    // What the user does with the controls. Greying them out is found in params/EnableRules.cpp.
    [[nodiscard]] virtual PF_Err userChangedParam(PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                                                  PF_LayerDef* output, void* extra);
    [[nodiscard]] virtual PF_Err updateParamsUI(PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                                                PF_LayerDef* output);

    // The two roads to a frame: found in render/LegacyRender.cpp and render/SmartRender.cpp.
    [[nodiscard]] virtual PF_Err render(PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                                        PF_LayerDef* output);
    [[nodiscard]] virtual PF_Err smartPreRender(PF_InData* in, PF_OutData* out, PF_PreRenderExtra* extra);
    [[nodiscard]] virtual PF_Err smartRender(PF_InData* in, PF_OutData* out, PF_SmartRenderExtra* extra);

    // An instance's block in the project: found in sequence/SequenceData.cpp.
    [[nodiscard]] virtual PF_Err sequenceSetup(PF_InData* in, PF_OutData* out);
    [[nodiscard]] virtual PF_Err sequenceSetdown(PF_InData* in, PF_OutData* out);
    [[nodiscard]] virtual PF_Err sequenceFlatten(PF_InData* in, PF_OutData* out);
    [[nodiscard]] virtual PF_Err sequenceResetup(PF_InData* in, PF_OutData* out);

    [[nodiscard]] virtual PF_Err queryDynamicFlags(PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                                                   PF_LayerDef* output);
    [[nodiscard]] virtual PF_Err event(PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                                       PF_LayerDef* output, void* extra);
    [[nodiscard]] virtual PF_Err arbitraryCallback(PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                                                   PF_LayerDef* output, void* extra);

    /// Asks the host for the layer with the output's own request: no margin, although the effect blurs. Found in
    /// render/SmartRender.cpp.
    [[nodiscard]] virtual PF_Err preRenderInput(PF_InData* in, PF_OutData* out, PF_PreRenderExtra* extra,
                                                RenderSettings& settings);
    [[nodiscard]] virtual PF_Err beforeRender(RenderSettings& settings);
    /// Found in sequence/SequenceData.cpp.
    [[nodiscard]] virtual PF_Err sequenceDefault(PF_InData* in, PF_OutData* out);
    [[nodiscard]] virtual PF_Err firstCall(PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                                           PF_LayerDef* output);
    /// The effect's own is found in CustomFilter.cpp.
    [[nodiscard]] virtual PF_Err renderFrame(RenderSettings& settings);
};

/// Writes the about text into `return_msg`; the long form names the build. Found in life/SetUp.cpp.
void writeAboutText(PF_InData* in, PF_OutData* out, bool longForm);

} // namespace kovalune
