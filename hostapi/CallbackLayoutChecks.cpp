// The slots of the tables of functions.
#include "hostapi/LayoutChecks.h"

CHECK_SLOT(PF_InteractCallbacks, checkout_param, 0, 0);
CHECK_SLOT(PF_InteractCallbacks, checkin_param, 4, 8);
CHECK_SLOT(PF_InteractCallbacks, add_param, 8, 16);
CHECK_SLOT(PF_InteractCallbacks, abort, 12, 24);
CHECK_SLOT(PF_InteractCallbacks, progress, 16, 32);
CHECK_SLOT(PF_InteractCallbacks, register_ui, 20, 40);
CHECK_SLOT(PF_InteractCallbacks, checkout_layer_audio, 24, 48);
CHECK_SLOT(PF_InteractCallbacks, checkin_layer_audio, 28, 56);
CHECK_SLOT(PF_InteractCallbacks, get_audio_data, 32, 64);
CHECK_SLOT(PF_InteractCallbacks, reserved_str, 36, 72);
CHECK_SLOT(PF_InteractCallbacks, reserved, 48, 96);
CHECK_TABLE_SIZE(PF_InteractCallbacks, 88, 176);

CHECK_SLOT(PF_UtilCallbacks, begin_sampling, 0, 0);
CHECK_SLOT(PF_UtilCallbacks, subpixel_sample, 4, 8);
CHECK_SLOT(PF_UtilCallbacks, area_sample, 8, 16);
CHECK_SLOT(PF_UtilCallbacks, get_batch_func_is_deprecated, 12, 24);
CHECK_SLOT(PF_UtilCallbacks, end_sampling, 16, 32);
CHECK_SLOT(PF_UtilCallbacks, composite_rect, 20, 40);
CHECK_SLOT(PF_UtilCallbacks, blend, 24, 48);
CHECK_SLOT(PF_UtilCallbacks, convolve, 28, 56);
CHECK_SLOT(PF_UtilCallbacks, copy, 32, 64);
CHECK_SLOT(PF_UtilCallbacks, fill, 36, 72);
CHECK_SLOT(PF_UtilCallbacks, gaussian_kernel, 40, 80);
CHECK_SLOT(PF_UtilCallbacks, iterate, 44, 88);
CHECK_SLOT(PF_UtilCallbacks, premultiply, 48, 96);
CHECK_SLOT(PF_UtilCallbacks, premultiply_color, 52, 104);
CHECK_SLOT(PF_UtilCallbacks, new_world, 56, 112);
CHECK_SLOT(PF_UtilCallbacks, dispose_world, 60, 120);
CHECK_SLOT(PF_UtilCallbacks, iterate_origin, 64, 128);
CHECK_SLOT(PF_UtilCallbacks, iterate_lut, 68, 136);
CHECK_SLOT(PF_UtilCallbacks, transfer_rect, 72, 144);
CHECK_SLOT(PF_UtilCallbacks, transform_world, 76, 152);
CHECK_SLOT(PF_UtilCallbacks, host_new_handle, 80, 160);
CHECK_SLOT(PF_UtilCallbacks, host_lock_handle, 84, 168);
CHECK_SLOT(PF_UtilCallbacks, host_unlock_handle, 88, 176);
CHECK_SLOT(PF_UtilCallbacks, host_dispose_handle, 92, 184);
CHECK_SLOT(PF_UtilCallbacks, get_callback_addr, 96, 192);
CHECK_SLOT(PF_UtilCallbacks, app, 100, 200);
CHECK_SLOT(PF_UtilCallbacks, ansi, 104, 208);
CHECK_SLOT(PF_UtilCallbacks, colorCB, 184, 368);
CHECK_SLOT(PF_UtilCallbacks, get_platform_data, 216, 432);
CHECK_SLOT(PF_UtilCallbacks, host_get_handle_size, 220, 440);
CHECK_SLOT(PF_UtilCallbacks, iterate_origin_non_clip_src, 224, 448);
CHECK_SLOT(PF_UtilCallbacks, iterate_generic, 228, 456);
CHECK_SLOT(PF_UtilCallbacks, host_resize_handle, 232, 464);
CHECK_SLOT(PF_UtilCallbacks, subpixel_sample16, 236, 472);
CHECK_SLOT(PF_UtilCallbacks, area_sample16, 240, 480);
CHECK_SLOT(PF_UtilCallbacks, fill16, 244, 488);
CHECK_SLOT(PF_UtilCallbacks, premultiply_color16, 248, 496);
CHECK_SLOT(PF_UtilCallbacks, iterate16, 252, 504);
CHECK_SLOT(PF_UtilCallbacks, iterate_origin16, 256, 512);
CHECK_SLOT(PF_UtilCallbacks, iterate_origin_non_clip_src16, 260, 520);
CHECK_SLOT(PF_UtilCallbacks, get_pixel_data8, 264, 528);
CHECK_SLOT(PF_UtilCallbacks, get_pixel_data16, 268, 536);
CHECK_SLOT(PF_UtilCallbacks, reserved, 272, 544);
CHECK_TABLE_SIZE(PF_UtilCallbacks, 276, 552);

