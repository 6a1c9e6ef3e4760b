// A blur's pass along rows and along columns: the walk over the lines of a band, which is the same for every
// blur. A column is gathered into a line of its own and its result laid back, so that a blur knows lines only.
//
// What a blur makes of a line is its `Blur`, one for an iteration:
//   Format, Record        pixels; what the host iterates over
//   kSkipsIdleRows        whether a row without activity is passed over
//   masks(record)         the mask that gates the lines and counts pixels, and the one of pixels that keep alpha
//   Blur(record, length, layout)   lays out its scratch memory for lines of that length
//   begin()               called once the layout has memory
//   blurLine(line, out)   blurs the masked-in pixels of a line into `out`, which holds the line's target
//   lay(result, target)   writes what the blur writes of a pixel
#pragma once

#include "effect/blur/ColumnLines.h"
#include "effect/blur/GaussKernel.h"
#include "effect/blur/LinePassNames.h"
#include "effect/blur/LineWeights.h"
#include "effect/blur/LineWindow.h"
#include "effect/raster/Bands.h"
#include "effect/raster/MaskPlane.h"
#include "effect/raster/Rows.h"
#include "effect/raster/ScratchBlock.h"
#include "hostapi/HostApi.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace kovalune {

/// Blurs the rows of its band.
template <class Blur>
PF_Err blurRows(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    using Format = typename Blur::Format;
    const auto& record = *static_cast<const typename Blur::Record*>(refcon);
    const LineMasks masks = Blur::masks(record);
    const int32_t width = record.rect.width();
    const int32_t reach = reachOf(record.kernel, width);
    const Band band = bandOf(record.rect.height(), i, n);
    const auto isIdle = [&](int32_t y) { return Blur::kSkipsIdleRows && !masks.counted.rowActive(y); };
    int32_t y = band.first;
    while (y < band.end && isIdle(y)) {
        ++y;
    }
    if (y >= band.end) {
        return PF_Err_NONE;
    }
    ScratchLayout sizes;
    Blur(record, width, sizes);
    const ScratchBlock block(record.workbench, i, sizes.bytes());
    if (block.memory() == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    ScratchLayout layout(block.memory());
    Blur blur(record, width, layout);
    blur.begin();
    for (; y < band.end; ++y) {
        if (!isIdle(y)) {
            blur.blurLine({rowOf<Format>(*record.src, record.rect, y), masks.counted.row(y),
                           masks.keep != nullptr ? masks.keep->row(y) : nullptr, width, reach},
                          rowOf<Format>(*record.dst, record.rect, y));
        }
    }
    return PF_Err_NONE;
}

/// Blurs the columns of its band.
template <class Blur>
PF_Err blurColumns(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    using Format = typename Blur::Format;
    const auto& record = *static_cast<const typename Blur::Record*>(refcon);
    const LineMasks masks = Blur::masks(record);
    const int32_t height = record.rect.height();
    const int32_t reach = reachOf(record.kernel, height);
    const Band band = bandOf(record.rect.width(), i, n);
    const auto isActive = [&](int32_t x) { return masks.counted.colActive(x); };
    int32_t left = band.first;
    while (left < band.end && !isActive(left)) {
        ++left;
    }
    if (left >= band.end) {
        return PF_Err_NONE;
    }
    ScratchLayout sizes;
    ColumnLines<Format>(height, masks.keep != nullptr, sizes);
    Blur(record, height, sizes);
    const ScratchBlock block(record.workbench, i, sizes.bytes());
    if (block.memory() == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    ScratchLayout layout(block.memory());
    ColumnLines<Format> lines(height, masks.keep != nullptr, layout);
    Blur blur(record, height, layout);
    blur.begin();
    while (left < band.end) {
        if (!isActive(left)) {
            ++left;
            continue;
        }
        int32_t end = left + 1;
        while (end < band.end && end - left < lines.kColumns && isActive(end)) {
            ++end;
        }
        lines.gather(record, masks, left, end - left);
        for (int32_t c = 0; c < end - left; ++c) {
            blur.blurLine(lines.line(c, reach), lines.result(c));
        }
        lines.scatter(record, masks, left, end - left,
                      [&](const auto& result, auto& target) { blur.lay(result, target); });
        left = end;
    }
    return PF_Err_NONE;
}

} // namespace kovalune
