// The records' offsets, sizes and alignments.
#include "hostapi/LayoutChecks.h"

#include <type_traits>

CHECK_SIZE(A_long, 4, 4, 4);
CHECK_SIZE(A_u_long, 4, 4, 4);
CHECK_SIZE(A_short, 2, 2, 2);
CHECK_SIZE(A_u_short, 2, 2, 2);
CHECK_SIZE(A_char, 1, 1, 1);
CHECK_SIZE(A_u_char, 1, 1, 1);
CHECK_SIZE(A_Boolean, 1, 1, 1);
CHECK_SIZE(PF_Boolean, 1, 1, 1);
CHECK_SIZE(PF_FpShort, 4, 4, 4);
CHECK_SIZE(PF_FpLong, 8, 8, 8);
CHECK_SIZE(PF_Err, 4, 4, 4);
CHECK_SIZE(PF_Precision, 2, 2, 2);
CHECK_SIZE(PF_ValueDisplayFlags, 2, 2, 2);
CHECK_SIZE(PF_FSliderFlags, 4, 4, 4);
CHECK_SIZE(PF_RenderOutputFlags, 2, 2, 2);
CHECK_SIZE(PF_Fixed, 4, 4, 4);
CHECK_SIZE(PF_Handle, 4, 8, 8);
static_assert(std::is_pointer_v<PF_ProgPtr>);
CHECK_SIZE(A_HandleSize, 4, 8, 8);
CHECK_SIZE(PF_HLS_Pixel, 12, 12, 12);
CHECK_SIZE(PF_YIQ_Pixel, 12, 12, 12);
CHECK_SIZE(PF_RGB_Pixel, 12, 12, 12);

CHECK_OFFSET(PF_SpecVersion, major, 0, 0, 0);
CHECK_OFFSET(PF_SpecVersion, minor, 2, 2, 2);
CHECK_SIZE(PF_SpecVersion, 4, 4, 4);

CHECK_OFFSET(PF_RationalScale, num, 0, 0, 0);
CHECK_OFFSET(PF_RationalScale, den, 4, 4, 4);
CHECK_SIZE(PF_RationalScale, 8, 8, 8);

CHECK_OFFSET(PF_LRect, left, 0, 0, 0);
CHECK_OFFSET(PF_LRect, top, 4, 4, 4);
CHECK_OFFSET(PF_LRect, right, 8, 8, 8);
CHECK_OFFSET(PF_LRect, bottom, 12, 12, 12);
CHECK_SIZE(PF_LRect, 16, 16, 16);

CHECK_OFFSET(PF_Rect, top, 0, 4, 0);
CHECK_OFFSET(PF_Rect, left, 2, 0, 2);
CHECK_OFFSET(PF_Rect, bottom, 4, 12, 4);
CHECK_OFFSET(PF_Rect, right, 6, 8, 6);
CHECK_SIZE(PF_Rect, 8, 16, 8);
CHECK_ALIGN(PF_Rect, 2, 4, 2);

CHECK_OFFSET(PF_Point, v, 0, 4, 0);
CHECK_OFFSET(PF_Point, h, 2, 0, 2);
CHECK_SIZE(PF_Point, 4, 8, 4);

CHECK_OFFSET(PF_Pixel, alpha, 0, 0, 0);
CHECK_OFFSET(PF_Pixel, red, 1, 1, 1);
CHECK_OFFSET(PF_Pixel, green, 2, 2, 2);
CHECK_OFFSET(PF_Pixel, blue, 3, 3, 3);
CHECK_SIZE(PF_Pixel, 4, 4, 4);

CHECK_OFFSET(PF_Pixel16, alpha, 0, 0, 0);
CHECK_OFFSET(PF_Pixel16, red, 2, 2, 2);
CHECK_OFFSET(PF_Pixel16, green, 4, 4, 4);
CHECK_OFFSET(PF_Pixel16, blue, 6, 6, 6);
CHECK_SIZE(PF_Pixel16, 8, 8, 8);