// The embedded functions, from the start of the table.
static_assert(offsetof(PF_UtilCallbacks, ansi) + offsetof(PF_ANSICallbacks, sprintf) ==
              kovalune::layout::column(164, 328, 328));
static_assert(offsetof(PF_UtilCallbacks, ansi) + offsetof(PF_ANSICallbacks, strcpy) ==
              kovalune::layout::column(168, 336, 336));
static_assert(offsetof(PF_UtilCallbacks, colorCB) + offsetof(PF_ColorCallbacks, RGBtoHLS) ==
              kovalune::layout::column(184, 368, 368));

CHECK_SLOT(PF_ANSICallbacks, atan, 0, 0);
CHECK_SLOT(PF_ANSICallbacks, atan2, 4, 8);
CHECK_SLOT(PF_ANSICallbacks, ceil, 8, 16);
CHECK_SLOT(PF_ANSICallbacks, cos, 12, 24);
CHECK_SLOT(PF_ANSICallbacks, exp, 16, 32);
CHECK_SLOT(PF_ANSICallbacks, fabs, 20, 40);
CHECK_SLOT(PF_ANSICallbacks, floor, 24, 48);
CHECK_SLOT(PF_ANSICallbacks, fmod, 28, 56);
CHECK_SLOT(PF_ANSICallbacks, hypot, 32, 64);
CHECK_SLOT(PF_ANSICallbacks, log, 36, 72);
CHECK_SLOT(PF_ANSICallbacks, log10, 40, 80);
CHECK_SLOT(PF_ANSICallbacks, pow, 44, 88);
CHECK_SLOT(PF_ANSICallbacks, sin, 48, 96);
CHECK_SLOT(PF_ANSICallbacks, sqrt, 52, 104);
CHECK_SLOT(PF_ANSICallbacks, tan, 56, 112);
CHECK_SLOT(PF_ANSICallbacks, sprintf, 60, 120);
CHECK_SLOT(PF_ANSICallbacks, strcpy, 64, 128);
CHECK_SLOT(PF_ANSICallbacks, asin, 68, 136);
CHECK_SLOT(PF_ANSICallbacks, acos, 72, 144);
CHECK_SLOT(PF_ANSICallbacks, unused_longA, 76, 152);
CHECK_TABLE_SIZE(PF_ANSICallbacks, 80, 160);

CHECK_SLOT(PF_ColorCallbacks, RGBtoHLS, 0, 0);
CHECK_SLOT(PF_ColorCallbacks, HLStoRGB, 4, 8);
CHECK_SLOT(PF_ColorCallbacks, RGBtoYIQ, 8, 16);
CHECK_SLOT(PF_ColorCallbacks, YIQtoRGB, 12, 24);
CHECK_SLOT(PF_ColorCallbacks, Luminance, 16, 32);
CHECK_SLOT(PF_ColorCallbacks, Hue, 20, 40);
CHECK_SLOT(PF_ColorCallbacks, Lightness, 24, 48);
CHECK_SLOT(PF_ColorCallbacks, Saturation, 28, 56);
CHECK_TABLE_SIZE(PF_ColorCallbacks, 32, 64);

CHECK_SLOT(PF_PreRenderCallbacks, checkout_layer, 0, 0);
#ifdef KOVALUNE_HOST_LONG_RECTS
static_assert(offsetof(PF_PreRenderCallbacks, GuidMixInPtr) == 8);
#endif

