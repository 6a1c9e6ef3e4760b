// Short lines of text on a canvas, in plain capital-height letters that are magnified by whole numbers.
// ASCII letters are drawn as they are, anything else as '?', one for each character of UTF-8.
#pragma once

#include "pictures/Canvas.h"

#include <cstdint>
#include <string_view>

namespace kovalune::pictures {

struct TextSize {
    int64_t width = 0;
    int64_t height = 0; ///< of a line, the room below included
};

/// `scale` is at least 1: the side of one dot of the letters in pixels. A line is 12 dots high.
TextSize textSize(std::string_view text, int64_t scale);

/// The text's left top goes to this place.
void drawText(Canvas& canvas, int64_t left, int64_t top, std::string_view text, DrawnColor color,
              int64_t scale);

} // namespace kovalune::pictures
