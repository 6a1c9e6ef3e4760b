// A straight edge of two or more pixels that meets a staircase of 45 degrees gets a ramp along the staircase.
#pragma once

#include "effect/smoothing/EdgeFlagMap.h"
#include "effect/smoothing/RunBlends.h"

#include <cstdint>

namespace kovalune {

/// One tracer. All places are relative to the visited pixel; `move` is one step of the staircase, which also moves source
/// and targets.
struct DiagonalTracer {
    int8_t startX, startY;
    int8_t moveX, moveY;
    EdgeFlag carryFlag; ///< goes on while the cell has it
    EdgeFlag stopFlag;  ///< stops where the cell or its companion has it
    int8_t companionX, companionY;
    int8_t sourceX, sourceY;
    int8_t innerX, innerY;
    bool writesSource; ///< the pixel that the source was read from is pulled back toward its own value
};

//                                             start   move    carry   stop      companion source  inner   outer
constexpr DiagonalTracer kVerticalTracers[] = {
    {1, -1, 1, -1, EDGE_DOWN, EDGE_RISING, -1, 0, 1, -1, 1, 0, true},
    {0, 1, -1, 1, EDGE_DOWN, EDGE_RISING, -1, 0, 0, 2, 0, 1, false},
    {0, -1, -1, -1, EDGE_DOWN, EDGE_FALLING, -1, 0, 0, -1, 0, 0, true},
    {1, 1, 1, 1, EDGE_DOWN, EDGE_FALLING, -1, 0, 1, 2, 1, 1, false},
};
constexpr DiagonalTracer kHorizontalTracers[] = {
    {0, 0, 1, -1, EDGE_RIGHT, EDGE_RISING, 0, -1, 1, 0, 0, 0, true},
    {-2, 1, -1, 1, EDGE_RIGHT, EDGE_RISING, 0, -1, -2, 1, -1, 1, false},
    {-2, 0, -1, -1, EDGE_RIGHT, EDGE_FALLING, 0, -1, -2, 0, -1, 0, true},
    {0, 1, 1, 1, EDGE_RIGHT, EDGE_FALLING, 0, -1, 1, 1, 0, 1, false},
};

/// How many steps the staircase goes on, less one; below 1 for none.
template <class Context>
int32_t staircaseLength(const Context& c, const DiagonalTracer& t, int32_t x, int32_t y) {
    int32_t cx = x + t.startX;
    int32_t cy = y + t.startY;
    int32_t n = -1;
    while (c.has(cx, cy, t.carryFlag) && c.lacks(cx, cy, t.stopFlag) &&
           c.lacks(cx + t.companionX, cy + t.companionY, t.stopFlag)) {
        cx += t.moveX;
        cy += t.moveY;
        ++n;
    }
    return n;
}

template <class Context>
bool traceDiagonal(const Context& c, const DiagonalTracer& t, int32_t x, int32_t y) {
    using Traits = typename Context::Traits;
    const int32_t n = staircaseLength(c, t, x, y);
    if (n < 1) {
        return false;
    }
    const auto step = Traits::rampStep(rampDivisor(c.strength, n));
    RampOf<Context> inner(Traits::kThird, step, c.curve);
    RampOf<Context> outer(Traits::kHalf, step, c.curve);
    while (!inner.finished) {
        const auto color = c.src(x + t.sourceX, y + t.sourceY);
        c.blend(x + t.innerX, y + t.innerY, color, nextWeight(inner));
        if (t.writesSource) {
            c.blend(x + t.sourceX, y + t.sourceY, color, nextWeight(outer));
        }
        x += t.moveX;
        y += t.moveY;
    }
    return true;
}

/// All four tracers run, in order. True if any fired.
template <class Context>
bool traceDiagonals(const Context& c, const DiagonalTracer (&tracers)[4], int32_t x, int32_t y) {
    bool fired = false;
    for (const DiagonalTracer& tracer : tracers) {
        fired = traceDiagonal(c, tracer, x, y) || fired;
    }
    return fired;
}

template <class Context>
bool traceVerticalDiagonals(const Context& c, int32_t x, int32_t y) {
    const bool straight =
        c.has(x, y + 1, EDGE_RIGHT) && c.lacks(x, y, EDGE_DOWN) && c.lacks(x + 1, y, EDGE_DOWN);
    return straight && traceDiagonals(c, kVerticalTracers, x, y);
}

template <class Context>
bool traceHorizontalDiagonals(const Context& c, int32_t x, int32_t y) {
    const bool straight =
        c.has(x - 1, y, EDGE_DOWN) && c.lacks(x - 1, y, EDGE_RIGHT) && c.lacks(x - 1, y + 1, EDGE_RIGHT);
    return straight && traceDiagonals(c, kHorizontalTracers, x, y);
}

} // namespace kovalune
