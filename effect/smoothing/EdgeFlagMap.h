// The only picture of the image's structure that the smoothing has: for each pixel, which of four neighbouring pairs
// differ. Built once a call from pixels on which no blend has acted, and read-only afterwards.
#pragma once

#include "effect/share/SizeProduct.h"
#include "effect/smoothing/SmoothOf.h"
#include "hostapi/HostApi.h"

#include <cstddef>
#include <cstdint>

namespace kovalune {

enum EdgeFlag : uint8_t {
    EDGE_RIGHT = 1,   ///< (x, y) differs from (x + 1, y)
    EDGE_DOWN = 2,    ///< (x, y) differs from (x, y + 1)
    EDGE_FALLING = 4, ///< (x, y) differs from (x + 1, y + 1)
    EDGE_RISING = 8,  ///< (x, y + 1) differs from (x + 1, y)
};

/// One byte a cell. Around the image lie zero cells: four to the left of every row, at least one to its right, and a row
/// above and below, so that the tests around a pixel need no bounds checks of their own. The memory is a host world's.
class EdgeFlagMap {
public:
    static constexpr int32_t kLeftMargin = 4;

    /// Bytes that a row of cells takes, its margins included: a multiple of 4.
    static int32_t rowCells(int32_t width) { return (width + 5 + 3) / 4 * 4; }
    static int32_t rowCount(int32_t height) { return height + 2; }

    /// Zeroes the map's cells in `memory`, a world of `rowCells / 4` by `rowCount` 8-bit pixels.
    EdgeFlagMap(const PF_EffectWorld& memory, int32_t width, int32_t height);

    int32_t width() const { return width_; }
    int32_t height() const { return height_; }

    uint8_t operator()(int32_t x, int32_t y) const { return *cell(x, y); }

    void add(int32_t x, int32_t y, int flags) { *cell(x, y) = static_cast<uint8_t>(*cell(x, y) | flags); }

    uint8_t* cell(int32_t x, int32_t y) const {
        return origin_ + sizeProduct<std::ptrdiff_t>(y, stride_) + x;
    }
    std::ptrdiff_t stride() const { return stride_; } ///< bytes from one row of cells to the next

private:
    uint8_t* origin_; ///< cell (0, 0)
    std::ptrdiff_t stride_;
    int32_t width_;
    int32_t height_;
};

/// Flags as they are where rows and columns are exchanged.
constexpr uint8_t turnedFlags(int flags) {
    return static_cast<uint8_t>((flags & ~3) | (flags & EDGE_RIGHT) << 1 | (flags & EDGE_DOWN) >> 1);
}

/// The flags around one cell; transposed, with rows and columns exchanged, and with them the flags of the two directions: a
/// test that is written for rows works on columns.
template <bool transposed>
class FlagView {
public:
    FlagView(const EdgeFlagMap& map, int32_t x, int32_t y) : cell_(map.cell(x, y)), stride_(map.stride()) {}

    /// At `u` cells along and `v` cells across from the one that the view is of.
    bool has(int32_t u, int32_t v, int flags) const { return (cell(u, v) & turned(flags)) != 0; }
    bool lacks(int32_t u, int32_t v, int flags) const { return !has(u, v, flags); }

private:
    uint8_t cell(int32_t u, int32_t v) const {
        return transposed ? cell_[sizeProduct<std::ptrdiff_t>(u, stride_) + v]
                          : cell_[sizeProduct<std::ptrdiff_t>(v, stride_) + u];
    }

    static constexpr int turned(int flags) { return transposed ? turnedFlags(flags) : flags; }

    const uint8_t* cell_;
    std::ptrdiff_t stride_;
};

/// Fills a zeroed map from a world of the map's size.
///   limit  the colour difference above which a pair counts, in the format's scale (SmoothOf.h)
template <class Format>
void fillEdgeFlags(EdgeFlagMap& map, const PF_EffectWorld& world, typename SmoothOf<Format>::Limit limit);

} // namespace kovalune
