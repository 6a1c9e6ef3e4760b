// The one function of an effect that a host calls, under this name.
// It may let an exception out, so it is not noexcept; hosts built here must be ready for one.
#pragma once

#include "hostapi/InOutData.h"

/// `extra` depends on the command: PF_PreRenderExtra, PF_SmartRenderExtra, or null.
using PF_EntryPoint = PF_Err (*)(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                                 PF_LayerDef* output, void* extra);

/// For programs that link the effect in; the others look the name up in its file.
extern "C" PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                                 PF_LayerDef* output, void* extra);
