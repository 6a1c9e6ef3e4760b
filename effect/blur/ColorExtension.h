// Colour extension: grows a region (the core) over a wider area, before a Process stage blurs its boundary.
// Every pixel of the area outside the core takes the colour of a nearby core pixel, found along a row and a
// column, and an alpha that falls to zero with the distance. Core pixels stay as they are.
//
// The time is in proportion to the pixels within reach of the core, whatever the reach is, and the result is the same for any
// number of iterations. The 8-bit frames are worked on in 16 bits.
#pragma once

#include "effect/raster/MaskPlane.h"
#include "effect/raster/PixelTraits.h"
#include "effect/raster/Workbench.h"
#include "effect/share/FrameRect.h"
#include "hostapi/HostApi.h"

namespace kovalune {

/// What a colour extension is to do, and what the host iterates over in its three steps, which run in this order: spreadH,
/// spreadV, resolve. It extends the colour of `seedMask` over `limitMask`, both with the origin of `rect`, from `src` to
/// `dst`; pixels outside both masks are not written. A distance of MaskPlane16::kFar means that a spread did not get there.
struct ExtendRecord {
    PF_EffectWorld* dst;
    PF_EffectWorld* src;
    /// A scratch world as large as `dst`, of colours where a spread left a distance. Where a pixel finds no core, it takes
    /// the colour that this one holds at the rectangle's first pixel.
    PF_EffectWorld* spreadWorld;
    FrameRect rect;
    MaskView limitMask; ///< its row bytes gate the rows of spreadH and resolve
    MaskView seedMask;
    // The driver makes these three.
    MaskPlane16 horizontalReach = {}; ///< distance from the core along the row; 0 in the core
    MaskPlane16 verticalReach = {};   ///< along the column; in the core that of a stretch above it, not 0
    MaskPlane16 nearestInColumn = {}; ///< row of the nearest entry of horizontalReach, or kNoRow
    double reach; ///< the distance in pixels at which alpha reaches zero, also the limit of every walk
    /// Colour does not cross what lies outside the area; otherwise it passes under it, but a pixel still looks no further
    /// than to the next gap.
    bool stopAtGap;
    Workbench* workbench = nullptr; ///< of the frame, or null: an iteration then takes memory of its own

    static constexpr uint16_t kNoRow = 0xFFFF;
};

using ColorExtension = PF_Err(PF_InData* inData, ExtendRecord record);

/// Returns the first error of the host's iteration calls, or PF_Err_OUT_OF_MEMORY where a world is missing or a step
/// found no scratch memory. Throws what the planes' construction throws; nothing stays behind then.
template <class Format>
[[nodiscard]] PF_Err extendColors(PF_InData* inData, ExtendRecord record);

extern template PF_Err extendColors<Argb16>(PF_InData*, ExtendRecord);
extern template PF_Err extendColors<Argb32>(PF_InData*, ExtendRecord);

inline constexpr ColorExtension& extendColors16 = extendColors<Argb16>;
inline constexpr ColorExtension& extendColors32 = extendColors<Argb32>;

// The single steps, in the form that the host iterates over an ExtendRecord.
template <class Format>
PF_Err spreadRows(void* record, A_long thread, A_long i, A_long n);
template <class Format>
PF_Err spreadColumns(void* record, A_long thread, A_long i, A_long n);
template <class Format>
PF_Err resolveRows(void* record, A_long thread, A_long i, A_long n);

extern template PF_Err spreadRows<Argb16>(void*, A_long, A_long, A_long);
extern template PF_Err spreadColumns<Argb16>(void*, A_long, A_long, A_long);
extern template PF_Err resolveRows<Argb16>(void*, A_long, A_long, A_long);
extern template PF_Err spreadRows<Argb32>(void*, A_long, A_long, A_long);
extern template PF_Err spreadColumns<Argb32>(void*, A_long, A_long, A_long);
extern template PF_Err resolveRows<Argb32>(void*, A_long, A_long, A_long);

inline constexpr auto& spreadH16 = spreadRows<Argb16>;
inline constexpr auto& spreadV16 = spreadColumns<Argb16>;
inline constexpr auto& resolve16 = resolveRows<Argb16>;
inline constexpr auto& spreadH32 = spreadRows<Argb32>;
inline constexpr auto& spreadV32 = spreadColumns<Argb32>;
inline constexpr auto& resolve32 = resolveRows<Argb32>;

} // namespace kovalune
