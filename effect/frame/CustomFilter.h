// This effect's own answers.
#pragma once

#include "effect/frame/BaseFilter.h"

namespace kovalune {

class CustomFilter final : public BaseFilter {
public:
    [[nodiscard]] PF_Err dispatch(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                                  PF_LayerDef* output, void* extra) override;

    /// Renders with the driver of the settings' pixel format; 514 for any other format.
    [[nodiscard]] PF_Err renderFrame(RenderSettings& settings) override;
};

} // namespace kovalune
