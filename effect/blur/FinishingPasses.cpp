#include "effect/blur/FinishingPasses.h"

#include "effect/raster/Bands.h"
#include "effect/raster/PixelTraits.h"
#include "effect/raster/Rows.h"

namespace kovalune {
namespace {

template <class Format>
PF_Err clearAlphaOutsidePass(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    auto& record = *static_cast<FinishPassRecord*>(refcon);
    const int32_t width = record.rect.width();
    const Band band = bandOf(record.rect.height(), i, n);
    for (int32_t y = band.first; y < band.end; ++y) {
        auto* const dst = rowOf<Format>(*record.dst, record.rect, y);
        const uint8_t* const mask = record.mask.row(y);
        for (int32_t x = 0; x < width; ++x) {
            if (mask[x] == 0) {
                dst[x].alpha = 0;
            }
        }
    }
    return PF_Err_NONE;
}

template <class Format>
PF_Err clearAlphaOutside(PF_InData* inData, PF_EffectWorld* dst, const FrameRect& rect,
                         const MaskPlane& mask) {
    if (dst == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    FinishPassRecord record{dst, rect, mask};
    return iterate(inData, record, clearAlphaOutsidePass<Format>);
}

} // namespace

PF_Err clearAlphaOutside8(PF_InData* inData, PF_EffectWorld* dst, const FrameRect& rect,
                          const MaskPlane& mask) {
    return clearAlphaOutside<Argb8>(inData, dst, rect, mask);
}

PF_Err clearAlphaOutside16(PF_InData* inData, PF_EffectWorld* dst, const FrameRect& rect,
                           const MaskPlane& mask) {
    return clearAlphaOutside<Argb16>(inData, dst, rect, mask);
}

PF_Err clearAlphaOutside32(PF_InData* inData, PF_EffectWorld* dst, const FrameRect& rect,
                           const MaskPlane& mask) {
    return clearAlphaOutside<Argb32>(inData, dst, rect, mask);
}

} // namespace kovalune
