#include "tests/reference/PlainFinishing.h"

#include "effect/share/ExactMath.h"

#include <cmath>
#include <functional>

namespace kovalune::test {
namespace {

// A bias of 100 percent narrows by one step of the format less than full scale, so that no span is ever 0.
constexpr int32_t kNarrowest16 = 32767;
constexpr float kNarrowest32 = 0.99999988F; // one step below 1

bool isFloat(const PlainPicture& picture) {
    return picture.format == PF_PixelFormat_ARGB128;
}

double low16Bits(int64_t value) {
    return static_cast<double>(static_cast<uint16_t>(value));
}

double rounded(double value) {
    // Through memory: GCC 12 at -O3 forgets the rounding where it converts two numbers at once.
    const volatile float stored = static_cast<float>(value);
    return static_cast<double>(stored);
}

/// 16-bit alpha `a`, which is not 0.
int64_t biased16(int64_t a, double bias) {
    if (bias >= 0.0) {
        const auto v = static_cast<uint16_t>(std::trunc(
            static_cast<double>(static_cast<float>(bias) / 100.0F * static_cast<float>(kNarrowest16)) + 0.5));
        const int64_t low = v / 10;
        const int64_t high = 32768 - (v * 9) / 10;
        const int64_t span = 32768 - v;
        if (a < low) {
            return 0;
        }
        if (a >= high) {
            return 32768;
        }
        const double angle = static_cast<double>(a - low) / static_cast<double>(span) * 3.141592653589793;
        return static_cast<int64_t>(std::trunc((exact::cos(angle) - 1.0) * -0.5 * 32768.0));
    }
    const auto t = static_cast<int64_t>(std::trunc((bias + 100.0) / 100.0 * kNarrowest16 + 0.5));
    const int64_t c = 32768 - a;
    if (t == 0 || c >= t) {
        return 0;
    }
    return 32768 - static_cast<int64_t>(std::trunc(static_cast<double>(c * 32768 / t) + 0.5));
}

/// Float alpha `a`, which is not 0.
double biased32(float a, double bias) {
    if (bias >= 0.0) {
        const float v = static_cast<float>(bias) / 100.0F * kNarrowest32;
        const float low = v / 10.0F;
        const float high = 1.0F - v * 9.0F / 10.0F;
        const float span = 1.0F - v;
        if (a < low) {
            return 0.0;
        }
        if (a >= high) {
            return 1.0;
        }
        const double angle = static_cast<double>(a - low) / static_cast<double>(span) * 3.141592653589793;
        return (exact::cos(angle) - 1.0) * -0.5;
    }
    const double t = (bias + 100.0) / 100.0 * static_cast<double>(kNarrowest32);
    const double c = static_cast<double>(1.0F - a);
    const double w = c >= t ? 1.0 : c / t;
    return 1.0 - w;
}

void forEachPixel(const FrameRect& rect,
                  const std::function<void(int32_t x, int32_t y, int32_t worldX, int32_t worldY)>& change) {
    for (int32_t y = 0; y < rect.height(); ++y) {
        for (int32_t x = 0; x < rect.width(); ++x) {
            change(x, y, rect.left + x, rect.top + y);
        }
    }
}

double composed(double over, double under, double a, double underAlpha, bool inFloat) {
    if (inFloat) {
        const double u = (1.0 - a) * underAlpha;
        return rounded((over * a + under * u) / (u + a));
    }
    const auto wholeA = static_cast<int64_t>(a);
    const int64_t u = ((32768 - wholeA) * static_cast<int64_t>(underAlpha)) >> 15;
    return low16Bits((static_cast<int64_t>(under) * u + static_cast<int64_t>(over) * wholeA) / (u + wholeA));
}

} // namespace

void plainRestoreMasked(const FrameRect& rect, const Mask& mask, const PlainPicture& src, PlainPicture& dst) {
    forEachPixel(rect, [&](int32_t x, int32_t y, int32_t worldX, int32_t worldY) {
        if (mask.at(x, y) != 0) {
            dst.at(worldX, worldY) = src.at(worldX, worldY);
        }
    });
}

void plainClearAlphaOutside(const FrameRect& rect, const Mask& mask, PlainPicture& dst) {
    forEachPixel(rect, [&](int32_t x, int32_t y, int32_t worldX, int32_t worldY) {
        if (mask.at(x, y) == 0) {
            dst.at(worldX, worldY).alpha = 0.0;
        }
    });
}

void plainMultiplyAlphaOutside(const FrameRect& rect, const Mask& mask, const PlainPicture& src,
                               PlainPicture& dst) {
    forEachPixel(rect, [&](int32_t x, int32_t y, int32_t worldX, int32_t worldY) {
        if (mask.at(x, y) != 0) {
            return;
        }
        const double over = src.at(worldX, worldY).alpha;
        double& alpha = dst.at(worldX, worldY).alpha;
        alpha = isFloat(dst) ? rounded(over * alpha)
                             : low16Bits((static_cast<int64_t>(over) * static_cast<int64_t>(alpha)) >> 15);
    });
}

void plainApplyBoundaryBias(const FrameRect& rect, const Mask& mask, double bias, PlainPicture& dst) {
    forEachPixel(rect, [&](int32_t x, int32_t y, int32_t worldX, int32_t worldY) {
        double& alpha = dst.at(worldX, worldY).alpha;
        if (mask.at(x, y) == 0 || alpha == 0.0) {
            return;
        }
        alpha = isFloat(dst) ? rounded(biased32(static_cast<float>(alpha), bias))
                             : low16Bits(biased16(static_cast<int64_t>(alpha), bias));
    });
}

void plainComposeOver(const FrameRect& rect, const PlainPicture& src, PlainPicture& dst) {
    forEachPixel(rect, [&](int32_t /*x*/, int32_t /*y*/, int32_t worldX, int32_t worldY) {
        const PlainPixel& over = src.at(worldX, worldY);
        PlainPixel& under = dst.at(worldX, worldY);
        const bool inFloat = isFloat(dst);
        if (over.alpha == 0.0) {
            return;
        }
        if (over.alpha == fullScale(dst.format)) {
            under = {under.alpha, over.red, over.green, over.blue};
            return;
        }
        under = {under.alpha, composed(over.red, under.red, over.alpha, under.alpha, inFloat),
                 composed(over.green, under.green, over.alpha, under.alpha, inFloat),
                 composed(over.blue, under.blue, over.alpha, under.alpha, inFloat)};
    });
}

} // namespace kovalune::test
