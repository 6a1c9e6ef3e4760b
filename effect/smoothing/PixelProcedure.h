// What happens at a pixel that carries a flag. The order of the blends is part of the result: later ones read what
// earlier ones wrote.
#pragma once

#include "effect/smoothing/DiagonalTracers.h"
#include "effect/smoothing/Patterns.h"
#include "effect/smoothing/RunBlends.h"
#include "effect/smoothing/RunTests.h"

#include <cstdint>

namespace kovalune {

template <class Context>
class PixelProcedure {
public:
    explicit PixelProcedure(const Context& context) : c_(context) {}

    void visit(int32_t x, int32_t y) const {
        const bool verticalStep = c_.has(x, y, EDGE_RIGHT);
        const bool horizontalStep = c_.has(x, y, EDGE_DOWN);
        bool tapered = false;
        if (verticalStep) {
            tapered = smoothVerticalStep(x, y);
        }
        if (horizontalStep) {
            tapered = smoothHorizontalStep(x, y, verticalStep) || tapered;
        }
        if (!verticalStep && !horizontalStep) {
            return;
        }
        if (!tapered) {
            nubOrRestore(c_, x, y);
        }
        if (verticalStep) {
            blendShoulders(c_, patternTables::kVerticalShoulders, x, y);
        }
        if (horizontalStep) {
            blendShoulders(c_, patternTables::kHorizontalShoulders, x, y);
        }
    }

private:
    using Measure = int32_t (*)(const EdgeFlagMap&, int32_t, int32_t);
    using Blend = void (*)(const Context&, int32_t, int32_t, const RampOf<Context>&);

    enum class Ramp { kNone, kRun, kTaper };

    /// One side of a step: what measures and what blends it, and where the pixel beyond a run stands.
    struct Direction {
        Side side;
        Measure measureRun;
        Measure measureOpposite;
        Measure measureTaper;
        Blend blend;
        int32_t dx, dy;
    };

    static constexpr Direction kLeftward = {
        Side::kLeft, measureRunLeft, measureRunRight, measureTaperLeft, blendRunLeft<Context>, -1, 0};
    static constexpr Direction kRightward = {
        Side::kRight, measureRunRight, measureRunLeft, measureTaperRight, blendRunRight<Context>, 1, 0};
    static constexpr Direction kUpward = {
        Side::kUp, measureRunUp, measureRunDown, measureTaperUp, blendRunUp<Context>, 0, -1};
    static constexpr Direction kDownward = {
        Side::kDown, measureRunDown, measureRunUp, measureTaperDown, blendRunDown<Context>, 0, 1};

    /// A run that another one meets from its far end is stretched so that both ramps meet; at the image's border, or
    /// without another, it has the plain strength.
    int32_t stretchOf(const Direction& d, int32_t length, int32_t x, int32_t y) const {
        const int32_t fx = x + d.dx * (length + 1);
        const int32_t fy = y + d.dy * (length + 1);
        const bool inside = fx >= 0 && fy >= 0 && fx < c_.width() && fy < c_.height();
        const int32_t far = inside ? d.measureOpposite(c_.map, fx, fy) : 0;
        return far != 0 ? balancedStrength(c_.map, d.side, length, far, x, y, c_.strength) : c_.strength;
    }

    Ramp blendSide(const Direction& d, int32_t x, int32_t y, bool mayRun = true) const {
        const int32_t length = mayRun ? d.measureRun(c_.map, x, y) : 0;
        if (length != 0) {
            d.blend(c_, x, y, runRamp(c_, length, stretchOf(d, length, x, y)));
            return Ramp::kRun;
        }
        const int32_t taper = d.measureTaper(c_.map, x, y);
        if (taper == 0) {
            return Ramp::kNone;
        }
        d.blend(c_, x, y, taperRamp(c_, taper));
        return Ramp::kTaper;
    }

    /// Both a falling and a rising corner stand at the step.
    bool isCrossed(int32_t x, int32_t y) const {
        const int flags = c_.map(x, y) | c_.map(x, y - 1);
        return (flags & EDGE_RISING) != 0 && (flags & EDGE_FALLING) != 0;
    }

    /// Whether a taper was blended.
    bool smoothVerticalStep(int32_t x, int32_t y) const {
        const Ramp left = blendSide(kLeftward, x, y);
        const Ramp right = blendSide(kRightward, x, y);
        if (!traceVerticalDiagonals(c_, x, y) && !isCrossed(x, y)) {
            blendFringe(c_, x, y, left != Ramp::kNone, right != Ramp::kNone);
        }
        mendRightStep(c_, x, y);
        return left == Ramp::kTaper || right == Ramp::kTaper;
    }

    bool smoothHorizontalStep(int32_t x, int32_t y, bool verticalStep) const {
        const Ramp up = blendSide(kUpward, x, y, y > 0);
        const Ramp down = blendSide(kDownward, x, y);
        traceHorizontalDiagonals(c_, x, y);
        mendDownStep(c_, x, y);
        if (verticalStep) {
            mendDownRightStep(c_, x, y);
        }
        return up == Ramp::kTaper || down == Ramp::kTaper;
    }

    const Context& c_;
};

/// Every pixel with a flag, in row order; four cells without any are passed over at once.
template <class Context>
void visitFlagged(const Context& context) {
    const PixelProcedure<Context> procedure(context);
    for (int32_t y = 0; y < context.height(); ++y) {
        for (int32_t group = 0; group < context.width(); group += 4) {
            if (!context.map.anyOfFour(group, y)) {
                continue;
            }
            for (int32_t x = group; x < group + 4; ++x) {
                if (context.map(x, y) != 0) {
                    procedure.visit(x, y);
                }
            }
        }
    }
}

} // namespace kovalune
