// The pictures of the golden frames: drawn by whole numbers from a seed, so that every machine draws the same ones.
#pragma once

#include "host/Image.h"
#include "hostapi/HostApi.h"

#include <array>
#include <cstdint>

namespace kovalune::selfcheck {

enum class PictureKind {
    kCel,         ///< shapes of flat colours with hard edges, some of them see-through
    kLines,       ///< thin lines on a flat ground: stair-steps of every slope
    kNoise,       ///< every pixel another one
    kFlat,        ///< one opaque colour
    kTransparent, ///< colours under an alpha of 0
    kSeed, ///< rows that begin with a transparent pixel whose colour, its red exchanged, an opaque one has
    kWild, ///< values beyond the scale; in float also infinities, NaN, -0 and the smallest numbers
};

inline constexpr std::array<PictureKind, 7> kPictureKinds = {
    PictureKind::kCel,         PictureKind::kLines, PictureKind::kNoise, PictureKind::kFlat,
    PictureKind::kTransparent, PictureKind::kSeed,  PictureKind::kWild};

const char* nameOf(PictureKind kind);

/// What the shapes are painted in, and what settings choose from.
using GoldenPalette = std::array<PF_Pixel, 6>;

struct GoldenPicture {
    host::Image image;
    GoldenPalette palette;
};

/// The same palette and shapes at every depth.
GoldenPicture drawGoldenPicture(PictureKind kind, PF_PixelFormat format, int32_t width, int32_t height,
                                uint64_t seed);

} // namespace kovalune::selfcheck