CHECK_OFFSET(PF_PixelFloat, alpha, 0, 0, 0);
CHECK_OFFSET(PF_PixelFloat, red, 4, 4, 4);
CHECK_OFFSET(PF_PixelFloat, green, 8, 8, 8);
CHECK_OFFSET(PF_PixelFloat, blue, 12, 12, 12);
CHECK_SIZE(PF_PixelFloat, 16, 16, 16);

CHECK_OFFSET(PF_EffectWorld, reserved0, 0, 0, 0);
CHECK_OFFSET(PF_EffectWorld, reserved1, 4, 8, 8);
CHECK_OFFSET(PF_EffectWorld, world_flags, 8, 16, 16);
CHECK_OFFSET(PF_EffectWorld, data, 12, 24, 24);
CHECK_OFFSET(PF_EffectWorld, rowbytes, 16, 32, 32);
CHECK_OFFSET(PF_EffectWorld, width, 20, 36, 36);
CHECK_OFFSET(PF_EffectWorld, height, 24, 40, 40);
CHECK_OFFSET(PF_EffectWorld, extent_hint, 28, 44, 44);
CHECK_OFFSET(PF_EffectWorld, platform_ref, 36, 64, 56);
CHECK_OFFSET(PF_EffectWorld, reserved_long1, 40, 72, 64);
CHECK_OFFSET(PF_EffectWorld, reserved_long4, 44, 80, 72);
CHECK_OFFSET(PF_EffectWorld, pix_aspect_ratio, 48, 88, 80);
CHECK_OFFSET(PF_EffectWorld, reserved_long2, 56, 96, 88);
CHECK_OFFSET(PF_EffectWorld, origin_x, 60, 104, 96);
CHECK_OFFSET(PF_EffectWorld, origin_y, 64, 108, 100);
CHECK_OFFSET(PF_EffectWorld, reserved_long3, 68, 112, 104);
CHECK_OFFSET(PF_EffectWorld, dephault, 72, 116, 108);
CHECK_SIZE(PF_EffectWorld, 76, 120, 112);
CHECK_ALIGN(PF_EffectWorld, 4, 8, 8);

CHECK_OFFSET(PF_SoundFormatInfo, rateF, 0, 0, 0);
CHECK_OFFSET(PF_SoundFormatInfo, num_channels, 8, 8, 8);
CHECK_OFFSET(PF_SoundFormatInfo, format, 10, 10, 10);
CHECK_OFFSET(PF_SoundFormatInfo, sample_size, 12, 12, 12);
CHECK_SIZE(PF_SoundFormatInfo, 16, 16, 16);
CHECK_ALIGN(PF_SoundFormatInfo, 8, 8, 8);

CHECK_OFFSET(PF_SoundWorld, fi, 0, 0, 0);
CHECK_OFFSET(PF_SoundWorld, num_samples, 16, 16, 16);
CHECK_OFFSET(PF_SoundWorld, dataP, 20, 24, 24);
CHECK_SIZE(PF_SoundWorld, 24, 32, 32);
CHECK_ALIGN(PF_SoundWorld, 8, 8, 8);

