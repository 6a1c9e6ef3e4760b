// Where pictures of one size stand on a sheet: in rows from the left top, each with lines of text above it, with margins
// around all. Lengths go with the size of the pictures as they are drawn, which may be smaller than they are; all are in
// pixels.
#pragma once

#include "pictures/PictureFile.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace kovalune::cli {

/// Across, unless another width or scale is asked for: what shows on a screen and goes by mail.
inline constexpr int kUsualSheetWidth = 4096;
inline constexpr int kNarrowestSheet = 64;
inline constexpr int kWidestSheet = static_cast<int>(pictures::kMostPixelsASide);

/// What is to be laid out; `count`, the sides and `textLines` are at least 1.
struct SheetContent {
    std::size_t count = 1;
    int64_t width = 1; ///< of one picture, as it is
    int64_t height = 1;
    int64_t textWidth = 0; ///< of the longest line at scale 1
    int64_t textLines = 1; ///< above each
};

struct SheetForm {
    std::size_t columns = 0; ///< 0: at most four, fewer where they would pass `mostWidth`
    /// Of the pictures, above 0 to 1; none: as large as `mostWidth` lets them be, 1 at most.
    std::optional<double> scale = std::nullopt;
    int64_t mostWidth = kUsualSheetWidth; ///< of the sheet
};

struct SheetLayout {
    int64_t textScale = 1; ///< the side of one dot of the letters
    int64_t margin = 0;
    int64_t lineHeight = 0;    ///< of text, with the room below it
    int64_t captionHeight = 0; ///< from the top of the text to that of its picture
    int64_t pictureWidth = 0;  ///< as it is drawn
    int64_t pictureHeight = 0;
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

/// It may be wider than the form has it, where the text, the scale or the number of columns leaves no choice.
SheetLayout sheetLayout(const SheetContent& content, const SheetForm& form);

} // namespace kovalune::cli
