#include "effect/smoothing/EdgeFlagMap.h"

#include "effect/raster/Rows.h"
#include "effect/raster/SameBytes.h"
#include "effect/share/SizeProduct.h"
#include "effect/smoothing/PixelDifference.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace kovalune {
namespace {

constexpr int32_t kGroup = 4;

/// A bit for each of the four columns of a group, as one byte each.
constexpr uint8_t kSpread[16][kGroup] = {{0, 0, 0, 0}, {1, 0, 0, 0}, {0, 1, 0, 0}, {1, 1, 0, 0},
                                         {0, 0, 1, 0}, {1, 0, 1, 0}, {0, 1, 1, 0}, {1, 1, 1, 0},
                                         {0, 0, 0, 1}, {1, 0, 0, 1}, {0, 1, 0, 1}, {1, 1, 0, 1},
                                         {0, 0, 1, 1}, {1, 0, 1, 1}, {0, 1, 1, 1}, {1, 1, 1, 1}};

uint32_t spread(uint32_t bits, EdgeFlag flag) {
    uint32_t cells = 0;
    std::memcpy(&cells, kSpread[bits], sizeof cells);
    return cells * flag;
}

/// The columns whose diagonals count, where `edges` are the columns with an edge to the right or below: a diagonal pair is
/// looked at only where the group has shown an edge up to the column after it; the last column's always are.
uint32_t diagonalColumns(uint32_t edges) {
    const uint32_t first = (edges & 3) != 0 ? 1 : 0;
    const uint32_t second = (edges & 7) != 0 ? 2 : 0;
    const uint32_t third = edges != 0 ? 4 : 0;
    return first | second | third | 8;
}

template <class Format>
class Filler {
public:
    using Pixel = typename Format::Pixel;

    Filler(EdgeFlagMap& map, const PF_EffectWorld& world, typename SmoothOf<Format>::Limit limit)
        : map_(map), world_(world), limit_(limit) {}

    void fill() {
        for (int32_t y = 0; y + 1 < map_.height(); ++y) {
            fillRow(y);
        }
        const int32_t lastRow = map_.height() - 1;
        for (int32_t x = 0; x + 1 < map_.width(); ++x) {
            mark(x, lastRow, EDGE_RIGHT, at(x, lastRow), at(x + 1, lastRow));
        }
        const int32_t lastColumn = map_.width() - 1;
        for (int32_t y = 0; y + 1 < map_.height(); ++y) {
            mark(lastColumn, y, EDGE_DOWN, at(lastColumn, y), at(lastColumn, y + 1));
        }
    }

private:
    /// All columns but the last. Most of a drawing is of one colour over many columns.
    void fillRow(int32_t y) {
        const Pixel* const upper = row(y);
        const Pixel* const lower = row(y + 1);
        const int32_t grouped = (map_.width() - 1) & ~(kGroup - 1);
        int32_t x = 0;
        for (int32_t block = 0; x < grouped; x += kWide, ++block) {
            prefetch(lower + x);
            uint8_t& even = even_[std::min(block, kBlocks)];
            const bool isWide = x + kWide <= grouped;
            const bool isFlat =
                isWide && (even != 0 || isEven<kWide>(upper + x)) && isRepeated<kWide>(upper + x, lower + x);
            even = isFlat && block < kBlocks ? 1 : 0;
            const int32_t end = isFlat ? x : std::min(x + kWide, grouped);
            for (int32_t group = x; group < end; group += kGroup) {
                if (!isEven<kGroup>(upper + group) || !isRepeated<kGroup>(upper + group, lower + group)) {
                    fillGroup(upper + group, lower + group, map_.cell(group, y));
                }
            }
        }
        for (x = grouped; x + 1 < map_.width(); ++x) {
            mark(x, y, EDGE_RIGHT, upper[x], upper[x + 1]);
            mark(x, y, EDGE_DOWN, upper[x], lower[x]);
            mark(x, y, EDGE_FALLING, upper[x], lower[x + 1]);
            mark(x, y, EDGE_RISING, lower[x], upper[x + 1]);
        }
    }

