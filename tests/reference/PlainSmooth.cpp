#include "tests/reference/PlainSmooth.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

double crossWeightOf(const SmoothParams& params) {
    if (params.pixelFormat == PF_PixelFormat_ARGB128) {
        return static_cast<double>(static_cast<float>(params.strength) * 0.5F / 200.0F);
    }
    return params.strength * 32767 / 200;
}

double smallWeightOf(const SmoothParams& params) {
    const float share =
        params.strength >= 70 ? 1.0F : 1.0F - static_cast<float>(70 - params.strength) / 70.0F;
    if (params.pixelFormat == PF_PixelFormat_ARGB128) {
        return static_cast<double>(share * 0.1F);
    }
    return static_cast<int32_t>(share * 6553.0F);
}

PlainPicture filled(const SmoothParams& params, const PlainPicture& source) {
    PlainPicture picture(source.format, source.width, source.height);
    plainFirstFill(params, source, picture);
    return picture;
}

} // namespace

PlainSmooth::PlainSmooth(const SmoothParams& params, const PlainPicture& source, PatternCounts& counts)
    : params_(params), source_(source), destination_(filled(params, source)),
      flags_(plainFlagMap(destination_, params.threshold)), counts_(counts), width_(source.width),
      height_(source.height), curveThird_(params.curve / 3), crossWeight_(crossWeightOf(params)),
      smallWeight_(smallWeightOf(params)), half_(isFloat() ? 0.5 : 32767.0),
      threeQuarters_(isFloat() ? 0.75 : 49151.0),
      sixth_(isFloat() ? static_cast<double>(0.16666667F) : 10922.0) {}

PlainSmooth::PlainSmooth(const SmoothParams& params, const PlainPicture& source, const PlainFlags& flags,
                         PatternCounts& counts)
    : PlainSmooth(params, source, counts) {
    flags_ = flags;
}

PlainPicture PlainSmooth::run() {
    if (params_.strength == 0) {
        return destination_;
    }
    for (int32_t y = 0; y < height_; ++y) {
        for (int32_t x = 0; x < width_; ++x) {
            if (flags_.at(x, y) != 0) {
                visit(x, y);
            }
        }
    }
    return destination_;
}

void PlainSmooth::visit(int32_t x, int32_t y) {
    const bool right = has(x, y, 1);
    const bool down = has(x, y, 2);
    leftDone_ = false;
    rightDone_ = false;
    tapered_ = false;
    if (right) {
        leftOfStep(x, y);
        rightOfStep(x, y);
        acrossStep(x, y);
    }
    if (down) {
        aboveStep(x, y);
        belowStep(x, y);
        traceHorizontalDiagonals(x, y);
        mendDownStep(x, y);
        if (right) {
            mendDownRightStep(x, y);
        }
    }
    if (fired("pixel of diagonal flags alone", !right && !down)) {
        return;
    }
    if (!tapered_) {
        nubOrRestore(x, y);
    }
    if (right) {
        shouldersOfVerticalStep(x, y);
    }
    if (down) {
        shouldersOfHorizontalStep(x, y);
    }
}

void PlainSmooth::leftOfStep(int32_t x, int32_t y) {
    const int32_t length = measureRunLeft(x, y);
    if (fired("run to the left", length != 0)) {
        int32_t stretch = params_.strength;
        if (x - length - 1 >= 0) {
            const int32_t far = measureRunRight(x - length - 1, y);
            if (fired("balanced run to the left", far != 0)) {
                stretch = balancedStrength(kLeft, length, far, x, y);
            }
        }
        blendRunLeft(x, y, runRamp(stretch, length));
        leftDone_ = true;
        return;
    }
    const int32_t taper = measureTaperLeft(x, y);
    if (fired("taper to the left", taper != 0)) {
        blendRunLeft(x, y, taperRamp(taper));
        tapered_ = true;
        leftDone_ = true;
    }
}

