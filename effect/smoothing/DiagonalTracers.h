// A straight edge of two or more pixels that meets a staircase of 45 degrees gets a ramp along the staircase.
#pragma once

#include "effect/smoothing/EdgeFlagMap.h"
#include "effect/smoothing/FlagWindow.h"
#include "effect/smoothing/RunBlends.h"

#include <bit>
#include <cstdint>

namespace kovalune {

/// A place relative to the visited pixel, or a step from one pixel to another.
struct Offset {
    int8_t x, y;
};

/// One tracer; a `move` is one step of the staircase, and moves source and targets too.
struct DiagonalTracer {
    Offset start;
    Offset move;
    EdgeFlag carry;   ///< goes on while the cell has it
    EdgeFlag stop;    ///< stops where the cell or its companion has it
    Offset companion; ///< from the cell
    Offset source;
    Offset inner;      ///< first target
    bool writesSource; ///< second target: the source's own pixel is pulled back toward its own value
};

// start, move, carry, stop, companion, source, inner, writesSource
inline constexpr DiagonalTracer kVerticalTracers[] = {
    {{1, -1}, {1, -1}, EDGE_DOWN, EDGE_RISING, {-1, 0}, {1, -1}, {1, 0}, true},
    {{0, 1}, {-1, 1}, EDGE_DOWN, EDGE_RISING, {-1, 0}, {0, 2}, {0, 1}, false},
    {{0, -1}, {-1, -1}, EDGE_DOWN, EDGE_FALLING, {-1, 0}, {0, -1}, {0, 0}, true},
    {{1, 1}, {1, 1}, EDGE_DOWN, EDGE_FALLING, {-1, 0}, {1, 2}, {1, 1}, false},
};
inline constexpr DiagonalTracer kHorizontalTracers[] = {
    {{0, 0}, {1, -1}, EDGE_RIGHT, EDGE_RISING, {0, -1}, {1, 0}, {0, 0}, true},
    {{-2, 1}, {-1, 1}, EDGE_RIGHT, EDGE_RISING, {0, -1}, {-2, 1}, {-1, 1}, false},
    {{-2, 0}, {-1, -1}, EDGE_RIGHT, EDGE_FALLING, {0, -1}, {-2, 0}, {-1, 0}, true},
    {{0, 1}, {1, 1}, EDGE_RIGHT, EDGE_FALLING, {0, -1}, {1, 1}, {0, 1}, false},
};

/// How many steps the staircase goes on, less one; below 1 for none.
template <class Context>
int32_t staircaseLength(const Context& c, const DiagonalTracer& t, int32_t x, int32_t y) {
    int32_t cx = x + t.start.x;
    int32_t cy = y + t.start.y;
    int32_t n = -1;
    while (c.has(cx, cy, t.carry) && c.lacks(cx, cy, t.stop) &&
           c.lacks(cx + t.companion.x, cy + t.companion.y, t.stop)) {
        cx += t.move.x;
        cy += t.move.y;
        ++n;
    }
    return n;
}

/// The ramp ends with its own staircase at the latest: the step of a very long one is cut to whole weights, so that its
/// ramp would go on beyond the last cell, and past that the picture may end.
template <class Context>
bool traceDiagonal(const Context& c, const DiagonalTracer& t, int32_t x, int32_t y) {
    using Smooth = typename Context::Smooth;
    const int32_t n = staircaseLength(c, t, x, y);
    if (n < 1) {
        return false;
    }
    const auto step = Smooth::rampStep(rampDivisor(c.strength, n));
    RampOf<Context> inner(Smooth::kThird, step, c.curve);
    RampOf<Context> outer(Smooth::kHalf, step, c.curve);
    for (int32_t i = 0; i <= n && !inner.finished; ++i) {
        const auto color = c.src(x + t.source.x, y + t.source.y);
        c.blend(x + t.inner.x, y + t.inner.y, color, nextWeight(inner));
        if (t.writesSource) {
            c.blend(x + t.source.x, y + t.source.y, color, nextWeight(outer));
        }
        x += t.move.x;
        y += t.move.y;
    }
    return true;
}

/// What a tracer's first two steps ask, as far as a window shows it: without them it does nothing.
constexpr WindowPattern beginningOf(const DiagonalTracer& t) {
    WindowPattern pattern;
    for (int i = 0; i < 2; ++i) {
        const int x = t.start.x + i * t.move.x;
        const int y = t.start.y + i * t.move.y;
        pattern.add({static_cast<int8_t>(x), static_cast<int8_t>(y), t.carry, t.stop});
        pattern.add(
            {static_cast<int8_t>(x + t.companion.x), static_cast<int8_t>(y + t.companion.y), 0, t.stop});
    }
    return pattern;
}

constexpr WindowPatterns<4> beginningsOf(const DiagonalTracer (&tracers)[4]) {
    return {beginningOf(tracers[0]), beginningOf(tracers[1]), beginningOf(tracers[2]),
            beginningOf(tracers[3])};
}

/// The tracers that may do something, a bit each.
template <const DiagonalTracer (&tracers)[4]>
uint32_t beginningsIn(const FlagWindow& f) {
    static constexpr WindowPatterns<4> kBeginnings = beginningsOf(tracers);
    return whichHold(kBeginnings, f);
}

inline bool mayTraceVertically(const FlagWindow& f) {
    const bool straight = f.has(0, 1, EDGE_RIGHT) && f.lacks(0, 0, EDGE_DOWN) && f.lacks(1, 0, EDGE_DOWN);
    return straight && beginningsIn<kVerticalTracers>(f) != 0;
}

inline bool mayTraceHorizontally(const FlagWindow& f) {
    const bool straight = f.has(-1, 0, EDGE_DOWN) && f.lacks(-1, 0, EDGE_RIGHT) && f.lacks(-1, 1, EDGE_RIGHT);
    return straight && beginningsIn<kHorizontalTracers>(f) != 0;
}

/// All four tracers run, in order. True if any fired.
template <const DiagonalTracer (&tracers)[4], class Context>
bool traceDiagonals(const Context& c, const FlagWindow& f, int32_t x, int32_t y) {
    bool fired = false;
    for (uint32_t held = beginningsIn<tracers>(f); held != 0; held &= held - 1) {
        fired = traceDiagonal(c, tracers[std::countr_zero(held)], x, y) || fired;
    }
    return fired;
}

template <class Context>
bool traceVerticalDiagonals(const Context& c, const FlagWindow& f, int32_t x, int32_t y) {
    return mayTraceVertically(f) && traceDiagonals<kVerticalTracers>(c, f, x, y);
}

template <class Context>
bool traceHorizontalDiagonals(const Context& c, const FlagWindow& f, int32_t x, int32_t y) {
    return mayTraceHorizontally(f) && traceDiagonals<kHorizontalTracers>(c, f, x, y);
}

} // namespace kovalune
