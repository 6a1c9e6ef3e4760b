// Tables of functions that the host puts at an effect's disposal with every command.
// All are plain C functions (cdecl on 32-bit Windows) and may be called only while the command runs.
#pragma once

#include "hostapi/Params.h"
#include "hostapi/Types.h"

struct PF_InData;

// Records that pass by pointer only.
struct PF_CustomUIInfo;
struct PF_LayerAudio;
struct PF_SampPB;
struct PF_CompositeMode;
struct PF_MaskWorld;
struct PF_FloatMatrix;

using PF_IteratePixel8Func = PF_Err (*)(void* refcon, A_long x, A_long y, PF_Pixel* in, PF_Pixel* out);
using PF_IteratePixel16Func = PF_Err (*)(void* refcon, A_long x, A_long y, PF_Pixel16* in, PF_Pixel16* out);

/// One pass of iterate_generic, `i` from 0 to below `iterations`. Passes run in any order, several at a time.
using PF_IterateGenericFunc = PF_Err (*)(void* refcon, A_long thread_index, A_long i, A_long iterations);

/// Stands for a function whose real arguments depend on what was asked for.
using PF_AnyFunc = void (*)();

struct PF_InteractCallbacks {
    PF_Err (*checkout_param)(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long what_time, A_long time_step,
                             A_u_long time_scale, PF_ParamDef* param);
    PF_Err (*checkin_param)(PF_ProgPtr effect_ref, PF_ParamDef* param);
    /// An index of -1 appends.
    PF_Err (*add_param)(PF_ProgPtr effect_ref, PF_ParamIndex index, PF_ParamDef* def);
    PF_Err (*abort)(PF_ProgPtr effect_ref);
    /// Not zero: stop, and return this code from the command.
    PF_Err (*progress)(PF_ProgPtr effect_ref, A_long current, A_long total);
    PF_Err (*register_ui)(PF_ProgPtr effect_ref, PF_CustomUIInfo* info);
    PF_Err (*checkout_layer_audio)(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long start, A_long duration,
                                   A_u_long time_scale, PF_UFixed rate, A_long bytes_per_sample,
                                   A_long num_channels, A_long fmt_signed, PF_LayerAudio** audio);
    PF_Err (*checkin_layer_audio)(PF_ProgPtr effect_ref, PF_LayerAudio* audio);
    /// Any of the six results may be null.
    PF_Err (*get_audio_data)(PF_ProgPtr effect_ref, PF_LayerAudio* audio, void** data, A_long* num_samples,
                             PF_UFixed* rate, A_long* bytes_per_sample, A_long* num_channels,
                             A_long* fmt_signed);
    void* reserved_str[3];
    void* reserved[10];
};

struct PF_ANSICallbacks {
    double (*atan)(double);
    double (*atan2)(double y, double x);
    double (*ceil)(double);
    double (*cos)(double);
    double (*exp)(double);
    double (*fabs)(double);
    double (*floor)(double);
    double (*fmod)(double x, double y);
    double (*hypot)(double x, double y);
    double (*log)(double);
    double (*log10)(double);
    double (*pow)(double x, double y);
    double (*sin)(double);
    double (*sqrt)(double);
    double (*tan)(double);
    int (*sprintf)(A_char* buffer, const A_char* format, ...);
    A_char* (*strcpy)(A_char* to, const A_char* from);
    double (*asin)(double);
    double (*acos)(double);
    A_long unused_longA[1];
};

/// Three-component colours are arrays of three PF_Fixed.
struct PF_ColorCallbacks {
    PF_Err (*RGBtoHLS)(PF_ProgPtr effect_ref, PF_Pixel* rgb, PF_Fixed* hls);
    PF_Err (*HLStoRGB)(PF_ProgPtr effect_ref, PF_Fixed* hls, PF_Pixel* rgb);
    PF_Err (*RGBtoYIQ)(PF_ProgPtr effect_ref, PF_Pixel* rgb, PF_Fixed* yiq);
    PF_Err (*YIQtoRGB)(PF_ProgPtr effect_ref, PF_Fixed* yiq, PF_Pixel* rgb);
    PF_Err (*Luminance)(PF_ProgPtr effect_ref, PF_Pixel* rgb, A_long* luminance);
    PF_Err (*Hue)(PF_ProgPtr effect_ref, PF_Pixel* rgb, A_long* hue);
    PF_Err (*Lightness)(PF_ProgPtr effect_ref, PF_Pixel* rgb, A_long* lightness);
    PF_Err (*Saturation)(PF_ProgPtr effect_ref, PF_Pixel* rgb, A_long* saturation);
};

