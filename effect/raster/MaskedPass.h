// The walk that all masked passes share: the band's rows, pixel by pixel, converted under the mask. For the
// sources of such passes only.
#pragma once

#include "effect/raster/Bands.h"
#include "effect/raster/MaskedCopy.h"
#include "effect/raster/Rows.h"

namespace kovalune {

/// Every pixel under the mask becomes `convert` of its source pixel.
template <class DstFormat, class SrcFormat, auto convert>
PF_Err maskedPass(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    const auto& record = *static_cast<const MaskedPassRecord*>(refcon);
    const int32_t width = record.rect.width();
    const Band band = bandOf(record.rect.height(), i, n);
    for (int32_t y = band.first; y < band.end; ++y) {
        const auto* const src = rowOf<SrcFormat>(*record.src, record.rect, y);
        auto* const dst = rowOf<DstFormat>(*record.dst, record.rect, y);
        const uint8_t* const mask = record.mask.row(y);
        for (int32_t x = 0; x < width; ++x) {
            if (mask[x] != 0) {
                dst[x] = convert(src[x]);
            } else if (record.clearOutside) {
                dst[x] = {};
            }
        }
    }
    return PF_Err_NONE;
}

template <class DstFormat, class SrcFormat, auto convert>
[[nodiscard]] PF_Err runMasked(PF_InData* inData, MaskedPassRecord& record) {
    if (record.dst == nullptr || record.src == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    return iterate(inData, record, maskedPass<DstFormat, SrcFormat, convert>);
}

} // namespace kovalune
