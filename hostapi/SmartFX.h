// Records of the two-step render: a pre-render that says what is needed, then a render that takes it.
// Rectangles here are PF_LRect in both eras of the interface.
#pragma once

#include "hostapi/Types.h"

struct PF_RenderRequest {
    PF_LRect rect; ///< may be empty
    PF_Field field;
    PF_ChannelMask channel_mask;
    PF_Boolean preserve_rgb_of_zero_alpha;
    A_char unused[3];
    A_long reserved[4];
};

struct PF_CheckoutResult {
    PF_LRect result_rect;
    PF_LRect max_result_rect;
    PF_RationalScale par;
    PF_Boolean solid;
    PF_Boolean reservedB[3];
    A_long ref_width;
    A_long ref_height;
    A_long reserved[6];
};

struct PF_PreRenderInput {
    PF_RenderRequest output_request;
    int16_t bitdepth; ///< bits a channel: 8, 16 or 32
#ifdef KOVALUNE_HOST_LONG_RECTS
    const void* gpu_data;
    A_long what_gpu;
    A_u_long device_index;
#endif
};

using PF_DeletePreRenderDataFunc = void (*)(void* pre_render_data);

struct PF_PreRenderOutput {
    PF_LRect result_rect;     ///< within the request, unless RETURNS_EXTRA_PIXELS is set
    PF_LRect max_result_rect; ///< may not depend on the request
    PF_Boolean solid;
    PF_Boolean reserved;
    PF_RenderOutputFlags flags; ///< PF_RenderOutputFlag_...
    void* pre_render_data;      ///< the host's to dispose of, from the return of the pre-render on
    PF_DeletePreRenderDataFunc delete_pre_render_data_func; ///< may be null
};

struct PF_PreRenderCallbacks {
    /// `checkout_id` is the effect's choice; checkout_layer_pixels takes it later.
    PF_Err (*checkout_layer)(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long checkout_id,
                             const PF_RenderRequest* request, A_long what_time, A_long time_step,
                             A_u_long time_scale, PF_CheckoutResult* result);
#ifdef KOVALUNE_HOST_LONG_RECTS
    /// From version 13.9 on; before it the table ends above.
    PF_Err (*GuidMixInPtr)(PF_ProgPtr effect_ref, A_u_long size, const void* bytes);
#endif
};

struct PF_PreRenderExtra {
    PF_PreRenderInput* input;
    PF_PreRenderOutput* output;
    PF_PreRenderCallbacks* cb;
};

struct PF_SmartRenderInput {
    PF_RenderRequest output_request;
    int16_t bitdepth; ///< bits a channel: 8, 16 or 32
    void* pre_render_data;
#ifdef KOVALUNE_HOST_LONG_RECTS
    const void* gpu_data;
    A_long what_gpu;
    A_u_long device_index;
#endif
};

/// Worlds stay the host's; a layer's pixels are valid until checked in or until the command ends.
struct PF_SmartRenderCallbacks {
    PF_Err (*checkout_layer_pixels)(PF_ProgPtr effect_ref, A_long checkout_id, PF_EffectWorld** pixels);
    PF_Err (*checkin_layer_pixels)(PF_ProgPtr effect_ref, A_long checkout_id);
    PF_Err (*checkout_output)(PF_ProgPtr effect_ref, PF_EffectWorld** output);
};

struct PF_SmartRenderExtra {
    PF_SmartRenderInput* input;
    PF_SmartRenderCallbacks* cb;
};
