// The fixed patterns of one-pixel steps, as tables: which flags the cells around the visited pixel must have and lack.
// The cells of a pattern are tested in order, but for those of a window, which come first; a cell far away stands after
// one that proves its row to exist.
#pragma once

#include "effect/smoothing/EdgeFlagMap.h"
#include "effect/smoothing/FlagWindow.h"

#include <cstdint>

namespace kovalune {

inline constexpr int kMostCells = 7;

/// The target, relative to the visited pixel, takes its own source pixel.
struct RestorePattern {
    CellTest cells[kMostCells]; ///< unused ones ask nothing of the pixel itself
    int8_t targetX, targetY;
};

/// One pixel takes a little of another's colour across a corner, unless a flag says that the corner is closed.
struct ShoulderWrite {
    int8_t targetX, targetY;
    int8_t sourceX, sourceY;
    int8_t unlessX, unlessY;
    uint8_t unlessFlag;
};

struct ShoulderPair {
    CellTest cells[3];
    ShoulderWrite writes[2];
};

/// The tables, apart for the sake of the letters that they are written in.
namespace pattern_tables {

inline constexpr uint8_t R = EDGE_RIGHT;
inline constexpr uint8_t D = EDGE_DOWN;
inline constexpr uint8_t F = EDGE_FALLING;
inline constexpr uint8_t U = EDGE_RISING;

inline constexpr RestorePattern kMendRightStep[] = {
    {{{0, -1, D, 0},
      {0, 0, 0, F},
      {-1, -1, D, 0},
      {-1, 0, D, R},
      {-2, 0, R, 0},
      {-2, -1, D | R, F},
      {-2, -2, D, 0}},
     -1,
     0},
    {{{-1, 0, R, 0}, {0, -1, D | R, U}, {1, -1, D | R, 0}, {0, -2, R, 0}, {1, -2, 0, D}, {1, -3, R, U}},
     1,
     -1},
    {{{-1, 0, R, 0},
      {0, -1, D, 0},
      {-1, -1, R | D, F},
      {-2, -1, R, 0},
      {-1, -2, R, D},
      {-1, -3, D, 0},
      {-2, -3, 0, F}},
     -1,
     -1},
};

inline constexpr RestorePattern kMendDownStep[] = {
    {{{0, -1, D | R, U}, {1, -1, D, 0}, {1, -2, D, 0}, {-1, -1, D, 0}, {-2, 0, R, U}, {-1, 0, 0, R}}, 0, 0},
    {{{-1, 0, R, 0},
      {0, -1, D, 0},
      {-1, -1, D | R, F},
      {-1, -2, D, 0},
      {-2, -1, D, R},
      {-3, -1, R, 0},
      {-3, -2, 0, F}},
     -1,
     -1},
    {{{-1, 0, R, 0},
      {0, -1, R, D},
      {-1, -1, R, 0},
      {0, -2, D, 0},
      {-1, -2, R | D, F},
      {-2, -2, R, 0},
      {0, 0, 0, F}},
     0,
     -1},
};

inline constexpr RestorePattern kMendDownRightStep[] = {
    {{{0, -1, R | D, U}, {1, -1, D, R}, {1, -2, D, 0}, {2, -1, R | D, 0}, {2, -2, 0, U}}, 1, -1},
    {{{0, -1, R, D}, {0, -2, R | D, U}, {-1, -1, R, 0}, {1, -2, D | R, 0}, {-1, 0, 0, U}}, 0, -1},
};

/// Restores of a pixel with a vertical step. The first stands after a test of the image's border.
inline constexpr RestorePattern kRestoreFarFromBorder[] = {
    {{{0, -2, 0, F}, {1, -2, D, 0}, {2, -2, D, 0}, {0, -1, R, 0}, {1, -1, 0, R | D}}, 1, -1}};
inline constexpr RestorePattern kRestoreVerticalStep[] = {
    {{{-1, -1, D, 0}, {0, -1, D, U}, {-1, 0, 0, R}, {0, 0, 0, D}, {0, 1, R, 0}}, 0, 0},
    {{{0, -1, R, D}, {-1, 0, D, R}, {0, 0, D, F}}, 0, 0},
};
/// Of a pixel with a horizontal step alone.
inline constexpr RestorePattern kRestoreHorizontalStep[] = {
    {{{-1, -1, R, 0}, {0, -1, 0, D}, {-1, 0, R, U}, {1, 0, D, 0}}, 0, 0}};

/// Above and below a vertical step.
inline constexpr ShoulderPair kVerticalShoulders[] = {
    {{{0, -1, D, R}, {1, -1, D, 0}}, {{0, -1, 0, 0, -1, -1, F}, {1, -1, 1, 0, 1, -1, U}}},
    {{{0, 0, D, 0}, {1, 0, D, 0}, {0, 1, 0, R}}, {{0, 1, 0, 0, -1, 0, U}, {1, 1, 1, 0, 1, 0, F}}},
};
/// To the left and to the right of a horizontal step.
inline constexpr ShoulderPair kHorizontalShoulders[] = {
    {{{-1, 0, R, D}, {-1, 1, R, 0}}, {{-1, 0, 0, 0, -1, -1, F}, {-1, 1, 0, 1, -1, 1, U}}},
    {{{0, 0, R, 0}, {0, 1, R, 0}, {1, 0, 0, D}}, {{1, 0, 0, 0, 0, -1, U}, {1, 1, 0, 1, 0, 1, F}}},
};

} // namespace pattern_tables

} // namespace kovalune
