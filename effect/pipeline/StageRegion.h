// What the Base stage and the Process stages do alike: matching colours in the input, and smoothing the
// stair-steps of selected pixels.
#pragma once

#include "effect/pipeline/Frame.h"

namespace kovalune {

/// Adds the match of a colour. A conversion that fails is the frame's failure; the match is then made of what
/// the conversions left in `hls`.
void addColorMatch(Frame& frame, ColorMatches& matches, const FrameColor& color, HlsColor& hls);

/// Fills the frame's `extractMask`, unless something has failed before. The matching always reads the input, so that
/// a stage does not depend on the blur of one before it. Returns how many pixels each match has, where the frame
/// reports.
MatchCounts extractColors(Frame& frame, const ColorMatches& matches);

/// Adds the frame's `stageMask` to the unions of all stages' regions, whatever has failed.
void mergeStageMask(Frame& frame);

/// The masked pixels of `from`, alone in `maskedWorld`, are smoothed into `smoothed`, the latter regardless of failures.
void smoothMasked(Frame& frame, PF_EffectWorld* from, const MaskPlane& mask, PF_EffectWorld* smoothed);

} // namespace kovalune