CHECK_SLOT(PF_SmartRenderCallbacks, checkout_layer_pixels, 0, 0);
CHECK_SLOT(PF_SmartRenderCallbacks, checkin_layer_pixels, 4, 8);
CHECK_SLOT(PF_SmartRenderCallbacks, checkout_output, 8, 16);

CHECK_SLOT(SPBasicSuite, AcquireSuite, 0, 0);
CHECK_SLOT(SPBasicSuite, ReleaseSuite, 4, 8);
CHECK_SLOT(SPBasicSuite, IsEqual, 8, 16);
CHECK_SLOT(SPBasicSuite, AllocateBlock, 12, 24);
CHECK_SLOT(SPBasicSuite, FreeBlock, 16, 32);
CHECK_SLOT(SPBasicSuite, ReallocateBlock, 20, 40);
CHECK_SLOT(SPBasicSuite, Undefined, 24, 48);
CHECK_TABLE_SIZE(SPBasicSuite, 28, 56);

CHECK_SLOT(PFWorldSuite1, new_world, 0, 0);
CHECK_SLOT(PFWorldSuite1, dispose_world, 4, 8);
CHECK_TABLE_SIZE(PFWorldSuite1, 8, 16);

CHECK_SLOT(PFWorldSuite2, PF_NewWorld, 0, 0);
CHECK_SLOT(PFWorldSuite2, PF_DisposeWorld, 4, 8);
CHECK_SLOT(PFWorldSuite2, PF_GetPixelFormat, 8, 16);
CHECK_TABLE_SIZE(PFWorldSuite2, 12, 24);

CHECK_SLOT(PFWorldTransformSuite1, composite_rect, 0, 0);
CHECK_SLOT(PFWorldTransformSuite1, blend, 4, 8);
CHECK_SLOT(PFWorldTransformSuite1, convolve, 8, 16);
CHECK_SLOT(PFWorldTransformSuite1, copy, 12, 24);
CHECK_SLOT(PFWorldTransformSuite1, copy_hq, 16, 32);
CHECK_SLOT(PFWorldTransformSuite1, transfer_rect, 20, 40);
CHECK_SLOT(PFWorldTransformSuite1, transform_world, 24, 48);
CHECK_TABLE_SIZE(PFWorldTransformSuite1, 28, 56);

CHECK_SLOT(PFFillMatteSuite2, fill, 0, 0);
CHECK_SLOT(PFFillMatteSuite2, fill16, 4, 8);
CHECK_SLOT(PFFillMatteSuite2, fill_float, 8, 16);
CHECK_SLOT(PFFillMatteSuite2, premultiply, 12, 24);
CHECK_SLOT(PFFillMatteSuite2, premultiply_color, 16, 32);
CHECK_SLOT(PFFillMatteSuite2, premultiply_color16, 20, 40);
CHECK_SLOT(PFFillMatteSuite2, premultiply_color_float, 24, 48);
CHECK_TABLE_SIZE(PFFillMatteSuite2, 28, 56);

CHECK_SLOT(PFFillMatteSuite1, fill, 0, 0);
CHECK_SLOT(PFFillMatteSuite1, fill16, 4, 8);
CHECK_SLOT(PFFillMatteSuite1, premultiply, 8, 16);
CHECK_SLOT(PFFillMatteSuite1, premultiply_color, 12, 24);
CHECK_SLOT(PFFillMatteSuite1, premultiply_color16, 16, 32);
CHECK_TABLE_SIZE(PFFillMatteSuite1, 20, 40);

CHECK_SLOT(PFHandleSuite1, host_new_handle, 0, 0);
CHECK_SLOT(PFHandleSuite1, host_lock_handle, 4, 8);
CHECK_SLOT(PFHandleSuite1, host_unlock_handle, 8, 16);
CHECK_SLOT(PFHandleSuite1, host_dispose_handle, 12, 24);
CHECK_SLOT(PFHandleSuite1, host_get_handle_size, 16, 32);
CHECK_SLOT(PFHandleSuite1, host_resize_handle, 20, 40);
CHECK_TABLE_SIZE(PFHandleSuite1, 24, 48);

CHECK_SLOT(PFParamUtilsSuite1, PF_UpdateParamUI, 0, 0);
CHECK_TABLE_SIZE(PFParamUtilsSuite1, 40, 80);
CHECK_SLOT(PFParamUtilsSuite3, PF_UpdateParamUI, 0, 0);
CHECK_TABLE_SIZE(PFParamUtilsSuite3, 36, 72);
