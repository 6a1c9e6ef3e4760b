// Where pictures of one size stand on a sheet: in rows from the left top, each with a line of text above it,
// with margins around all. Lengths go with the picture's size; all are in pixels.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kovalune::cli {

struct SheetLayout {
    int64_t textScale = 1; ///< the side of one dot of the letters
    int64_t margin = 0;
    int64_t lineHeight = 0; ///< from the top of the text to that of its picture
    int64_t columnWidth = 0;
    int64_t rowHeight = 0;
    std::size_t columns = 0;
    std::size_t rows = 0;

    int64_t width() const { return margin + static_cast<int64_t>(columns) * (columnWidth + margin); }
    int64_t height() const { return margin + static_cast<int64_t>(rows) * (rowHeight + margin); }

    /// The left top of a cell, which is that of its text.
    int64_t left(std::size_t cell) const {
        return margin + static_cast<int64_t>(cell % columns) * (columnWidth + margin);
    }
    int64_t top(std::size_t cell) const {
        return margin + static_cast<int64_t>(cell / columns) * (rowHeight + margin);
    }
};

/// For `count` pictures, at least one; `textWidth` is that of the longest text at scale 1. At most four columns,
/// fewer where they would pass `mostASide`.
SheetLayout sheetLayout(std::size_t count, int64_t width, int64_t height, int64_t textWidth,
                        int64_t mostASide);

} // namespace kovalune::cli
