// Falling weights, the four walks that apply them, and the ramps along staircases.
#include "tests/reference/PlainSmooth.h"

#include <algorithm>
#include <cmath>

namespace kovalune::test {
namespace {

/// A number that may be a signed 32-bit product cut to its low bits.
int32_t squared(int32_t n) {
    const int64_t square = static_cast<int64_t>(n) * n;
    return static_cast<int32_t>(static_cast<uint32_t>(square & 0xFFFFFFFF));
}

float curved(float v, float peak, int32_t curve) {
    const float t = v / peak;
    if (curve > 0) {
        return peak *
               ((t * t * t * static_cast<float>(curve) + static_cast<float>(100 - curve) * t) / 100.0F);
    }
    const float u = 1.0F - t;
    return peak *
           (1.0F - (u * u * u * static_cast<float>(-curve) + static_cast<float>(curve + 100) * u) / 100.0F);
}

double nextInteger(PlainRamp& ramp) {
    const auto before = static_cast<int32_t>(ramp.level);
    const auto step = static_cast<int32_t>(ramp.step);
    const int32_t after = before - step;
    ramp.level = after;
    int32_t v = 0;
    if (after > 0) {
        v = before - step / 2;
    } else {
        v = squared(before) / (step * 2);
        ramp.finished = true;
    }
    if (ramp.curve == 0) {
        return v;
    }
    return std::trunc(
        static_cast<double>(curved(static_cast<float>(v), static_cast<float>(ramp.peak), ramp.curve)));
}

double nextFloat(PlainRamp& ramp) {
    const auto before = static_cast<float>(ramp.level);
    const auto step = static_cast<float>(ramp.step);
    const float after = before - step;
    ramp.level = static_cast<double>(after);
    float v = 0.0F;
    if (0.0F >= after) {
        v = before * before / (step * 2.0F);
        ramp.finished = true;
    } else {
        v = before - step * 0.5F;
    }
    if (ramp.curve == 0) {
        return static_cast<double>(v);
    }
    return static_cast<double>(curved(v, static_cast<float>(ramp.peak), ramp.curve));
}

} // namespace

double plainNextWeight(PF_PixelFormat format, PlainRamp& ramp) {
    return format == PF_PixelFormat_ARGB128 ? nextFloat(ramp) : nextInteger(ramp);
}

double PlainSmooth::rampStep(int32_t stretch, int32_t n) const {
    const int32_t d = std::max(stretch, 1) * (n + 1);
    return isFloat() ? static_cast<double>(50.0F / static_cast<float>(d)) : 3276700 / d;
}

PlainRamp PlainSmooth::runRamp(int32_t stretch, int32_t n) const {
    return {false, half_, half_, rampStep(stretch, n), params_.curve};
}

PlainRamp PlainSmooth::taperRamp(int32_t n) const {
    const double full = isFloat() ? 1.0 : 65535.0;
    return {false, full, full, rampStep(params_.strength, n) * 2.0, curveThird_};
}

PlainRamp PlainSmooth::innerRamp(int32_t n) const {
    const double third = isFloat() ? static_cast<double>(0.33333334F) : 21844.0;
    return {false, third, third, rampStep(params_.strength, n), params_.curve};
}

PlainRamp PlainSmooth::outerRamp(int32_t n) const {
    return {false, half_, half_, rampStep(params_.strength, n), params_.curve};
}

void PlainSmooth::blendRunLeft(int32_t x, int32_t y, PlainRamp ramp) {
    const PlainPixel colour = src(x + 1, y);
    for (int32_t k = x; k >= 0 && !ramp.finished; --k) {
        take(k, y, colour, plainNextWeight(params_.pixelFormat, ramp));
    }
}

void PlainSmooth::blendRunRight(int32_t x, int32_t y, PlainRamp ramp) {
    const PlainPixel colour = src(x, y);
    for (int32_t k = x + 1; k < width_ && !ramp.finished; ++k) {
        take(k, y, colour, plainNextWeight(params_.pixelFormat, ramp));
    }
}

void PlainSmooth::blendRunUp(int32_t x, int32_t y, PlainRamp ramp) {
    const PlainPixel colour = src(x, y + 1);
    for (int32_t r = y; r >= 0 && !ramp.finished; --r) {
        take(x, r, colour, plainNextWeight(params_.pixelFormat, ramp));
    }
}

void PlainSmooth::blendRunDown(int32_t x, int32_t y, PlainRamp ramp) {
    const PlainPixel colour = src(x, y);
    for (int32_t r = y + 1; r < height_ && !ramp.finished; ++r) {
        take(x, r, colour, plainNextWeight(params_.pixelFormat, ramp));
    }
}

int32_t PlainSmooth::staircase(int32_t cx, int32_t cy, int32_t moveX, int32_t moveY, int carry, int stop,
                               int32_t besideX, int32_t besideY) {
    int32_t n = -1;
    while (has(cx, cy, carry)) {
        if (has(cx, cy, stop) || has(cx + besideX, cy + besideY, stop)) {
            break;
        }
        cx = cx + moveX;
        cy = cy + moveY;
        n = n + 1;
    }
    return n;
}

bool PlainSmooth::traceVerticalDiagonals(int32_t x, int32_t y) {
    if (lacks(x, y + 1, 1) || has(x, y, 2) || has(x + 1, y, 2)) {
        return false;
    }
    const PF_PixelFormat format = params_.pixelFormat;
    bool any = false;
    int32_t n = staircase(x + 1, y - 1, 1, -1, 2, 8, -1, 0);
    if (fired("vertical diagonal 1", n >= 1)) {
        any = true;
        PlainRamp inner = innerRamp(n);
        PlainRamp outer = outerRamp(n);
        for (int32_t i = 0; i <= n && !inner.finished; ++i) {
            const PlainPixel colour = src(x + 1 + i, y - 1 - i);
            take(x + 1 + i, y - i, colour, plainNextWeight(format, inner));
            take(x + 1 + i, y - 1 - i, colour, plainNextWeight(format, outer));
        }
    }
    n = staircase(x, y + 1, -1, 1, 2, 8, -1, 0);
    if (fired("vertical diagonal 2", n >= 1)) {
        any = true;
        PlainRamp inner = innerRamp(n);
        for (int32_t i = 0; i <= n && !inner.finished; ++i) {
            take(x - i, y + 1 + i, src(x - i, y + 2 + i), plainNextWeight(format, inner));
        }
    }
    n = staircase(x, y - 1, -1, -1, 2, 4, -1, 0);
    if (fired("vertical diagonal 3", n >= 1)) {
        any = true;
        PlainRamp inner = innerRamp(n);
        PlainRamp outer = outerRamp(n);
        for (int32_t i = 0; i <= n && !inner.finished; ++i) {
            const PlainPixel colour = src(x - i, y - 1 - i);
            take(x - i, y - i, colour, plainNextWeight(format, inner));
            take(x - i, y - 1 - i, colour, plainNextWeight(format, outer));
        }
    }
    n = staircase(x + 1, y + 1, 1, 1, 2, 4, -1, 0);
    if (fired("vertical diagonal 4", n >= 1)) {
        any = true;
        PlainRamp inner = innerRamp(n);
        for (int32_t i = 0; i <= n && !inner.finished; ++i) {
            take(x + 1 + i, y + 1 + i, src(x + 1 + i, y + 2 + i), plainNextWeight(format, inner));
        }
    }
    return any;
}

bool PlainSmooth::traceHorizontalDiagonals(int32_t x, int32_t y) {
    if (lacks(x - 1, y, 2) || has(x - 1, y, 1) || has(x - 1, y + 1, 1)) {
        return false;
    }
    const PF_PixelFormat format = params_.pixelFormat;
    bool any = false;
    int32_t n = staircase(x, y, 1, -1, 1, 8, 0, -1);
    if (fired("horizontal diagonal 1", n >= 1)) {
        any = true;
        PlainRamp inner = innerRamp(n);
        PlainRamp outer = outerRamp(n);
        for (int32_t i = 0; i <= n && !inner.finished; ++i) {
            const PlainPixel colour = src(x + 1 + i, y - i);
            take(x + i, y - i, colour, plainNextWeight(format, inner));
            take(x + 1 + i, y - i, colour, plainNextWeight(format, outer));
        }
    }
    n = staircase(x - 2, y + 1, -1, 1, 1, 8, 0, -1);
    if (fired("horizontal diagonal 2", n >= 1)) {
        any = true;
        PlainRamp inner = innerRamp(n);
        for (int32_t i = 0; i <= n && !inner.finished; ++i) {
            take(x - 1 - i, y + 1 + i, src(x - 2 - i, y + 1 + i), plainNextWeight(format, inner));
        }
    }
    n = staircase(x - 2, y, -1, -1, 1, 4, 0, -1);
    if (fired("horizontal diagonal 3", n >= 1)) {
        any = true;
        PlainRamp inner = innerRamp(n);
        PlainRamp outer = outerRamp(n);
        for (int32_t i = 0; i <= n && !inner.finished; ++i) {
            const PlainPixel colour = src(x - 2 - i, y - i);
            take(x - 1 - i, y - i, colour, plainNextWeight(format, inner));
            take(x - 2 - i, y - i, colour, plainNextWeight(format, outer));
        }
    }
    n = staircase(x, y + 1, 1, 1, 1, 4, 0, -1);
    if (fired("horizontal diagonal 4", n >= 1)) {
        any = true;
        PlainRamp inner = innerRamp(n);
        for (int32_t i = 0; i <= n && !inner.finished; ++i) {
            take(x + i, y + 1 + i, src(x + 1 + i, y + 1 + i), plainNextWeight(format, inner));
        }
    }
    return any;
}

} // namespace kovalune::test
