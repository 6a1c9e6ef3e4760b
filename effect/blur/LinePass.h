// A blur's pass along rows and along columns: the walk over the lines of a band, which is the same for every
// blur, and the weighted sum over the core of a window.
//
// What a blur makes of a line is its `Blur`:
//   Traits, Record         pixel arithmetic; what the host iterates over, with `dst`, `src`, `rect`, `kernel`
//   mask(record)           whose row and column bytes gate the lines
//   kSkipsIdleRows         whether the row bytes are looked at
//   row(record, y)         the row as a line, read in place
//   Columns(height)        scratch of one iteration: ready(), and gather(record, x), the column as a line
//   blur(line, kernel, o)  blurs it; `o(x)` is the pixel to write for position x
#pragma once

#include "effect/blur/GatheredColumn.h"
#include "effect/blur/GaussKernel.h"
#include "effect/blur/LineWindow.h"
#include "effect/raster/Bands.h"
#include "effect/raster/MaskPlane.h"
#include "effect/raster/Rows.h"
#include "hostapi/HostApi.h"

#include <algorithm>
#include <cstdint>

namespace kovalune {

/// A window never reaches further than the line is long.
inline int32_t reachOf(const GaussKernel& kernel, int32_t lineLength) {
    return std::min(kernel.length - 1, lineLength);
}

/// Row `y` of what a record reads.
template <class Traits, class Record>
Line<typename Traits::Pixel> rowLine(const Record& record, const MaskView& mask, int32_t y) {
    const int32_t width = record.rect.width();
    return {rowOf<Traits>(*record.src, record.rect, y), mask.row(y), width, reachOf(record.kernel, width)};
}

/// `core.add(pixel, tap)` for the masked-in pixels of the core, at most 299 to either side of the centre. The
/// order is part of a float result: from the centre's left neighbour down, then from the centre up.
template <class Core, class Scan, class Pixel>
Core sumCore(const Line<Pixel>& line, const uint16_t* taps, int32_t x, Span span) {
    const int32_t lo = std::max(x - (kMaxTaps - 1), span.first);
    const int32_t hi = std::min(x + (kMaxTaps - 1), span.last);
    Core core;
    for (int32_t j = x - 1; j >= lo; --j) {
        if (!Scan::kWindowHasHoles || line.mask[j] != 0) {
            core.add(line.pixels[j], taps[x - j]);
        }
    }
    for (int32_t j = x; j <= hi; ++j) {
        if (!Scan::kWindowHasHoles || line.mask[j] != 0) {
            core.add(line.pixels[j], taps[j - x]);
        }
    }
    return core;
}

template <class Blur>
PF_Err horizontalPass(void* refcon, A_long i, A_long n) {
    auto& record = *static_cast<typename Blur::Record*>(refcon);
    const Band band = bandOf(record.rect.height(), i, n);
    for (int32_t y = band.first; y < band.end; ++y) {
        if (Blur::kSkipsIdleRows && !Blur::mask(record).rowActive(y)) {
            continue;
        }
        auto* const dst = rowOf<typename Blur::Traits>(*record.dst, record.rect, y);
        Blur::blur(
            Blur::row(record, y), record.kernel, [dst](int32_t x) -> auto& { return dst[x]; });
    }
    return PF_Err_NONE;
}

/// PF_Err_OUT_OF_MEMORY where there is no scratch memory.
template <class Blur>
PF_Err verticalPass(void* refcon, A_long i, A_long n) {
    auto& record = *static_cast<typename Blur::Record*>(refcon);
    const Band band = bandOf(record.rect.width(), i, n);
    if (band.first >= band.end) {
        return PF_Err_NONE;
    }
    typename Blur::Columns columns(record.rect.height());
    if (!columns.ready()) {
        return PF_Err_OUT_OF_MEMORY;
    }
    for (int32_t x = band.first; x < band.end; ++x) {
        if (!Blur::mask(record).colActive(x)) {
            continue;
        }
        Blur::blur(
            columns.gather(record, x), record.kernel, [&record, x ](int32_t y) -> auto& {
                return rowOf<typename Blur::Traits>(*record.dst, record.rect, y)[x];
            });
    }
    return PF_Err_NONE;
}

} // namespace kovalune
