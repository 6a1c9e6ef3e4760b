// What the cells at a step must show for a run or a taper of any length to go out from there. Most steps show none of it, and
// are spared the measuring.
#pragma once

#include "effect/smoothing/EdgeFlagMap.h"
#include "effect/smoothing/FlagWindow.h"

#include <cstddef>

namespace kovalune {

/// On one side of a step.
struct SideBeginnings {
    WindowPatterns<2> run; ///< along the top of the row (the left of the column), and along its bottom
    WindowPattern taper;
};

inline bool mayGoOut(const SideBeginnings& side, const FlagWindow& f) {
    return whichHold(side.run, f) != 0 || side.taper.holdsIn(f);
}

namespace run_beginnings {

/// Told for rows.
struct BeginningCells {
    CellTest top[3];
    CellTest bottom[3];
    CellTest taper[7];
};

inline constexpr BeginningCells kBackward = {
    {{0, -1, 0, EDGE_FALLING}, {-1, 0, 0, EDGE_RIGHT}, {-1, -1, EDGE_DOWN, EDGE_RIGHT}},
    {{0, 0, 0, EDGE_RISING}, {-1, 0, EDGE_DOWN, EDGE_RIGHT}, {-1, 1, 0, EDGE_RIGHT}},
    {{0, -1, 0, EDGE_FALLING},
     {1, -1, 0, EDGE_DOWN},
     {1, 0, 0, EDGE_RIGHT | EDGE_DOWN},
     {0, 0, 0, EDGE_RISING},
     {-1, -1, EDGE_DOWN, EDGE_RIGHT},
     {-1, 0, EDGE_DOWN, EDGE_RIGHT},
     {-1, 1, 0, EDGE_RIGHT}}};
inline constexpr BeginningCells kForward = {
    {{0, -1, 0, EDGE_RISING}, {1, 0, 0, EDGE_RIGHT}, {1, -1, EDGE_DOWN, EDGE_RIGHT}},
    {{0, 0, 0, EDGE_FALLING}, {1, 0, EDGE_DOWN, EDGE_RIGHT}, {1, 1, 0, EDGE_RIGHT}},
    {{0, -1, 0, EDGE_DOWN | EDGE_RISING},
     {-1, 0, 0, EDGE_RIGHT},
     {0, 0, 0, EDGE_DOWN | EDGE_FALLING},
     {1, -1, EDGE_DOWN, EDGE_RIGHT},
     {1, 0, EDGE_DOWN, EDGE_RIGHT},
     {1, 1, 0, EDGE_RIGHT}}};

template <bool transposed, std::size_t count>
constexpr WindowPattern patternOf(const CellTest (&cells)[count]) {
    WindowPattern pattern;
    for (const CellTest& c : cells) {
        pattern.add(transposed ? CellTest{c.dy, c.dx, turnedFlags(c.has), turnedFlags(c.lacks)} : c);
    }
    return pattern;
}

template <bool transposed>
constexpr SideBeginnings sideOf(const BeginningCells& cells) {
    return {{patternOf<transposed>(cells.top), patternOf<transposed>(cells.bottom)},
            patternOf<transposed>(cells.taper)};
}

inline constexpr SideBeginnings kLeft = sideOf<false>(kBackward);
inline constexpr SideBeginnings kRight = sideOf<false>(kForward);
inline constexpr SideBeginnings kUp = sideOf<true>(kBackward);
inline constexpr SideBeginnings kDown = sideOf<true>(kForward);

} // namespace run_beginnings

} // namespace kovalune
