#include "effect/pipeline/Coverage.h"

#include "effect/raster/Bands.h"
#include "effect/raster/PixelTraits.h"
#include "effect/raster/Rows.h"

#include <utility>

namespace kovalune {
namespace {

template <class Format>
PF_Err coveragePass(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    auto& record = *static_cast<CoverageRecord*>(refcon);
    MaskPlane& mask = record.mask;
    const int32_t width = record.rect.width();
    const Band band = bandOf(record.rect.height(), i, n);
    for (int32_t y = band.first; y < band.end; ++y) {
        const auto* const src = rowOf<Format>(*record.src, record.rect, y);
        uint8_t* const elements = mask.row(y);
        uint8_t marked = 0;
        for (int32_t x = 0; x < width; ++x) {
            if (src[x].alpha != 0) {
                elements[x] = record.value;
                mask.markColumn(x);
                marked = 1;
            } else {
                elements[x] = 0;
            }
        }
        if (marked != 0) {
            mask.markRow(y);
        }
    }
    return PF_Err_NONE;
}

template <class Format>
PF_Err coverage(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src, const FrameRect& rect) {
    if (src == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    CoverageRecord record{src, rect, 1, {}};
    record.mask.resize(inData, rect.width(), rect.height());
    record.mask.clearTo(0);
    const PF_Err err = iterate(inData, record, coveragePass<Format>);
    mask = std::move(record.mask);
    return err;
}

} // namespace

PF_Err coverage8(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src, const FrameRect& rect) {
    return coverage<Argb8>(mask, inData, src, rect);
}

PF_Err coverage16(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src, const FrameRect& rect) {
    return coverage<Argb16>(mask, inData, src, rect);
}

PF_Err coverage32(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src, const FrameRect& rect) {
    return coverage<Argb32>(mask, inData, src, rect);
}

} // namespace kovalune