CHECK_OFFSET(PF_InData, inter, 0, 0, 0);
CHECK_OFFSET(PF_InData, utils, 88, 176, 176);
CHECK_OFFSET(PF_InData, effect_ref, 92, 184, 184);
CHECK_OFFSET(PF_InData, quality, 96, 192, 192);
CHECK_OFFSET(PF_InData, version, 100, 196, 196);
CHECK_OFFSET(PF_InData, serial_num, 104, 200, 200);
CHECK_OFFSET(PF_InData, appl_id, 108, 204, 204);
CHECK_OFFSET(PF_InData, num_params, 112, 208, 208);
CHECK_OFFSET(PF_InData, reserved, 116, 212, 212);
CHECK_OFFSET(PF_InData, what_cpu, 120, 216, 216);
CHECK_OFFSET(PF_InData, what_fpu, 124, 220, 220);
CHECK_OFFSET(PF_InData, current_time, 128, 224, 224);
CHECK_OFFSET(PF_InData, time_step, 132, 228, 228);
CHECK_OFFSET(PF_InData, total_time, 136, 232, 232);
CHECK_OFFSET(PF_InData, local_time_step, 140, 236, 236);
CHECK_OFFSET(PF_InData, time_scale, 144, 240, 240);
CHECK_OFFSET(PF_InData, field, 148, 244, 244);
CHECK_OFFSET(PF_InData, shutter_angle, 152, 248, 248);
CHECK_OFFSET(PF_InData, width, 156, 252, 252);
CHECK_OFFSET(PF_InData, height, 160, 256, 256);
CHECK_OFFSET(PF_InData, extent_hint, 164, 260, 260);
CHECK_OFFSET(PF_InData, output_origin_x, 172, 276, 268);
CHECK_OFFSET(PF_InData, output_origin_y, 176, 280, 272);
CHECK_OFFSET(PF_InData, downsample_x, 180, 284, 276);
CHECK_OFFSET(PF_InData, downsample_y, 188, 292, 284);
CHECK_OFFSET(PF_InData, pixel_aspect_ratio, 196, 300, 292);
CHECK_OFFSET(PF_InData, in_flags, 204, 308, 300);
CHECK_OFFSET(PF_InData, global_data, 208, 312, 304);
CHECK_OFFSET(PF_InData, sequence_data, 212, 320, 312);
CHECK_OFFSET(PF_InData, frame_data, 216, 328, 320);
CHECK_OFFSET(PF_InData, start_sampL, 220, 336, 328);
CHECK_OFFSET(PF_InData, dur_sampL, 224, 340, 332);
CHECK_OFFSET(PF_InData, total_sampL, 228, 344, 336);
CHECK_OFFSET(PF_InData, src_snd, 232, 352, 344);
CHECK_OFFSET(PF_InData, pica_basicP, 256, 384, 376);
CHECK_OFFSET(PF_InData, pre_effect_source_origin_x, 260, 392, 384);
CHECK_OFFSET(PF_InData, pre_effect_source_origin_y, 264, 396, 388);
CHECK_OFFSET(PF_InData, shutter_phase, 268, 400, 392);
CHECK_SIZE(PF_InData, 272, 408, 400);
CHECK_ALIGN(PF_InData, 8, 8, 8);

CHECK_OFFSET(PF_OutData, my_version, 0, 0, 0);
CHECK_OFFSET(PF_OutData, name, 4, 4, 4);
CHECK_OFFSET(PF_OutData, global_data, 36, 40, 40);
CHECK_OFFSET(PF_OutData, num_params, 40, 48, 48);
CHECK_OFFSET(PF_OutData, sequence_data, 44, 56, 56);
CHECK_OFFSET(PF_OutData, flat_sdata_size, 48, 64, 64);
CHECK_OFFSET(PF_OutData, frame_data, 52, 72, 72);
CHECK_OFFSET(PF_OutData, width, 56, 80, 80);
CHECK_OFFSET(PF_OutData, height, 60, 84, 84);
CHECK_OFFSET(PF_OutData, origin, 64, 88, 88);
CHECK_OFFSET(PF_OutData, out_flags, 68, 96, 92);
CHECK_OFFSET(PF_OutData, return_msg, 72, 100, 96);
CHECK_OFFSET(PF_OutData, start_sampL, 328, 356, 352);
CHECK_OFFSET(PF_OutData, dur_sampL, 332, 360, 356);
CHECK_OFFSET(PF_OutData, dest_snd, 336, 368, 360);
CHECK_OFFSET(PF_OutData, out_flags2, 360, 400, 392);
CHECK_SIZE(PF_OutData, 368, 408, 400);
CHECK_ALIGN(PF_OutData, 8, 8, 8);

