// A column of a world, with its mask, gathered into contiguous scratch memory: a vertical pass is then the
// scan of a horizontal one. One block serves all columns of an iteration.
#pragma once

#include "effect/blur/LineWindow.h"
#include "effect/raster/MaskPlane.h"
#include "effect/raster/Rows.h"
#include "effect/raster/ScratchBlock.h"

#include <cstddef>
#include <cstdint>

namespace kovalune {

/// The block holds the column's mask bytes, then from a multiple of 64 on its pixels.
template <class Format>
class GatheredColumn {
public:
    using Pixel = typename Format::Pixel;

    explicit GatheredColumn(int32_t height)
        : height_(height), maskBytes_((static_cast<std::size_t>(height) + 63) / 64 * 64),
          block_(maskBytes_ * (1 + sizeof(Pixel))) {}

    /// False where there was no memory; nothing else may be called then.
    bool ready() const { return block_.memory() != nullptr; }

    /// Copies column `x` of the rectangle and its mask bytes.
    void gather(const PF_EffectWorld& world, const FrameRect& rect, const MaskView& mask, int32_t x) {
        gatherMask(mask, x);
        Pixel* const out = objectAt<Pixel>(block_.memory(), pixelsAt());
        for (int32_t y = 0; y < height_; ++y) {
            out[y] = rowOf<Format>(world, rect, y)[x];
        }
    }

    /// The mask bytes alone.
    void gatherMask(const MaskView& mask, int32_t x) {
        uint8_t* const out = block_.memory();
        for (int32_t y = 0; y < height_; ++y) {
            out[y] = mask.row(y)[x];
        }
    }

    const uint8_t* mask() const { return block_.memory(); }

    /// The column as a scan sees it, until the next one is gathered.
    Line<Pixel> line(int32_t reach) const {
        return {objectAt<Pixel>(block_.memory(), pixelsAt()), mask(), height_, reach};
    }

private:
    std::ptrdiff_t pixelsAt() const { return static_cast<std::ptrdiff_t>(maskBytes_); }

    int32_t height_;
    std::size_t maskBytes_;
    ScratchBlock block_;
};

} // namespace kovalune
