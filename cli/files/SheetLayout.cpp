#include "cli/files/SheetLayout.h"

#include <algorithm>

namespace kovalune::cli {

SheetLayout sheetLayout(std::size_t count, int64_t width, int64_t height, int64_t textWidth,
                        int64_t mostASide) {
    constexpr std::size_t kMostColumns = 4;
    constexpr int64_t kPixelsADot = 320; // of the picture's longer side
    constexpr int64_t kMarginDots = 8;
    constexpr int64_t kLineDots = 14; // a line of text and the room below it
    SheetLayout layout;
    layout.textScale = std::max<int64_t>(std::max(width, height) / kPixelsADot, 1);
    layout.margin = kMarginDots * layout.textScale;
    layout.lineHeight = kLineDots * layout.textScale;
    layout.columnWidth = std::max(width, textWidth * layout.textScale);
    layout.rowHeight = layout.lineHeight + height;
    for (std::size_t columns = std::min(count, kMostColumns); columns > 0; --columns) {
        layout.columns = columns;
        layout.rows = (count + columns - 1) / columns;
        if (layout.width() <= mostASide) {
            break;
        }
    }
    return layout;
}

} // namespace kovalune::cli
