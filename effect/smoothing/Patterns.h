// Steps of one pixel, nubs, and places where the ramps of two runs meet and overshoot.
#pragma once

#include "effect/smoothing/FlagWindow.h"
#include "effect/smoothing/NubFilter.h"
#include "effect/smoothing/PatternTables.h"
#include "effect/smoothing/SmoothContext.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <iterator>

namespace kovalune {

/// The entries of a table whose windows hold, a bit each.
template <const auto& table>
uint32_t windowsIn(const FlagWindow& f) {
    static constexpr auto kWindows = windowsOf(table);
    return whichHold(kWindows, f);
}

template <const auto& table>
bool mayHold(const FlagWindow& f) {
    return windowsIn<table>(f) != 0;
}

/// All cells of a pattern whose window holds.
template <class Context>
bool cellsHold(const Context& c, const RestorePattern& p, int32_t x, int32_t y) {
    return std::all_of(std::begin(p.cells), std::end(p.cells), [&](const CellTest& cell) {
        const uint8_t flags = c.map(x + cell.dx, y + cell.dy);
        return (flags & cell.has) == cell.has && (flags & cell.lacks) == 0;
    });
}

/// The first entry of a table that holds; null for none.
template <const auto& table, class Context>
const RestorePattern* firstThatHolds(const Context& c, const FlagWindow& f, int32_t x, int32_t y) {
    for (uint32_t held = windowsIn<table>(f); held != 0; held &= held - 1) {
        const RestorePattern& p = table[std::countr_zero(held)];
        if (cellsHold(c, p, x, y)) {
            return &p;
        }
    }
    return nullptr;
}

/// A partial undoing: the target of the first pattern that holds takes its own source pixel at half weight.
template <const auto& table, class Context>
void mend(const Context& c, const FlagWindow& f, int32_t x, int32_t y) {
    if (const RestorePattern* const p = firstThatHolds<table>(c, f, x, y)) {
        c.blend(x + p->targetX, y + p->targetY, c.src(x + p->targetX, y + p->targetY),
                Context::Smooth::kHalf);
    }
}

template <class Context>
void mendRightStep(const Context& c, const FlagWindow& f, int32_t x, int32_t y) {
    mend<pattern_tables::kMendRightStep>(c, f, x, y);
}
template <class Context>
void mendDownStep(const Context& c, const FlagWindow& f, int32_t x, int32_t y) {
    mend<pattern_tables::kMendDownStep>(c, f, x, y);
}
template <class Context>
void mendDownRightStep(const Context& c, const FlagWindow& f, int32_t x, int32_t y) {
    mend<pattern_tables::kMendDownRightStep>(c, f, x, y);
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
inline bool isNub(const FlagWindow& f) {
    constexpr uint64_t kSides = FlagWindow::at(-1, 0, EDGE_RIGHT) | FlagWindow::at(0, 0, EDGE_RIGHT) |
                                FlagWindow::at(0, -1, EDGE_DOWN) | FlagWindow::at(0, 0, EDGE_DOWN);
    const uint64_t open = ~f.cells() & kSides;
    if ((open & (open - 1)) != 0) {
        return false;
    }
    const bool nw = f.has(-1, -1, EDGE_FALLING);
    const bool ne = f.has(0, -1, EDGE_RISING);
    const bool sw = f.has(-1, 0, EDGE_RISING);
    const bool se = f.has(0, 0, EDGE_FALLING);
    if (open == 0) {
        return (se || nw) && (ne || sw);
    }
    if (nw && ne && sw && se) {
        return false;
    }
    if (f.lacks(-1, 0, EDGE_RIGHT)) {
        return ne && se;
    }
    if (f.lacks(0, 0, EDGE_RIGHT)) {
        return nw && sw;
    }
    return f.lacks(0, -1, EDGE_DOWN) ? sw && se : nw && ne;
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

inline bool mayRestore(const FlagWindow& f) {
    return f.lacks(0, 0, EDGE_RIGHT) ? mayHold<pattern_tables::kRestoreHorizontalStep>(f)
                                     : mayHold<pattern_tables::kRestoreFarFromBorder>(f) ||
                                           mayHold<pattern_tables::kRestoreVerticalStep>(f);
}

/// At most one pattern acts.
template <class Context>
void restoreSharpPixel(const Context& c, const FlagWindow& f, int32_t x, int32_t y) {
    const RestorePattern* p = nullptr;
    if (f.lacks(0, 0, EDGE_RIGHT)) {
        p = firstThatHolds<pattern_tables::kRestoreHorizontalStep>(c, f, x, y);
    } else {
        if (x < c.width() - 3 && y > 2) {
            p = firstThatHolds<pattern_tables::kRestoreFarFromBorder>(c, f, x, y);
        }
        if (p == nullptr) {
            p = firstThatHolds<pattern_tables::kRestoreVerticalStep>(c, f, x, y);
        }
    }
    if (p != nullptr) {
        restore(c, *p, x, y);
    }
}

template <class Context>
void nubOrRestore(const Context& c, const FlagWindow& f, int32_t x, int32_t y) {
    if (isNub(f)) {
        softenNub(c, x, y);
    } else {
        restoreSharpPixel(c, f, x, y);
    }
}

/// Pixels next to a step on the run's line take a little colour across the corner. Windows cover all of their patterns.
template <const auto& table, class Context>
void blendShoulders(const Context& c, const FlagWindow& f, int32_t x, int32_t y) {
    for (uint32_t held = windowsIn<table>(f); held != 0; held &= held - 1) {
        for (const ShoulderWrite& w : table[std::countr_zero(held)].writes) {
            if (f.lacks(w.unlessX, w.unlessY, w.unlessFlag)) {
                c.blend(x + w.targetX, y + w.targetY, c.src(x + w.sourceX, y + w.sourceY),
                        Context::Smooth::kSixth);
            }
        }
    }
}

template <class Context>
void blendVerticalShoulders(const Context& c, const FlagWindow& f, int32_t x, int32_t y) {
    blendShoulders<pattern_tables::kVerticalShoulders>(c, f, x, y);
}
template <class Context>
void blendHorizontalShoulders(const Context& c, const FlagWindow& f, int32_t x, int32_t y) {
    blendShoulders<pattern_tables::kHorizontalShoulders>(c, f, x, y);
}

} // namespace kovalune
