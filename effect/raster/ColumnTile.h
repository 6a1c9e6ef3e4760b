// Scratch memory for some neighbouring columns of a rectangle, each gathered into a line of its own: a vertical pass is
// then the scan of a horizontal one, and rows are read in their own order.
#pragma once

#include "effect/raster/Rows.h"
#include "effect/raster/ScratchBlock.h"
#include "effect/share/SizeProduct.h"

#include <cstddef>
#include <cstdint>

namespace kovalune {

/// One block of memory that holds several kinds of lines, such as a column's pixels and its mask bytes. The bytes that
/// one row has in all lines of all kinds stand for the place of a kind: `before` counts those of the kinds in front.
class ColumnTile {
public:
    /// `bytesPerRow` counts all lines of all kinds. Lines stand an odd number of cache lines apart, so that a row of
    /// them does not fall on one set.
    ///
    /// In the bench's slot for iteration `i`; without a bench in memory of its own.
    ColumnTile(int32_t height, std::size_t bytesPerRow, Workbench* bench, int32_t i)
        : height_(height), lineBytes_(((static_cast<std::size_t>(height) + 63) / 64 | 1) * 64),
          block_(bench, i, sizeProduct<std::size_t>(lineBytes_, bytesPerRow)) {}

    /// False where there was no memory; nothing else may be called then.
    bool ready() const { return block_.memory() != nullptr; }

    /// Line `number` of a kind, as long as the columns are high.
    template <class T>
    T* line(std::size_t before, int32_t number) const {
        const std::size_t at =
            sizeProduct<std::size_t>(lineBytes_, before + static_cast<std::size_t>(number) * sizeof(T));
        return objectAt<T>(block_.memory(), static_cast<std::ptrdiff_t>(at));
    }

    /// Takes `columns` columns apart, row by row: `rowAt(y)` is the row from the leftmost column on, `lineOf(c)` the line
    /// that column `c` of them goes to.
    template <class RowAt, class LineOf>
    void gather(int32_t columns, const RowAt& rowAt, const LineOf& lineOf) const {
        for (int32_t y = 0; y < height_; ++y) {
            const auto* const row = rowAt(y);
            for (int32_t c = 0; c < columns; ++c) {
                lineOf(c)[y] = row[c];
            }
        }
    }

private:
    int32_t height_;
    std::size_t lineBytes_;
    ScratchBlock block_;
};

} // namespace kovalune
