// Function tables that an effect asks for by name and version, through PF_InData.pica_basicP.
// A table belongs to the host and stays valid until the suite is released as often as it was acquired.
#pragma once

#include "hostapi/Callbacks.h"
#include "hostapi/Types.h"

#include <array>
#include <cstddef>

struct SPBasicSuite {
    /// 0: found, and `suite` holds its table.
    int32_t (*AcquireSuite)(const char* name, int32_t version, const void** suite);
    int32_t (*ReleaseSuite)(const char* name, int32_t version);
    /// Not zero where the texts are the same.
    int32_t (*IsEqual)(const char* token1, const char* token2);
    int32_t (*AllocateBlock)(std::size_t size, void** block);
    int32_t (*FreeBlock)(void* block);
    int32_t (*ReallocateBlock)(void* block, std::size_t size, void** new_block);
    int32_t (*Undefined)();
};

/// A slot that counts only as a place in its table; not to be called through this type.
using PF_UnusedSlot = PF_Err (*)();

inline constexpr char kPFWorldSuite[] = "PF World Suite";
inline constexpr int32_t kPFWorldSuiteVersion1 = 1;
inline constexpr int32_t kPFWorldSuiteVersion2 = 2;

/// Knows 8 and 16 bits a channel only.
struct PFWorldSuite1 {
    PF_Err (*new_world)(PF_ProgPtr effect_ref, A_long width, A_long height, PF_NewWorldFlags flags,
                        PF_EffectWorld* world);
    PF_Err (*dispose_world)(PF_ProgPtr effect_ref, PF_EffectWorld* world);
};

struct PFWorldSuite2 {
    PF_Err (*PF_NewWorld)(PF_ProgPtr effect_ref, A_long width, A_long height, PF_Boolean clear_pixels,
                          PF_PixelFormat pixel_format, PF_EffectWorld* world);
    PF_Err (*PF_DisposeWorld)(PF_ProgPtr effect_ref, PF_EffectWorld* world);
    PF_Err (*PF_GetPixelFormat)(const PF_EffectWorld* world, PF_PixelFormat* pixel_format);
};

inline constexpr char kPFWorldTransformSuite[] = "PF World Transform Suite";
inline constexpr int32_t kPFWorldTransformSuiteVersion1 = 1;

struct PFWorldTransformSuite1 {
    PF_Err (*composite_rect)(PF_ProgPtr effect_ref, PF_Rect* src_rect, A_long opacity, PF_EffectWorld* src,
                             A_long x, A_long y, PF_Field field, PF_XferMode mode, PF_EffectWorld* dst);
    PF_Err (*blend)(PF_ProgPtr effect_ref, const PF_EffectWorld* src1, const PF_EffectWorld* src2,
                    PF_Fixed ratio, PF_EffectWorld* dst);
    PF_Err (*convolve)(PF_ProgPtr effect_ref, PF_EffectWorld* src, const PF_Rect* area, PF_KernelFlags flags,
                       A_long size, void* a_kernel, void* r_kernel, void* g_kernel, void* b_kernel,
                       PF_EffectWorld* dst);
    /// A null rectangle means the whole world.
    PF_Err (*copy)(PF_ProgPtr effect_ref, PF_EffectWorld* src, PF_EffectWorld* dst, PF_Rect* src_r,
                   PF_Rect* dst_r);
    PF_Err (*copy_hq)(PF_ProgPtr effect_ref, PF_EffectWorld* src, PF_EffectWorld* dst, PF_Rect* src_r,
                      PF_Rect* dst_r);
    PF_Err (*transfer_rect)(PF_ProgPtr effect_ref, PF_Quality quality, PF_ModeFlags mode, PF_Field field,
                            const PF_Rect* src_rect, const PF_EffectWorld* src,
                            const PF_CompositeMode* composite_mode, const PF_MaskWorld* mask, A_long x,
                            A_long y, PF_EffectWorld* dst);
    PF_Err (*transform_world)(PF_ProgPtr effect_ref, PF_Quality quality, PF_ModeFlags mode, PF_Field field,
                              const PF_EffectWorld* src, const PF_CompositeMode* composite_mode,
                              const PF_MaskWorld* mask, const PF_FloatMatrix* matrices, A_long num_matrices,
                              PF_Boolean src_to_dst_matrix, const PF_Rect* dst_rect, PF_EffectWorld* dst);
};

inline constexpr char kPFFillMatteSuite[] = "PF Fill Matte Suite";
inline constexpr int32_t kPFFillMatteSuiteVersion1 = 1;
inline constexpr int32_t kPFFillMatteSuiteVersion2 = 2;

/// A null colour is transparent black, a null rectangle the whole world. Only `fill` is certain of its slot.
struct PFFillMatteSuite1 {
    PF_Err (*fill)(PF_ProgPtr effect_ref, const PF_Pixel* colour, const PF_Rect* area, PF_EffectWorld* world);
    PF_Err (*fill16)(PF_ProgPtr effect_ref, const PF_Pixel16* colour, const PF_Rect* area,
                     PF_EffectWorld* world);
    PF_Err (*premultiply)(PF_ProgPtr effect_ref, A_long forward, PF_EffectWorld* dst);
    PF_Err (*premultiply_color)(PF_ProgPtr effect_ref, PF_EffectWorld* src, const PF_Pixel* colour,
                                A_long forward, PF_EffectWorld* dst);
    PF_Err (*premultiply_color16)(PF_ProgPtr effect_ref, PF_EffectWorld* src, const PF_Pixel16* colour,
                                  A_long forward, PF_EffectWorld* dst);
};

