// How far a stair-step of a boundary reaches: straight runs from a step, lines of one pixel's thickness, and dots. The
// tests read only the flag map. Lengths are in pixels, 0 for none.
#pragma once

#include "effect/smoothing/EdgeFlagMap.h"

#include <cstdint>

namespace kovalune {

/// A run on the pixel row (left, right) from the vertical step at the right side of (x, y), or on the pixel column (up,
/// down) from the horizontal step at its bottom side. Right and down are no exact mirrors of left and up: at the
/// image's border they count one pixel more.
int32_t measureRunLeft(const EdgeFlagMap& map, int32_t x, int32_t y);
int32_t measureRunRight(const EdgeFlagMap& map, int32_t x, int32_t y);
int32_t measureRunUp(const EdgeFlagMap& map, int32_t x, int32_t y);
int32_t measureRunDown(const EdgeFlagMap& map, int32_t x, int32_t y);

/// How far a line of one pixel's thickness extends from its blunt end; beyond five pixels the length counts half.
int32_t measureTaperLeft(const EdgeFlagMap& map, int32_t x, int32_t y);
int32_t measureTaperRight(const EdgeFlagMap& map, int32_t x, int32_t y);
int32_t measureTaperUp(const EdgeFlagMap& map, int32_t x, int32_t y);
int32_t measureTaperDown(const EdgeFlagMap& map, int32_t x, int32_t y);

enum class Side { kLeft, kRight, kUp, kDown };

/// Whether the step of (x, y) belongs to a block of 2 by 2 pixels with walls all around and none inside.
bool isIsolatedSquare(const EdgeFlagMap& map, Side side, int32_t x, int32_t y);

/// The stretch of a run of length `own` whose other end has a run of length `far` in the opposite direction, so that the
/// ramps over both sides of a step meet. Percent; may come out below 1.
int32_t balancedStrength(const EdgeFlagMap& map, Side side, int32_t own, int32_t far, int32_t x, int32_t y,
                         int32_t strength);

} // namespace kovalune
