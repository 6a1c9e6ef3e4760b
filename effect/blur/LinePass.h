// A blur's pass along rows and along columns: the walk over the lines of a band, which is the same for every
// blur, and the weighted sum over the core of a window.
//
// What a blur makes of a line is its `Blur`, made for each line of `{line, kernel, out}`:
//   Format, Scan, Record   pixels; which of them count; what the host iterates over
//   Sums                   what the scan sums along the line
//   kSkipsIdleRows         whether a row without activity is passed over
//   masks(record)          the mask that gates the lines and counts pixels, and the one of pixels that keep alpha
//   operator()             blurs the pixel at a position and writes it to `out`
#pragma once

#include "effect/blur/GaussKernel.h"
#include "effect/blur/LinePassNames.h"
#include "effect/blur/LineWindow.h"
#include "effect/raster/Bands.h"
#include "effect/raster/ColumnTile.h"
#include "effect/raster/MaskPlane.h"
#include "effect/raster/Rows.h"
#include "hostapi/HostApi.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace kovalune {

/// The masks of a record; `keep` is null in a blur that leaves alpha alone.
struct LineMasks {
    const MaskView& counted;
    const MaskView* keep;
};

/// A row or a column of a world, to be written.
template <class Format>
class TargetLine {
public:
    using Pixel = typename Format::Pixel;
    TargetLine(Pixel* first, std::ptrdiff_t step) : first_(first), step_(step) {}
    Pixel& operator[](int32_t position) const { return *objectAt<Pixel>(first_, position * step_); }

private:
    Pixel* first_;
    std::ptrdiff_t step_; ///< bytes
};

/// A window never reaches further than the line is long.
inline int32_t reachOf(const GaussKernel& kernel, int32_t lineLength) {
    return std::min(kernel.length - 1, lineLength);
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

/// Blurs the rows of its band.
template <class Blur>
PF_Err blurRows(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    using Format = typename Blur::Format;
    const auto& record = *static_cast<const typename Blur::Record*>(refcon);
    const LineMasks masks = Blur::masks(record);
    const int32_t width = record.rect.width();
    const int32_t reach = reachOf(record.kernel, width);
    const Band band = bandOf(record.rect.height(), i, n);
    for (int32_t y = band.first; y < band.end; ++y) {
        if (Blur::kSkipsIdleRows && !masks.counted.rowActive(y)) {
            continue;
        }
        Blur::Scan::scan(Blur{{rowOf<Format>(*record.src, record.rect, y), masks.counted.row(y),
                               masks.keep != nullptr ? masks.keep->row(y) : nullptr, width, reach},
                              record.kernel,
                              {rowOf<Format>(*record.dst, record.rect, y), sizeof(typename Format::Pixel)}});
    }
    return PF_Err_NONE;
}

/// The columns that a vertical pass works on at once, with their masks.
template <class Format>
class BlurTile {
public:
    using Pixel = typename Format::Pixel;
    static constexpr int32_t kColumns = 8;

    BlurTile(int32_t height, bool hasKeep)
        : height_(height), hasKeep_(hasKeep), tile_(height, kColumns * (sizeof(Pixel) + (hasKeep ? 2 : 1))) {}

    /// False where there was no memory; nothing else may be called then.
    bool ready() const { return tile_.ready(); }

    /// Copies `columns` columns of a record's rectangle from `left` on.
    template <class Record>
    void gather(const Record& record, const LineMasks& masks, int32_t left, int32_t columns) const {
        const auto gatherMask = [&](const MaskView& mask, std::size_t before) {
            tile_.gather(
                columns, [&](int32_t y) { return mask.row(y) + left; },
                [&](int32_t c) { return tile_.line<uint8_t>(before, c); });
        };
        gatherMask(masks.counted, kCountedAt);
        if (masks.keep != nullptr) {
            gatherMask(*masks.keep, kKeepAt);
        }
        tile_.gather(
            columns, [&](int32_t y) { return rowOf<Format>(*record.src, record.rect, y) + left; },
            [&](int32_t c) { return tile_.line<Pixel>(kPixelsAt, c); });
    }

    /// Column `c` of those that were gathered.
    Line<Pixel> line(int32_t c, int32_t reach) const {
        return {tile_.line<Pixel>(kPixelsAt, c), tile_.line<uint8_t>(kCountedAt, c),
                hasKeep_ ? tile_.line<uint8_t>(kKeepAt, c) : nullptr, height_, reach};
    }

private:
    static constexpr std::size_t kPixelsAt = 0;
    static constexpr std::size_t kCountedAt = kColumns * sizeof(Pixel);
    static constexpr std::size_t kKeepAt = kCountedAt + kColumns;

    int32_t height_;
    bool hasKeep_;
    ColumnTile tile_;
};

/// Blurs the columns of its band.
template <class Blur>
PF_Err blurColumns(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    using Format = typename Blur::Format;
    const auto& record = *static_cast<const typename Blur::Record*>(refcon);
    const LineMasks masks = Blur::masks(record);
    const int32_t height = record.rect.height();
    const int32_t reach = reachOf(record.kernel, height);
    const Band band = bandOf(record.rect.width(), i, n);
    if (band.first >= band.end) {
        return PF_Err_NONE;
    }
    const BlurTile<Format> tile(height, masks.keep != nullptr);
    if (!tile.ready()) {
        return PF_Err_OUT_OF_MEMORY;
    }
    const auto isActive = [&](int32_t x) { return masks.counted.colActive(x); };
    for (int32_t left = band.first; left < band.end;) {
        if (!isActive(left)) {
            ++left;
            continue;
        }
        int32_t end = left + 1;
        while (end < band.end && end - left < tile.kColumns && isActive(end)) {
            ++end;
        }
        tile.gather(record, masks, left, end - left);
        for (int32_t x = left; x < end; ++x) {
            Blur::Scan::scan(Blur{tile.line(x - left, reach),
                                  record.kernel,
                                  {rowOf<Format>(*record.dst, record.rect, 0) + x, record.dst->rowbytes}});
        }
        left = end;
    }
    return PF_Err_NONE;
}

} // namespace kovalune