struct PF_UtilCallbacks {
    PF_Err (*begin_sampling)(PF_ProgPtr effect_ref, PF_Quality quality, PF_ModeFlags mode, PF_SampPB* params);
    PF_Err (*subpixel_sample)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                              PF_Pixel* pixel);
    PF_Err (*area_sample)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                          PF_Pixel* pixel);
    void* get_batch_func_is_deprecated; ///< not to be called
    PF_Err (*end_sampling)(PF_ProgPtr effect_ref, PF_Quality quality, PF_ModeFlags mode, PF_SampPB* params);
    PF_Err (*composite_rect)(PF_ProgPtr effect_ref, PF_Rect* src_rect, A_long opacity, PF_EffectWorld* src,
                             A_long x, A_long y, PF_Field field, PF_XferMode mode, PF_EffectWorld* dst);
    PF_Err (*blend)(PF_ProgPtr effect_ref, const PF_EffectWorld* src1, const PF_EffectWorld* src2,
                    PF_Fixed ratio, PF_EffectWorld* dst);
    PF_Err (*convolve)(PF_ProgPtr effect_ref, PF_EffectWorld* src, const PF_Rect* area, PF_KernelFlags flags,
                       A_long size, void* a_kernel, void* r_kernel, void* g_kernel, void* b_kernel,
                       PF_EffectWorld* dst);
    PF_Err (*copy)(PF_ProgPtr effect_ref, PF_EffectWorld* src, PF_EffectWorld* dst, PF_Rect* src_r,
                   PF_Rect* dst_r);
    PF_Err (*fill)(PF_ProgPtr effect_ref, const PF_Pixel* colour, const PF_Rect* area, PF_EffectWorld* world);
    PF_Err (*gaussian_kernel)(PF_ProgPtr effect_ref, double radius, PF_KernelFlags flags, double multiplier,
                              A_long* diameter, void* kernel);
    PF_Err (*iterate)(PF_InData* in_data, A_long progress_base, A_long progress_final, PF_EffectWorld* src,
                      const PF_Rect* area, void* refcon, PF_IteratePixel8Func pixel_fn, PF_EffectWorld* dst);
    PF_Err (*premultiply)(PF_ProgPtr effect_ref, A_long forward, PF_EffectWorld* dst);
    PF_Err (*premultiply_color)(PF_ProgPtr effect_ref, PF_EffectWorld* src, const PF_Pixel* colour,
                                A_long forward, PF_EffectWorld* dst);
    PF_Err (*new_world)(PF_ProgPtr effect_ref, A_long width, A_long height, PF_NewWorldFlags flags,
                        PF_EffectWorld* world);
    PF_Err (*dispose_world)(PF_ProgPtr effect_ref, PF_EffectWorld* world);
    PF_Err (*iterate_origin)(PF_InData* in_data, A_long progress_base, A_long progress_final,
                             PF_EffectWorld* src, const PF_Rect* area, const PF_Point* origin, void* refcon,
                             PF_IteratePixel8Func pixel_fn, PF_EffectWorld* dst);
    PF_Err (*iterate_lut)(PF_InData* in_data, A_long progress_base, A_long progress_final,
                          PF_EffectWorld* src, const PF_Rect* area, A_u_char* a_lut, A_u_char* r_lut,
                          A_u_char* g_lut, A_u_char* b_lut, PF_EffectWorld* dst);
    PF_Err (*transfer_rect)(PF_ProgPtr effect_ref, PF_Quality quality, PF_ModeFlags mode, PF_Field field,
                            const PF_Rect* src_rect, const PF_EffectWorld* src,
                            const PF_CompositeMode* composite_mode, const PF_MaskWorld* mask, A_long x,
                            A_long y, PF_EffectWorld* dst);
    PF_Err (*transform_world)(PF_ProgPtr effect_ref, PF_Quality quality, PF_ModeFlags mode, PF_Field field,
                              const PF_EffectWorld* src, const PF_CompositeMode* composite_mode,
                              const PF_MaskWorld* mask, const PF_FloatMatrix* matrices, A_long num_matrices,
                              PF_Boolean src_to_dst_matrix, const PF_Rect* dst_rect, PF_EffectWorld* dst);
    PF_Handle (*host_new_handle)(A_HandleSize size);
    void* (*host_lock_handle)(PF_Handle handle);
    void (*host_unlock_handle)(PF_Handle handle);
    void (*host_dispose_handle)(PF_Handle handle);
    PF_Err (*get_callback_addr)(PF_ProgPtr effect_ref, PF_Quality quality, PF_ModeFlags mode, A_long which,
                                PF_AnyFunc* function);
    PF_Err (*app)(PF_ProgPtr effect_ref, A_long which, ...);
    PF_ANSICallbacks ansi;
    PF_ColorCallbacks colorCB;
    /// What `data` points to depends on `which`.
    PF_Err (*get_platform_data)(PF_ProgPtr effect_ref, PF_PlatDataID which, void* data);
    A_HandleSize (*host_get_handle_size)(PF_Handle handle);
    PF_Err (*iterate_origin_non_clip_src)(PF_InData* in_data, A_long progress_base, A_long progress_final,
                                          PF_EffectWorld* src, const PF_Rect* area, const PF_Point* origin,
                                          void* refcon, PF_IteratePixel8Func pixel_fn, PF_EffectWorld* dst);
    /// `iterations` may be PF_Iterations_ONCE_PER_PROCESSOR; the passes get the real number.
    PF_Err (*iterate_generic)(A_long iterations, void* refcon, PF_IterateGenericFunc pass_fn);
    PF_Err (*host_resize_handle)(A_HandleSize size, PF_Handle* handle);
    PF_Err (*subpixel_sample16)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                                PF_Pixel16* pixel);
    PF_Err (*area_sample16)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                            PF_Pixel16* pixel);
    PF_Err (*fill16)(PF_ProgPtr effect_ref, const PF_Pixel16* colour, const PF_Rect* area,
                     PF_EffectWorld* world);
    PF_Err (*premultiply_color16)(PF_ProgPtr effect_ref, PF_EffectWorld* src, const PF_Pixel16* colour,
                                  A_long forward, PF_EffectWorld* dst);
    PF_Err (*iterate16)(PF_InData* in_data, A_long progress_base, A_long progress_final, PF_EffectWorld* src,
                        const PF_Rect* area, void* refcon, PF_IteratePixel16Func pixel_fn,
                        PF_EffectWorld* dst);
    PF_Err (*iterate_origin16)(PF_InData* in_data, A_long progress_base, A_long progress_final,
                               PF_EffectWorld* src, const PF_Rect* area, const PF_Point* origin, void* refcon,
                               PF_IteratePixel16Func pixel_fn, PF_EffectWorld* dst);
    PF_Err (*iterate_origin_non_clip_src16)(PF_InData* in_data, A_long progress_base, A_long progress_final,
                                            PF_EffectWorld* src, const PF_Rect* area, const PF_Point* origin,
                                            void* refcon, PF_IteratePixel16Func pixel_fn,
                                            PF_EffectWorld* dst);
    /// `pixels` may be null, meaning the world's own.
    PF_Err (*get_pixel_data8)(PF_EffectWorld* world, PF_PixelPtr pixels, PF_Pixel** result);
    PF_Err (*get_pixel_data16)(PF_EffectWorld* world, PF_PixelPtr pixels, PF_Pixel16** result);
    A_long reserved[1];
};
