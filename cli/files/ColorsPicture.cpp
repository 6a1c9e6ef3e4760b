#include "cli/files/ColorsPicture.h"

#include "pictures/TextDrawing.h"

#include <algorithm>

namespace kovalune::cli {

namespace {

constexpr int64_t kScale = 2; // of the letters
constexpr int64_t kMargin = 16;
constexpr int64_t kPatchWidth = 96;
constexpr int64_t kPatchHeight = 32;
constexpr int64_t kRowHeight = 40;
constexpr std::size_t kRows = 32; // in a column
constexpr int64_t kCheckerSide = 8;
constexpr pictures::DrawnColor kBackground = {40, 40, 40};
constexpr pictures::DrawnColor kLetters = {235, 235, 235};

void drawPatch(pictures::Canvas& canvas, const Patch& patch, int64_t left, int64_t top) {
    const pictures::Area area{left, top, kPatchWidth, kPatchHeight};
    if (patch.color) {
        canvas.fill(area, *patch.color);
    } else {
        canvas.checker(area, kCheckerSide, {255, 255, 255}, {191, 191, 191});
    }
    const int64_t below = (kPatchHeight - pictures::textSize(patch.text, kScale).height) / 2;
    pictures::drawText(canvas, left + kPatchWidth + kMargin, top + below, patch.text, kLetters, kScale);
}

} // namespace

pictures::Picture picturedPatches(const std::vector<Patch>& patches) {
    int64_t textWidth = 0;
    for (const Patch& patch : patches) {
        textWidth = std::max(textWidth, pictures::textSize(patch.text, kScale).width);
    }
    const int64_t columnWidth = kPatchWidth + kMargin + textWidth + kMargin;
    const std::size_t columns = (patches.size() + kRows - 1) / kRows;
    const std::size_t rows = std::min(patches.size(), kRows);
    pictures::Canvas canvas(static_cast<uint32_t>(kMargin + columnWidth * static_cast<int64_t>(columns)),
                            static_cast<uint32_t>(2 * kMargin + kRowHeight * static_cast<int64_t>(rows) -
                                                  (kRowHeight - kPatchHeight)),
                            kBackground);
    for (std::size_t i = 0; i < patches.size(); ++i) {
        drawPatch(canvas, patches[i], kMargin + columnWidth * static_cast<int64_t>(i / kRows),
                  kMargin + kRowHeight * static_cast<int64_t>(i % kRows));
    }
    return std::move(canvas).picture();
}

} // namespace kovalune::cli