CHECK_OFFSET(PF_ParamDef, uu, 0, 0, 0);
CHECK_OFFSET(PF_ParamDef, ui_flags, 4, 4, 4);
CHECK_OFFSET(PF_ParamDef, ui_width, 8, 8, 8);
CHECK_OFFSET(PF_ParamDef, ui_height, 10, 10, 10);
CHECK_OFFSET(PF_ParamDef, param_type, 12, 12, 12);
CHECK_OFFSET(PF_ParamDef, name, 16, 16, 16);
CHECK_OFFSET(PF_ParamDef, flags, 48, 48, 48);
CHECK_OFFSET(PF_ParamDef, unused, 52, 52, 52);
CHECK_OFFSET(PF_ParamDef, u, 56, 56, 56);
CHECK_SIZE(PF_ParamDef, 152, 176, 168);
CHECK_ALIGN(PF_ParamDef, 8, 8, 8);

CHECK_OFFSET(PF_SliderDef, value, 0, 0, 0);
CHECK_OFFSET(PF_SliderDef, value_str, 4, 4, 4);
CHECK_OFFSET(PF_SliderDef, value_desc, 36, 36, 36);
CHECK_OFFSET(PF_SliderDef, valid_min, 68, 68, 68);
CHECK_OFFSET(PF_SliderDef, valid_max, 72, 72, 72);
CHECK_OFFSET(PF_SliderDef, slider_min, 76, 76, 76);
CHECK_OFFSET(PF_SliderDef, slider_max, 80, 80, 80);
CHECK_OFFSET(PF_SliderDef, dephault, 84, 84, 84);
CHECK_SIZE(PF_SliderDef, 88, 88, 88);
CHECK_ALIGN(PF_SliderDef, 4, 4, 4);

CHECK_OFFSET(PF_FloatSliderDef, value, 0, 0, 0);
CHECK_OFFSET(PF_FloatSliderDef, phase, 8, 8, 8);
CHECK_OFFSET(PF_FloatSliderDef, value_desc, 16, 16, 16);
CHECK_OFFSET(PF_FloatSliderDef, valid_min, 48, 48, 48);
CHECK_OFFSET(PF_FloatSliderDef, valid_max, 52, 52, 52);
CHECK_OFFSET(PF_FloatSliderDef, slider_min, 56, 56, 56);
CHECK_OFFSET(PF_FloatSliderDef, slider_max, 60, 60, 60);
CHECK_OFFSET(PF_FloatSliderDef, dephault, 64, 64, 64);
CHECK_OFFSET(PF_FloatSliderDef, precision, 68, 68, 68);
CHECK_OFFSET(PF_FloatSliderDef, display_flags, 70, 70, 70);
CHECK_OFFSET(PF_FloatSliderDef, fs_flags, 72, 72, 72);
CHECK_OFFSET(PF_FloatSliderDef, curve_tolerance, 76, 76, 76);
CHECK_OFFSET(PF_FloatSliderDef, useExponent, 80, 80, 80);
CHECK_OFFSET(PF_FloatSliderDef, exponent, 84, 84, 84);
CHECK_SIZE(PF_FloatSliderDef, 88, 88, 88);
CHECK_ALIGN(PF_FloatSliderDef, 8, 8, 8);

CHECK_OFFSET(PF_CheckBoxDef, value, 0, 0, 0);
CHECK_OFFSET(PF_CheckBoxDef, dephault, 4, 4, 4);
CHECK_OFFSET(PF_CheckBoxDef, reserved, 5, 5, 5);
CHECK_OFFSET(PF_CheckBoxDef, reserved1, 6, 6, 6);
CHECK_OFFSET(PF_CheckBoxDef, u, 8, 8, 8);
CHECK_SIZE(PF_CheckBoxDef, 12, 16, 16);
CHECK_ALIGN(PF_CheckBoxDef, 4, 8, 8);

CHECK_OFFSET(PF_ColorDef, value, 0, 0, 0);
CHECK_OFFSET(PF_ColorDef, dephault, 4, 4, 4);
CHECK_SIZE(PF_ColorDef, 8, 8, 8);
CHECK_ALIGN(PF_ColorDef, 1, 1, 1);

