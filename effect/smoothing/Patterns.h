// Steps of one pixel, nubs, and places where the ramps of two runs meet and overshoot.
#pragma once

#include "effect/smoothing/NubFilter.h"
#include "effect/smoothing/PatternTables.h"
#include "effect/smoothing/SmoothContext.h"

#include <cstddef>
#include <cstdint>

namespace kovalune {

template <class Context>
bool cellsMatch(const Context& c, const CellTest* cells, int count, int32_t x, int32_t y) {
    for (int i = 0; i < count; ++i) {
        const uint8_t flags = c.map(x + cells[i].dx, y + cells[i].dy);
        if ((flags & cells[i].has) != cells[i].has || (flags & cells[i].lacks) != 0) {
            return false;
        }
    }
    return true;
}

template <class Context>
bool patternHolds(const Context& c, const RestorePattern& p, int32_t x, int32_t y) {
    return cellsMatch(c, p.cells, kMostCells, x, y);
}

/// A partial undoing: the target of the first pattern that holds takes its own source pixel at half weight.
template <class Context, std::size_t count>
void mend(const Context& c, const RestorePattern (&patterns)[count], int32_t x, int32_t y) {
    for (const RestorePattern& p : patterns) {
        if (patternHolds(c, p, x, y)) {
            c.blend(x + p.targetX, y + p.targetY, c.src(x + p.targetX, y + p.targetY),
                    Context::Smooth::kHalf);
            return;
        }
    }
}

template <class Context>
void mendRightStep(const Context& c, int32_t x, int32_t y) {
    mend(c, patternTables::kMendRightStep, x, y);
}
template <class Context>
void mendDownStep(const Context& c, int32_t x, int32_t y) {
    mend(c, patternTables::kMendDownStep, x, y);
}
template <class Context>
void mendDownRightStep(const Context& c, int32_t x, int32_t y) {
    mend(c, patternTables::kMendDownRightStep, x, y);
}

/// A vertical step that has neither run nor diagonal still exchanges a little colour, on the sides without a ramp.
template <class Context>
void blendFringe(const Context& c, int32_t x, int32_t y, bool leftDone, bool rightDone) {
    if (!rightDone) {
        c.blend(x + 1, y, c.src(x, y), c.smallWeight);
    }
    if (!leftDone) {
        c.blend(x, y, c.src(x + 1, y), c.smallWeight);
    }
}

/// Whether the pixel sticks out: three or four sides are edges, and the corners beside them too.
template <class Context>
bool isNub(const Context& c, int32_t x, int32_t y) {
    const bool left = c.has(x - 1, y, EDGE_RIGHT);
    const bool right = c.has(x, y, EDGE_RIGHT);
    const bool top = c.has(x, y - 1, EDGE_DOWN);
    const bool bottom = c.has(x, y, EDGE_DOWN);
    const bool nw = c.has(x - 1, y - 1, EDGE_FALLING);
    const bool ne = c.has(x, y - 1, EDGE_RISING);
    const bool sw = c.has(x - 1, y, EDGE_RISING);
    const bool se = c.has(x, y, EDGE_FALLING);
    const int sides = int{left} + int{right} + int{top} + int{bottom};
    if (sides == 4) {
        return (se || nw) && (ne || sw);
    }
    if (sides != 3 || (nw && ne && sw && se)) {
        return false;
    }
    if (!left) {
        return ne && se;
    }
    if (!right) {
        return nw && sw;
    }
    return !top ? sw && se : nw && ne;
}

/// Takes back most of what ramps did to a pixel that should stay sharp; a target in column 0 is left alone.
template <class Context>
void restore(const Context& c, const RestorePattern& p, int32_t x, int32_t y) {
    const int32_t tx = x + p.targetX;
    const int32_t ty = y + p.targetY;
    if (tx > 0) {
        c.blend(tx, ty, c.src(tx, ty), Context::Smooth::kThreeQuarters);
    }
}

/// At most one pattern acts.
template <class Context>
void restoreSharpPixel(const Context& c, int32_t x, int32_t y) {
    if (c.lacks(x, y, EDGE_RIGHT)) {
        if (patternHolds(c, patternTables::kRestoreHorizontalStep, x, y)) {
            restore(c, patternTables::kRestoreHorizontalStep, x, y);
        }
        return;
    }
    if (x < c.width() - 3 && y > 2 && patternHolds(c, patternTables::kRestoreFarFromBorder, x, y)) {
        restore(c, patternTables::kRestoreFarFromBorder, x, y);
        return;
    }
    for (const RestorePattern& p : patternTables::kRestoreVerticalStep) {
        if (patternHolds(c, p, x, y)) {
            restore(c, p, x, y);
            return;
        }
    }
}

template <class Context>
void nubOrRestore(const Context& c, int32_t x, int32_t y) {
    if (isNub(c, x, y)) {
        softenNub(c, x, y);
    } else {
        restoreSharpPixel(c, x, y);
    }
}

/// Pixels next to a step on the run's line take a little colour across the corner.
template <class Context>
void blendShoulders(const Context& c, const ShoulderPair (&pairs)[2], int32_t x, int32_t y) {
    for (const ShoulderPair& pair : pairs) {
        if (!cellsMatch(c, pair.cells, 3, x, y)) {
            continue;
        }
        for (const ShoulderWrite& w : pair.writes) {
            if (c.lacks(x + w.unlessX, y + w.unlessY, w.unlessFlag)) {
                c.blend(x + w.targetX, y + w.targetY, c.src(x + w.sourceX, y + w.sourceY),
                        Context::Smooth::kSixth);
            }
        }
    }
}

} // namespace kovalune