    /// The lower row has not been seen yet, and a block of it is compared sooner than memory gives the next one.
    static void prefetch(const Pixel* pixels) {
        constexpr std::size_t kAhead = 2048;
        const void* const here = pixels;
        const auto* const ahead = static_cast<const uint8_t*>(here) + kAhead;
        __builtin_prefetch(ahead);
        __builtin_prefetch(ahead + 64);
    }

    /// Whether so many columns and the next one have the same pixel.
    template <int32_t columns>
    static bool isEven(const Pixel* pixels) {
        return areSameBytes<std::size_t{columns} * sizeof(Pixel)>(pixels, pixels + 1);
    }

    /// Whether they are in both rows the same.
    template <int32_t columns>
    static bool isRepeated(const Pixel* upper, const Pixel* lower) {
        return areSameBytes<std::size_t{columns + 1} * sizeof(Pixel)>(upper, lower);
    }

    void fillGroup(const Pixel* upper, const Pixel* lower, uint8_t* cells) {
        const uint32_t right = fourPixelsDiffer<Format>(upper, upper + 1, limit_);
        const uint32_t down = fourPixelsDiffer<Format>(upper, lower, limit_);
        const uint32_t counted = diagonalColumns(right | down);
        const uint32_t falling = fourPixelsDiffer<Format>(upper, lower + 1, limit_) & counted;
        const uint32_t rising = fourPixelsDiffer<Format>(lower, upper + 1, limit_) & counted;
        const uint32_t flags = spread(right, EDGE_RIGHT) | spread(down, EDGE_DOWN) |
                               spread(falling, EDGE_FALLING) | spread(rising, EDGE_RISING);
        std::memcpy(cells, &flags, sizeof flags);
    }

    void mark(int32_t x, int32_t y, EdgeFlag flag, const Pixel& a, const Pixel& b) {
        if (pixelsDiffer<Format>(a, b, limit_)) {
            map_.add(x, y, flag);
        }
    }

    const Pixel* row(int32_t y) const { return rowOf<Format>(world_, FrameRect{}, y); }
    const Pixel& at(int32_t x, int32_t y) const { return row(y)[x]; }

    EdgeFlagMap& map_;
    const PF_EffectWorld& world_;
    typename SmoothOf<Format>::Limit limit_;

    /// Columns that are looked at together, and whether each such block is known to be even in the next row, which was the
    /// lower one before. Of a picture beyond the widest of frames the last blocks are not remembered.
    static constexpr int32_t kWide = 128 / static_cast<int32_t>(sizeof(Pixel));
    static constexpr int32_t kBlocks = 32768 / kWide;
    uint8_t even_[std::size_t{kBlocks} + 1] = {};
};

} // namespace

EdgeFlagMap::EdgeFlagMap(const PF_EffectWorld& memory, int32_t width, int32_t height)
    : stride_(memory.rowbytes), width_(width), height_(height) {
    auto* const first = objectAt<uint8_t>(memory.data, 0);
    for (int32_t i = 0; i < rowCount(height); ++i) {
        std::memset(first + sizeProduct<std::ptrdiff_t>(i, stride_), 0,
                    static_cast<std::size_t>(rowCells(width)));
    }
    origin_ = first + stride_ + kLeftMargin;
}

template <class Format>
void fillEdgeFlags(EdgeFlagMap& map, const PF_EffectWorld& world, typename SmoothOf<Format>::Limit limit) {
    Filler<Format>(map, world, limit).fill();
}

template void fillEdgeFlags<Argb8>(EdgeFlagMap&, const PF_EffectWorld&, int32_t);
template void fillEdgeFlags<Argb16>(EdgeFlagMap&, const PF_EffectWorld&, int32_t);
template void fillEdgeFlags<Argb32>(EdgeFlagMap&, const PF_EffectWorld&, float);

} // namespace kovalune
