// What the benchmarks work on: a flat-colour drawing, noise and one colour alone, 1920 by 1080 or twice as wide and high,
// in the three depths, and a host to run passes in. Rates are megapixels of the whole picture a second, whatever part of
// it a mask leaves.
#pragma once

#include "effect/pipeline/ColorMatch.h"
#include "effect/raster/MaskPlane.h"
#include "effect/share/FrameRect.h"
#include "host/Image.h"
#include "hostapi/HostApi.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <functional>

namespace kovalune::bench {

/// The first argument of a benchmark that has one.
enum Source : int64_t { kDrawing = 0, kNoise = 1, kFlat = 2 };

/// How many times 1920 by 1080 a picture is, across and down. A larger drawing is the drawing side by side.
enum Scale : int64_t { kFullHd = 1, kUltraHd = 2 };

inline constexpr A_long kWidth = 1920;
inline constexpr A_long kHeight = 1080;
inline constexpr FrameRect kWhole = {0, 0, static_cast<int16_t>(kHeight), static_cast<int16_t>(kWidth)};

/// Made once for each source, format and scale.
const host::Image& picture(int64_t source, PF_PixelFormat format, int64_t scale = kFullHd);

/// A world on a picture's memory; the picture stays its owner.
PF_EffectWorld worldOn(host::Image& image);

/// A source, a destination and a scratch picture for a pass.
template <PF_PixelFormat format>
struct BlurWorlds {
    explicit BlurWorlds(int64_t source)
        : input(picture(source, format)), output(input), between(input), src(worldOn(input)),
          dst(worldOn(output)), tmp(worldOn(between)) {}

    host::Image input;
    host::Image output;
    host::Image between;
    PF_EffectWorld src;
    PF_EffectWorld dst;
    PF_EffectWorld tmp;
};

/// Runs `body` inside a command of the reference host, with as many threads as the machine has.
void runInHost(const std::function<void(PF_InData*)>& body);

/// The matches of the picked colours.
ColorMatches pickedMatches(PF_InData* inData);

/// The drawing's picked pixels, or every second pixel at random.
MaskPlane regionMask(PF_InData* inData, int64_t source);

/// How many pixels a mask selects.
int64_t selectedBy(const MaskPlane& mask);

/// Sets the rate and names the source; called once after a benchmark's loop.
void report(benchmark::State& state, int64_t source, int64_t scale = kFullHd);

} // namespace kovalune::bench