struct PFFillMatteSuite2 {
    PF_Err (*fill)(PF_ProgPtr effect_ref, const PF_Pixel* colour, const PF_Rect* area, PF_EffectWorld* world);
    PF_Err (*fill16)(PF_ProgPtr effect_ref, const PF_Pixel16* colour, const PF_Rect* area,
                     PF_EffectWorld* world);
    PF_Err (*fill_float)(PF_ProgPtr effect_ref, const PF_PixelFloat* colour, const PF_Rect* area,
                         PF_EffectWorld* world);
    PF_Err (*premultiply)(PF_ProgPtr effect_ref, A_long forward, PF_EffectWorld* dst);
    PF_Err (*premultiply_color)(PF_ProgPtr effect_ref, PF_EffectWorld* src, const PF_Pixel* colour,
                                A_long forward, PF_EffectWorld* dst);
    PF_Err (*premultiply_color16)(PF_ProgPtr effect_ref, PF_EffectWorld* src, const PF_Pixel16* colour,
                                  A_long forward, PF_EffectWorld* dst);
    PF_Err (*premultiply_color_float)(PF_ProgPtr effect_ref, PF_EffectWorld* src, const PF_PixelFloat* colour,
                                      A_long forward, PF_EffectWorld* dst);
};

inline constexpr char kPFHandleSuite[] = "PF Handle Suite";
inline constexpr int32_t kPFHandleSuiteVersion1 = 1;
inline constexpr int32_t kPFHandleSuiteVersion2 = 2; // the same table, with the sizes of 64-bit hosts

struct PFHandleSuite1 {
    PF_Handle (*host_new_handle)(A_HandleSize size);
    void* (*host_lock_handle)(PF_Handle handle);
    void (*host_unlock_handle)(PF_Handle handle);
    void (*host_dispose_handle)(PF_Handle handle);
    A_HandleSize (*host_get_handle_size)(PF_Handle handle);
    PF_Err (*host_resize_handle)(A_HandleSize size, PF_Handle* handle);
};

inline constexpr char kPFParamUtilsSuite[] = "PF Param Utils Suite";
inline constexpr int32_t kPFParamUtilsSuiteVersion1 = 1;
inline constexpr int32_t kPFParamUtilsSuiteVersion2 = 2;
inline constexpr int32_t kPFParamUtilsSuiteVersion3 = 3;

/// The table of version 2; of version 1 only the first slot is certain.
struct PFParamUtilsSuite1 {
    PF_Err (*PF_UpdateParamUI)(PF_ProgPtr effect_ref, PF_ParamIndex index, const PF_ParamDef* def);
    PF_UnusedSlot obsolete_state_functions[3];
    PF_UnusedSlot PF_IsIdenticalCheckout;
    PF_UnusedSlot PF_FindKeyframeTime;
    PF_UnusedSlot PF_GetKeyframeCount;
    PF_UnusedSlot PF_CheckoutKeyframe;
    PF_UnusedSlot PF_CheckinKeyframe;
    PF_UnusedSlot PF_KeyIndexToTime;
};

/// The table of version 3.
struct PFParamUtilsSuite3 {
    PF_Err (*PF_UpdateParamUI)(PF_ProgPtr effect_ref, PF_ParamIndex index, const PF_ParamDef* def);
    PF_UnusedSlot PF_GetCurrentState;
    PF_UnusedSlot PF_AreStatesIdentical;
    PF_UnusedSlot PF_IsIdenticalCheckout;
    PF_UnusedSlot PF_FindKeyframeTime;
    PF_UnusedSlot PF_GetKeyframeCount;
    PF_UnusedSlot PF_CheckoutKeyframe;
    PF_UnusedSlot PF_CheckinKeyframe;
    PF_UnusedSlot PF_KeyIndexToTime;
};

// The versions of the suites that came to differ, in the order in which an effect asks for them. The first is the
// one that hosts of this era are known to have; the slots that hold the same place in all of them may be
// called through the table of the lowest.
#ifdef KOVALUNE_HOST_LONG_RECTS
inline constexpr std::array kPFFillMatteSuiteVersions = {kPFFillMatteSuiteVersion2,
                                                         kPFFillMatteSuiteVersion1};
inline constexpr std::array kPFHandleSuiteVersions = {kPFHandleSuiteVersion2, kPFHandleSuiteVersion1};
inline constexpr std::array kPFParamUtilsSuiteVersions = {
    kPFParamUtilsSuiteVersion3, kPFParamUtilsSuiteVersion2, kPFParamUtilsSuiteVersion1};
#else
inline constexpr std::array kPFFillMatteSuiteVersions = {kPFFillMatteSuiteVersion1};
inline constexpr std::array kPFHandleSuiteVersions = {kPFHandleSuiteVersion1};
inline constexpr std::array kPFParamUtilsSuiteVersions = {kPFParamUtilsSuiteVersion1};
#endif