CHECK_OFFSET(PF_PopupDef, value, 0, 0, 0);
CHECK_OFFSET(PF_PopupDef, num_choices, 4, 4, 4);
CHECK_OFFSET(PF_PopupDef, dephault, 6, 6, 6);
CHECK_OFFSET(PF_PopupDef, u, 8, 8, 8);
CHECK_SIZE(PF_PopupDef, 12, 16, 16);
CHECK_ALIGN(PF_PopupDef, 4, 8, 8);

CHECK_OFFSET(PF_FixedSliderDef, value, 0, 0, 0);
CHECK_OFFSET(PF_FixedSliderDef, value_str, 4, 4, 4);
CHECK_OFFSET(PF_FixedSliderDef, value_desc, 36, 36, 36);
CHECK_OFFSET(PF_FixedSliderDef, valid_min, 68, 68, 68);
CHECK_OFFSET(PF_FixedSliderDef, valid_max, 72, 72, 72);
CHECK_OFFSET(PF_FixedSliderDef, slider_min, 76, 76, 76);
CHECK_OFFSET(PF_FixedSliderDef, slider_max, 80, 80, 80);
CHECK_OFFSET(PF_FixedSliderDef, dephault, 84, 84, 84);
CHECK_OFFSET(PF_FixedSliderDef, precision, 88, 88, 88);
CHECK_OFFSET(PF_FixedSliderDef, display_flags, 90, 90, 90);
CHECK_SIZE(PF_FixedSliderDef, 92, 92, 92);
CHECK_ALIGN(PF_FixedSliderDef, 4, 4, 4);

CHECK_OFFSET(PF_AngleDef, value, 0, 0, 0);
CHECK_OFFSET(PF_AngleDef, dephault, 4, 4, 4);
CHECK_OFFSET(PF_AngleDef, valid_min, 8, 8, 8);
CHECK_OFFSET(PF_AngleDef, valid_max, 12, 12, 12);
CHECK_SIZE(PF_AngleDef, 16, 16, 16);

CHECK_OFFSET(PF_PointDef, x_value, 0, 0, 0);
CHECK_OFFSET(PF_PointDef, y_value, 4, 4, 4);
CHECK_OFFSET(PF_PointDef, reserved, 8, 8, 8);
CHECK_OFFSET(PF_PointDef, restrict_bounds, 11, 11, 11);
CHECK_OFFSET(PF_PointDef, x_dephault, 12, 12, 12);
CHECK_OFFSET(PF_PointDef, y_dephault, 16, 16, 16);
CHECK_SIZE(PF_PointDef, 20, 20, 20);

CHECK_OFFSET(PF_ArbitraryDef, id, 0, 0, 0);
CHECK_OFFSET(PF_ArbitraryDef, pad, 2, 2, 2);
CHECK_OFFSET(PF_ArbitraryDef, dephault, 4, 8, 8);
CHECK_OFFSET(PF_ArbitraryDef, value, 8, 16, 16);
CHECK_OFFSET(PF_ArbitraryDef, refconPV, 12, 24, 24);
CHECK_SIZE(PF_ArbitraryDef, 16, 32, 32);

CHECK_OFFSET(PF_PathDef, path_id, 0, 0, 0);
CHECK_OFFSET(PF_PathDef, reserved0, 4, 4, 4);
CHECK_OFFSET(PF_PathDef, dephault, 8, 8, 8);
CHECK_SIZE(PF_PathDef, 12, 12, 12);

CHECK_SIZE(PF_ParamDefUnion, 96, 120, 112);

CHECK_OFFSET(PF_RenderRequest, rect, 0, 0, 0);
CHECK_OFFSET(PF_RenderRequest, field, 16, 16, 16);
CHECK_OFFSET(PF_RenderRequest, channel_mask, 20, 20, 20);
CHECK_OFFSET(PF_RenderRequest, preserve_rgb_of_zero_alpha, 24, 24, 24);
CHECK_OFFSET(PF_RenderRequest, unused, 25, 25, 25);
CHECK_OFFSET(PF_RenderRequest, reserved, 28, 28, 28);
CHECK_SIZE(PF_RenderRequest, 44, 44, 44);
CHECK_ALIGN(PF_RenderRequest, 4, 4, 4);

