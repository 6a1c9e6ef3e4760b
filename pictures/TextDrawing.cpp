#include "pictures/TextDrawing.h"

#include <stb/stb_easy_font.h>
#include <string>
#include <vector>

namespace kovalune::pictures {

namespace {

constexpr int64_t kLineDots = 12;

/// One corner of a letter's rectangle as the font gives it; four make a rectangle, clockwise from the left top.
struct Corner {
    float x;
    float y;
    float z;
    unsigned char color[4];
};
static_assert(sizeof(Corner) == 16);

/// What the font can draw, ended.
std::string drawable(std::string_view text) {
    std::string letters;
    for (const char letter : text) {
        const auto byte = static_cast<unsigned char>(letter);
        const bool continuation = (byte & 0xC0U) == 0x80U;
        if (byte >= ' ' && byte <= '~') {
            letters += letter;
        } else if (!continuation) {
            letters += '?';
        }
    }
    return letters;
}

/// In dots.
std::vector<Corner> cornersOf(std::string letters) {
    constexpr std::size_t kMostCornersALetter = 128;
    std::vector<Corner> corners(letters.size() * kMostCornersALetter);
    const int count = stb_easy_font_print(0.0F, 0.0F, letters.data(), nullptr, corners.data(),
                                          static_cast<int>(corners.size() * sizeof(Corner)));
    corners.resize(static_cast<std::size_t>(count) * 4);
    return corners;
}

} // namespace

TextSize textSize(std::string_view text, int64_t scale) {
    std::string letters = drawable(text);
    return {stb_easy_font_width(letters.data()) * scale, kLineDots * scale};
}

void drawText(Canvas& canvas, int64_t left, int64_t top, std::string_view text, DrawnColor color,
              int64_t scale) {
    const std::vector<Corner> corners = cornersOf(drawable(text));
    for (std::size_t at = 0; at + 3 < corners.size(); at += 4) {
        const auto x = static_cast<int64_t>(corners[at].x);
        const auto y = static_cast<int64_t>(corners[at].y);
        const auto right = static_cast<int64_t>(corners[at + 2].x);
        const auto bottom = static_cast<int64_t>(corners[at + 2].y);
        canvas.fill({left + x * scale, top + y * scale, (right - x) * scale, (bottom - y) * scale}, color);
    }
}

} // namespace kovalune::pictures
