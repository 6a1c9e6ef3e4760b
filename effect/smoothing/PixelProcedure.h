// What happens at a pixel that carries a flag. The order of the blends is part of the result: later ones read what
// earlier ones wrote.
#pragma once

#include "effect/smoothing/DiagonalTracers.h"
#include "effect/smoothing/FlagWindow.h"
#include "effect/smoothing/Patterns.h"
#include "effect/smoothing/RunBlends.h"
#include "effect/smoothing/RunTests.h"
#include "effect/smoothing/StepWork.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace kovalune {

template <class Context>
class PixelProcedure {
public:
    explicit PixelProcedure(const Context& context) : c_(context) {}

    void visit(int32_t x, int32_t y) {
        const FlagWindow f(c_.map, x, y);
        const uint32_t work = memo_.workIn(f);
        if (work != 0) {
            smooth(f, work, x, y);
        }
    }

private:
    /// Apart from `visit`, which most pixels do not get beyond.
    [[gnu::noinline]] void smooth(const FlagWindow& f, uint32_t work, int32_t x, int32_t y) const {
        bool tapered = false;
        if (f.has(0, 0, EDGE_RIGHT)) {
            tapered = smoothVerticalStep(f, work, x, y);
        }
        if (f.has(0, 0, EDGE_DOWN)) {
            tapered = smoothHorizontalStep(f, work, x, y) || tapered;
        }
        if ((work & kWorkNubOrRestore) != 0 && !tapered) {
            nubOrRestore(c_, f, x, y);
        }
        if ((work & kWorkVerticalShoulders) != 0) {
            blendVerticalShoulders(c_, f, x, y);
        }
        if ((work & kWorkHorizontalShoulders) != 0) {
            blendHorizontalShoulders(c_, f, x, y);
        }
    }

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

    Ramp blendSide(const Direction& d, int32_t x, int32_t y) const {
        const int32_t length = d.measureRun(c_.map, x, y);
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

    /// Whether a taper was blended.
    bool smoothVerticalStep(const FlagWindow& f, uint32_t work, int32_t x, int32_t y) const {
        const Ramp left = (work & kWorkLeft) != 0 ? blendSide(kLeftward, x, y) : Ramp::kNone;
        const Ramp right = (work & kWorkRight) != 0 ? blendSide(kRightward, x, y) : Ramp::kNone;
        const bool traced = (work & kWorkVerticalDiagonals) != 0 && traceVerticalDiagonals(c_, f, x, y);
        if ((work & kWorkFringe) != 0 && !traced) {
            blendFringe(c_, x, y, left != Ramp::kNone, right != Ramp::kNone);
        }
        if ((work & kWorkMendRight) != 0) {
            mendRightStep(c_, f, x, y);
        }
        return left == Ramp::kTaper || right == Ramp::kTaper;
    }

    bool smoothHorizontalStep(const FlagWindow& f, uint32_t work, int32_t x, int32_t y) const {
        const Ramp up = (work & kWorkUp) != 0 ? blendSide(kUpward, x, y) : Ramp::kNone;
        const Ramp down = (work & kWorkDown) != 0 ? blendSide(kDownward, x, y) : Ramp::kNone;
        if ((work & kWorkHorizontalDiagonals) != 0) {
            traceHorizontalDiagonals(c_, f, x, y);
        }
        if ((work & kWorkMendDown) != 0) {
            mendDownStep(c_, f, x, y);
        }
        if ((work & kWorkMendDownRight) != 0) {
            mendDownRightStep(c_, f, x, y);
        }
        return up == Ramp::kTaper || down == Ramp::kTaper;
    }

    const Context& c_;
    StepWorkMemo memo_;
};

/// Calls `visit` with the columns of the cells that have a step, from the left. Most of a drawing's map is zero, and of that
/// many cells are passed over at once.
template <class Visit>
void forEachStep(const uint8_t* cells, int32_t count, const Visit& visit) {
    constexpr int32_t kWord = sizeof(uint64_t);
    constexpr int32_t kBlock = 8 * kWord;
    constexpr uint64_t kOfEachCell = ~uint64_t{0} / 0xff;
    constexpr bool kIsLittle = std::endian::native == std::endian::little;
    const auto wordAt = [cells](int32_t x) {
        uint64_t word = 0;
        std::memcpy(&word, cells + x, sizeof word);
        return word;
    };
    int32_t x = 0;
    for (; x + kBlock <= count; x += kBlock) {
        uint64_t any = 0;
        for (int32_t i = 0; i < kBlock; i += kWord) {
            any |= wordAt(x + i);
        }
        for (int32_t i = 0; any != 0 && i < kBlock; i += kWord) {
            const uint64_t word = wordAt(x + i);
            uint64_t steps = (word / EDGE_RIGHT | word / EDGE_DOWN) & kOfEachCell;
            while (steps != 0) {
                const int bit = kIsLittle ? std::countr_zero(steps) : 63 - std::countl_zero(steps);
                visit(x + i + (kIsLittle ? bit / 8 : 7 - bit / 8));
                steps ^= uint64_t{1} << bit;
            }
        }
    }
    for (; x < count; ++x) {
        if ((cells[x] & (EDGE_RIGHT | EDGE_DOWN)) != 0) {
            visit(x);
        }
    }
}

/// Every pixel with a step, in row order. Diagonal flags alone ask for nothing.
template <class Context>
void visitFlagged(const Context& context) {
    PixelProcedure<Context> procedure(context);
    for (int32_t y = 0; y < context.height(); ++y) {
        forEachStep(context.map.cell(0, y), context.width(), [&](int32_t x) { procedure.visit(x, y); });
    }
}

} // namespace kovalune
