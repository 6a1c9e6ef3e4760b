// The walk that all masked passes share: the band's rows, run by run, converted under the mask. For the
// sources of such passes only.
#pragma once

#include "effect/raster/Bands.h"
#include "effect/raster/MaskRuns.h"
#include "effect/raster/MaskedCopy.h"
#include "effect/raster/Rows.h"

#include <algorithm>

namespace kovalune {

/// The runs of pixels under the mask become what `convert(dst, src, count)` makes of them.
template <class DstFormat, class SrcFormat, auto convert>
PF_Err maskedPass(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    const auto& record = *static_cast<const MaskedPassRecord*>(refcon);
    const int32_t width = record.rect.width();
    const Band band = bandOf(record.rect.height(), i, n);
    for (int32_t y = band.first; y < band.end; ++y) {
        const auto* const src = rowOf<SrcFormat>(*record.src, record.rect, y);
        auto* const dst = rowOf<DstFormat>(*record.dst, record.rect, y);
        const uint8_t* const mask = record.mask.row(y);
        forEachRun(mask, 0, width,
                   [&](int32_t first, int32_t end) { convert(dst + first, src + first, end - first); });
        if (record.clearOutside) {
            forEachGap(mask, 0, width, [&](int32_t first, int32_t end) {
                std::fill(dst + first, dst + end, typename DstFormat::Pixel{});
            });
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
