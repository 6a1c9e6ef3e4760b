#include "tests/reference/PlainSmooth.h"
#include "text/MessageText.h"

#include <bit>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

bool sameBits(double a, double b) {
    return std::bit_cast<uint32_t>(static_cast<float>(a)) == std::bit_cast<uint32_t>(static_cast<float>(b));
}

bool floatPixelsDiffer(const PlainPixel& a, const PlainPixel& b, int32_t threshold) {
    const auto limit = static_cast<float>(threshold) / 255.0F;
    if (sameBits(a.alpha, b.alpha) && sameBits(a.red, b.red) && sameBits(a.green, b.green) &&
        sameBits(a.blue, b.blue)) {
        return false;
    }
    if (a.alpha == 0.0 && b.alpha == 0.0) {
        return false;
    }
    if (a.alpha == 0.0 || b.alpha == 0.0) {
        const PlainPixel& shown = a.alpha == 0.0 ? b : a;
        float sum = static_cast<float>(shown.green) + static_cast<float>(shown.red);
        sum = sum + static_cast<float>(shown.blue);
        sum = sum + static_cast<float>(shown.alpha);
        return sum > limit;
    }
    float left = limit - std::fabs(static_cast<float>(a.red) - static_cast<float>(b.red));
    left = left - std::fabs(static_cast<float>(a.green) - static_cast<float>(b.green));
    left = left - std::fabs(static_cast<float>(a.blue) - static_cast<float>(b.blue));
    left = left - std::fabs(static_cast<float>(a.alpha) - static_cast<float>(b.alpha));
    return left < 0.0F;
}

bool integerPixelsDiffer(const PlainPixel& a, const PlainPixel& b, int64_t limit) {
    if (a.alpha == b.alpha && a.red == b.red && a.green == b.green && a.blue == b.blue) {
        return false;
    }
    if (a.alpha == 0.0 && b.alpha == 0.0) {
        return false;
    }
    if (a.alpha == 0.0) {
        return static_cast<int64_t>(b.alpha + b.red + b.green + b.blue) > limit;
    }
    if (b.alpha == 0.0) {
        return static_cast<int64_t>(a.alpha + a.red + a.green + a.blue) > limit;
    }
    const double sum = std::fabs(a.alpha - b.alpha) + std::fabs(a.red - b.red) +
                       std::fabs(a.green - b.green) + std::fabs(a.blue - b.blue);
    return static_cast<int64_t>(sum) > limit;
}

/// Compares pixels of one picture and sets a bit.
class Marker {
public:
    Marker(const PlainPicture& picture, int32_t threshold, PlainFlags& flags)
        : picture_(picture), threshold_(threshold), flags_(flags) {}

    /// True where the pair differs.
    bool mark(int32_t ax, int32_t ay, int32_t bx, int32_t by, int32_t cell, int32_t row, int bit) {
        if (!plainPixelsDiffer(picture_.format, pixel(ax, ay), pixel(bx, by), threshold_)) {
            return false;
        }
        flags_.set(cell, row, bit);
        return true;
    }

private:
    PlainPixel pixel(int32_t x, int32_t y) const {
        if (x < 0 || y < 0 || x >= picture_.width || y >= picture_.height) {
            ADD_FAILURE() << "a comparison outside the picture at " << x << ", " << y;
            return {};
        }
        return picture_.at(x, y);
    }

    const PlainPicture& picture_;
    int32_t threshold_;
    PlainFlags& flags_;
};

void markGroup(Marker& m, int32_t cx, int32_t y) {
    const int32_t q = y + 1;
    bool any = false;
    any |= m.mark(cx, y, cx + 1, y, cx, y, 1);
    any |= m.mark(cx + 1, y, cx + 2, y, cx + 1, y, 1);
    any |= m.mark(cx, y, cx, q, cx, y, 2);
    any |= m.mark(cx + 1, y, cx + 1, q, cx + 1, y, 2);
    if (any) {
        any |= m.mark(cx, y, cx + 1, q, cx, y, 4);
        any |= m.mark(cx, q, cx + 1, y, cx, y, 8);
    }
    any |= m.mark(cx + 2, y, cx + 3, y, cx + 2, y, 1);
    any |= m.mark(cx + 2, y, cx + 2, q, cx + 2, y, 2);
    if (any) {
        any |= m.mark(cx + 2, y, cx + 1, q, cx + 1, y, 8);
        any |= m.mark(cx + 1, y, cx + 2, q, cx + 1, y, 4);
    }
    any |= m.mark(cx + 3, y, cx + 4, y, cx + 3, y, 1);
    any |= m.mark(cx + 3, y, cx + 3, q, cx + 3, y, 2);
    if (any) {
        m.mark(cx + 2, y, cx + 3, q, cx + 2, y, 4);
        m.mark(cx + 3, y, cx + 2, q, cx + 2, y, 8);
    }
    m.mark(cx + 3, q, cx + 4, y, cx + 3, y, 8);
    m.mark(cx + 3, y, cx + 4, q, cx + 3, y, 4);
}

} // namespace

PlainFlags::PlainFlags(int32_t w, int32_t h)
    : width(w), height(h), cells(static_cast<std::size_t>(w) * static_cast<std::size_t>(h)) {}

uint8_t PlainFlags::at(int32_t x, int32_t y) const {
    if (y < -1 || y > height || x < -4 || x > width) {
        ADD_FAILURE() << "a flag beyond the margins at " << x << ", " << y;
    }
    if (x < 0 || y < 0 || x >= width || y >= height) {
        return 0;
    }
    return cells[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
}

void PlainFlags::set(int32_t x, int32_t y, int bits) {
    if (x < 0 || y < 0 || x >= width || y >= height) {
        ADD_FAILURE() << "a flag set outside the picture at " << x << ", " << y;
        return;
    }
    uint8_t& cell =
        cells[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
    cell = static_cast<uint8_t>(cell | bits);
}

bool plainPixelsDiffer(PF_PixelFormat format, const PlainPixel& a, const PlainPixel& b, int32_t threshold) {
    if (format == PF_PixelFormat_ARGB128) {
        return floatPixelsDiffer(a, b, threshold);
    }
    const int64_t limit =
        format == PF_PixelFormat_ARGB64 ? static_cast<int64_t>(threshold) * 32768 / 255 : threshold;
    return integerPixelsDiffer(a, b, limit);
}

PlainFlags plainFlagMap(const PlainPicture& picture, int32_t threshold) {
    const int32_t w = picture.width;
    const int32_t h = picture.height;
    PlainFlags flags(w, h);
    Marker m(picture, threshold, flags);
    for (int32_t y = 0; y + 1 < h; ++y) {
        int32_t x = 0;
        for (; x < (w - 1) / 4 * 4; x += 4) {
            markGroup(m, x, y);
        }
        for (; x <= w - 2; ++x) {
            m.mark(x, y, x + 1, y, x, y, 1);
            m.mark(x, y, x, y + 1, x, y, 2);
            m.mark(x, y, x + 1, y + 1, x, y, 4);
            m.mark(x, y + 1, x + 1, y, x, y, 8);
        }
    }
    for (int32_t x = 0; x <= w - 2; ++x) {
        m.mark(x, h - 1, x + 1, h - 1, x, h - 1, 1);
    }
    for (int32_t y = 0; y <= h - 2; ++y) {
        m.mark(w - 1, y, w - 1, y + 1, w - 1, y, 2);
    }
    return flags;
}

} // namespace kovalune::test
