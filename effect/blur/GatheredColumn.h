// A column of a world, with its mask, gathered into contiguous scratch memory: a vertical pass is then the
// scan of a horizontal one. One block serves all columns of an iteration.
#pragma once

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

    /// Copies column `x` of the rectangle; `maskColumn` is its first mask byte, rows `maskStride` apart.
    void gather(const PF_EffectWorld& world, const FrameRect& rect, int32_t x, const uint8_t* maskColumn,
                int32_t maskStride) {

        uint8_t* const maskOut = block_.memory();
        Pixel* const pixelsOut = objectAt<Pixel>(block_.memory(), pixelsAt());
        for (int32_t y = 0; y < height_; ++y) {
            maskOut[y] = maskColumn[static_cast<std::ptrdiff_t>(y) * maskStride];
            pixelsOut[y] = rowOf<Format>(world, rect, y)[x];
        }
    }

    const uint8_t* mask() const { return block_.memory(); }
    const Pixel* pixels() const { return objectAt<Pixel>(block_.memory(), pixelsAt()); }

private:
    std::ptrdiff_t pixelsAt() const { return static_cast<std::ptrdiff_t>(maskBytes_); }

    int32_t height_;
    std::size_t maskBytes_;
    ScratchBlock block_;
};

} // namespace kovalune