void PlainSmooth::rightOfStep(int32_t x, int32_t y) {
    const int32_t length = measureRunRight(x, y);
    if (fired("run to the right", length != 0)) {
        int32_t stretch = params_.strength;
        if (x + 1 + length < width_) {
            const int32_t far = measureRunLeft(x + 1 + length, y);
            if (fired("balanced run to the right", far != 0)) {
                stretch = balancedStrength(kRight, length, far, x, y);
            }
        }
        blendRunRight(x, y, runRamp(stretch, length));
        rightDone_ = true;
        return;
    }
    const int32_t taper = measureTaperRight(x, y);
    if (fired("taper to the right", taper != 0)) {
        blendRunRight(x, y, taperRamp(taper));
        tapered_ = true;
        rightDone_ = true;
    }
}

void PlainSmooth::acrossStep(int32_t x, int32_t y) {
    const bool traced = traceVerticalDiagonals(x, y);
    const bool crossing = (has(x, y, 8) || has(x, y - 1, 8)) && (has(x, y, 4) || has(x, y - 1, 4));
    if (!traced && !crossing) {
        if (fired("fringe at the right", !rightDone_)) {
            take(x + 1, y, src(x, y), smallWeight_);
        }
        if (fired("fringe at the left", !leftDone_)) {
            take(x, y, src(x + 1, y), smallWeight_);
        }
    }
    mendRightStep(x, y);
}

void PlainSmooth::aboveStep(int32_t x, int32_t y) {
    const int32_t length = y - 1 >= 0 ? measureRunUp(x, y) : 0;
    if (fired("run upwards", length != 0)) {
        int32_t stretch = params_.strength;
        if (y - length - 1 >= 0) {
            const int32_t far = measureRunDown(x, y - length - 1);
            if (fired("balanced run upwards", far != 0)) {
                stretch = balancedStrength(kUp, length, far, x, y);
            }
        }
        blendRunUp(x, y, runRamp(stretch, length));
        return;
    }
    const int32_t taper = measureTaperUp(x, y);
    if (fired("taper upwards", taper != 0)) {
        blendRunUp(x, y, taperRamp(taper));
        tapered_ = true;
    }
}

void PlainSmooth::belowStep(int32_t x, int32_t y) {
    const int32_t length = measureRunDown(x, y);
    if (fired("run downwards", length != 0)) {
        int32_t stretch = params_.strength;
        if (y + length + 1 < height_) {
            const int32_t far = measureRunUp(x, y + length + 1);
            if (fired("balanced run downwards", far != 0)) {
                stretch = balancedStrength(kDown, length, far, x, y);
            }
        }
        blendRunDown(x, y, runRamp(stretch, length));
        return;
    }
    const int32_t taper = measureTaperDown(x, y);
    if (fired("taper downwards", taper != 0)) {
        blendRunDown(x, y, taperRamp(taper));
        tapered_ = true;
    }
}

PlainPixel PlainSmooth::src(int32_t x, int32_t y) {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) {
        ADD_FAILURE() << "a read outside the picture at " << x << ", " << y;
        return nowhere_;
    }
    return plainKeyed(params_, source_.at(x, y));
}

PlainPixel& PlainSmooth::dst(int32_t x, int32_t y) {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) {
        ADD_FAILURE() << "a write outside the picture at " << x << ", " << y;
        return nowhere_;
    }
    return destination_.at(x, y);
}

void PlainSmooth::take(int32_t x, int32_t y, const PlainPixel& colour, double weight) {
    PlainPixel& target = dst(x, y);
    if (target.alpha == colour.alpha) {
        fired("blend of equal alphas");
    } else if (colour.alpha == 0.0) {
        fired("blend of a transparent colour");
    } else {
        fired(target.alpha == 0.0 ? "blend over a transparent pixel" : "blend of two alphas");
    }
    plainBlend(params_.pixelFormat, target, colour, weight);
}

bool PlainSmooth::fired(const char* pattern, bool holds) {
    if (holds) {
        ++counts_[pattern];
    }
    return holds;
}

} // namespace kovalune::test
