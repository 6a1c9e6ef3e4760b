#include "cli/files/SheetLayout.h"

#include <algorithm>
#include <cmath>

namespace kovalune::cli {

namespace {

int64_t atLeastOne(double length) {
    return std::max<int64_t>(static_cast<int64_t>(std::floor(length + 0.5)), 1);
}

SheetLayout layoutWith(const SheetContent& content, std::size_t columns, int64_t width, int64_t height) {
    constexpr int64_t kPixelsADot = 320; // of the picture's longer side
    constexpr int64_t kMarginDots = 8;
    constexpr int64_t kLineDots = 14; // a line of text and the room below it
    SheetLayout layout;
    layout.pictureWidth = width;
    layout.pictureHeight = height;
    layout.textScale = std::max<int64_t>(std::max(width, height) / kPixelsADot, 1);
    layout.margin = kMarginDots * layout.textScale;
    layout.lineHeight = kLineDots * layout.textScale;
    layout.captionHeight = content.textLines * layout.lineHeight;
    layout.columnWidth = std::max(width, content.textWidth * layout.textScale);
    layout.rowHeight = layout.captionHeight + height;
    layout.columns = columns;
    layout.rows = (content.count + columns - 1) / columns;
    return layout;
}

/// Of this scale, or the largest that fits.
SheetLayout layoutOf(const SheetContent& content, const SheetForm& form, std::size_t columns) {
    const auto across = static_cast<double>(content.width);
    const auto down = static_cast<double>(content.height);
    if (form.scale) {
        return layoutWith(content, columns, atLeastOne(across * *form.scale), atLeastOne(down * *form.scale));
    }
    const int64_t widest = std::max<int64_t>(form.mostWidth / static_cast<int64_t>(columns), 1);
    for (int64_t width = std::min(content.width, widest);; --width) {
        const int64_t height = atLeastOne(down * static_cast<double>(width) / across);
        const SheetLayout layout = layoutWith(content, columns, width, height);
        if (layout.width() <= form.mostWidth || width == 1) {
            return layout;
        }
    }
}

} // namespace

SheetLayout sheetLayout(const SheetContent& content, const SheetForm& form) {
    constexpr std::size_t kMostColumns = 4;
    if (form.columns > 0) {
        return layoutOf(content, form, std::min(form.columns, content.count));
    }
    for (std::size_t columns = std::min(content.count, kMostColumns);; --columns) {
        const SheetLayout layout = layoutOf(content, form, columns);
        if (layout.width() <= form.mostWidth || columns == 1) {
            return layout;
        }
    }
}

} // namespace kovalune::cli