CHECK_OFFSET(PF_CheckoutResult, result_rect, 0, 0, 0);
CHECK_OFFSET(PF_CheckoutResult, max_result_rect, 16, 16, 16);
CHECK_OFFSET(PF_CheckoutResult, par, 32, 32, 32);
CHECK_OFFSET(PF_CheckoutResult, solid, 40, 40, 40);
CHECK_OFFSET(PF_CheckoutResult, reservedB, 41, 41, 41);
CHECK_OFFSET(PF_CheckoutResult, ref_width, 44, 44, 44);
CHECK_OFFSET(PF_CheckoutResult, ref_height, 48, 48, 48);
CHECK_OFFSET(PF_CheckoutResult, reserved, 52, 52, 52);
CHECK_SIZE(PF_CheckoutResult, 76, 76, 76);
CHECK_ALIGN(PF_CheckoutResult, 4, 4, 4);

CHECK_OFFSET(PF_PreRenderExtra, input, 0, 0, 0);
CHECK_OFFSET(PF_PreRenderExtra, output, 4, 8, 8);
CHECK_OFFSET(PF_PreRenderExtra, cb, 8, 16, 16);
CHECK_SIZE(PF_PreRenderExtra, 12, 24, 24);
CHECK_ALIGN(PF_PreRenderExtra, 4, 8, 8);

CHECK_OFFSET(PF_PreRenderInput, output_request, 0, 0, 0);
CHECK_OFFSET(PF_PreRenderInput, bitdepth, 44, 44, 44);
CHECK_SIZE(PF_PreRenderInput, 48, 64, 48);
CHECK_ALIGN(PF_PreRenderInput, 4, 8, 4);

#ifdef KOVALUNE_HOST_LONG_RECTS
static_assert(offsetof(PF_PreRenderInput, gpu_data) == 48);
static_assert(offsetof(PF_PreRenderInput, what_gpu) == 56);
static_assert(offsetof(PF_PreRenderInput, device_index) == 60);
#endif

CHECK_OFFSET(PF_PreRenderOutput, result_rect, 0, 0, 0);
CHECK_OFFSET(PF_PreRenderOutput, max_result_rect, 16, 16, 16);
CHECK_OFFSET(PF_PreRenderOutput, solid, 32, 32, 32);
CHECK_OFFSET(PF_PreRenderOutput, reserved, 33, 33, 33);
CHECK_OFFSET(PF_PreRenderOutput, flags, 34, 34, 34);
CHECK_OFFSET(PF_PreRenderOutput, pre_render_data, 36, 40, 40);
CHECK_OFFSET(PF_PreRenderOutput, delete_pre_render_data_func, 40, 48, 48);
CHECK_SIZE(PF_PreRenderOutput, 44, 56, 56);
CHECK_ALIGN(PF_PreRenderOutput, 4, 8, 8);

CHECK_OFFSET(PF_SmartRenderExtra, input, 0, 0, 0);
CHECK_OFFSET(PF_SmartRenderExtra, cb, 4, 8, 8);
CHECK_SIZE(PF_SmartRenderExtra, 8, 16, 16);
CHECK_ALIGN(PF_SmartRenderExtra, 4, 8, 8);

CHECK_OFFSET(PF_SmartRenderInput, output_request, 0, 0, 0);
CHECK_OFFSET(PF_SmartRenderInput, bitdepth, 44, 44, 44);
CHECK_OFFSET(PF_SmartRenderInput, pre_render_data, 48, 48, 48);
CHECK_SIZE(PF_SmartRenderInput, 52, 72, 56);
CHECK_ALIGN(PF_SmartRenderInput, 4, 8, 8);

#ifdef KOVALUNE_HOST_LONG_RECTS
static_assert(offsetof(PF_SmartRenderInput, gpu_data) == 56);
static_assert(offsetof(PF_SmartRenderInput, what_gpu) == 64);
static_assert(offsetof(PF_SmartRenderInput, device_index) == 68);
#endif
