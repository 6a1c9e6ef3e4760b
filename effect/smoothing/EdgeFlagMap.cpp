#include "effect/smoothing/EdgeFlagMap.h"

#include "effect/raster/Rows.h"

#include <cstring>

namespace kovalune {
namespace {

constexpr int32_t kLeftMargin = 4;

/// One comparison of a group of four columns: two pixels of the group's rows 0 and 1, and the cell and flag that it sets.
struct Comparison {
    int8_t ax, ay;
    int8_t bx, by;
    int8_t column;
    EdgeFlag flag;
    bool onlyIfMarked; ///< made only where the group has a flag already
};

// The order is part of the result: a diagonal pair is looked at only where the group has shown an edge before it.
constexpr Comparison kGroup[] = {
    {0, 0, 1, 0, 0, EDGE_RIGHT, false},  //
    {1, 0, 2, 0, 1, EDGE_RIGHT, false},  //
    {0, 0, 0, 1, 0, EDGE_DOWN, false},   //
    {1, 0, 1, 1, 1, EDGE_DOWN, false},   //
    {0, 0, 1, 1, 0, EDGE_FALLING, true}, //
    {0, 1, 1, 0, 0, EDGE_RISING, true},  //
    {2, 0, 3, 0, 2, EDGE_RIGHT, false},  //
    {2, 0, 2, 1, 2, EDGE_DOWN, false},   //
    {2, 0, 1, 1, 1, EDGE_RISING, true},  //
    {1, 0, 2, 1, 1, EDGE_FALLING, true}, //
    {3, 0, 4, 0, 3, EDGE_RIGHT, false},  //
    {3, 0, 3, 1, 3, EDGE_DOWN, false},   //
    {2, 0, 3, 1, 2, EDGE_FALLING, true}, //
    {3, 0, 2, 1, 2, EDGE_RISING, true},  //
    {3, 1, 4, 0, 3, EDGE_RISING, false}, //
    {3, 0, 4, 1, 3, EDGE_FALLING, false},
};

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
    /// All columns but the last.
    void fillRow(int32_t y) {
        const Pixel* const rows[2] = {row(y), row(y + 1)};
        const int32_t grouped = (map_.width() - 1) & ~3;
        for (int32_t x = 0; x < grouped; x += 4) {
            if (!isOfOneColor(rows[0] + x, rows[1] + x)) {
                fillGroup(rows, x, y);
            }
        }
        for (int32_t x = grouped; x + 1 < map_.width(); ++x) {
            mark(x, y, EDGE_RIGHT, rows[0][x], rows[0][x + 1]);
            mark(x, y, EDGE_DOWN, rows[0][x], rows[1][x]);
            mark(x, y, EDGE_FALLING, rows[0][x], rows[1][x + 1]);
            mark(x, y, EDGE_RISING, rows[1][x], rows[0][x + 1]);
        }
    }

    /// Most groups of a drawing are, and then no two of their pixels differ. A group compares five pixels of each row.
    static bool isOfOneColor(const Pixel* upper, const Pixel* lower) {
        return std::memcmp(upper, lower, 5 * sizeof(Pixel)) == 0 &&
               std::memcmp(upper, upper + 1, 4 * sizeof(Pixel)) == 0;
    }

    void fillGroup(const Pixel* const (&rows)[2], int32_t x, int32_t y) {
        bool marked = false;
        for (const Comparison& c : kGroup) {
            if ((!c.onlyIfMarked || marked) &&
                pixelsDiffer<Format>(rows[c.ay][x + c.ax], rows[c.by][x + c.bx], limit_)) {
                map_.add(x + c.column, y, c.flag);
                marked = true;
            }
        }
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
};

} // namespace

EdgeFlagMap::EdgeFlagMap(const PF_EffectWorld& memory, int32_t width, int32_t height)
    : stride_(memory.rowbytes), width_(width), height_(height) {
    auto* const first = objectAt<uint8_t>(memory.data, 0);
    for (int32_t i = 0; i < rowCount(height); ++i) {
        std::memset(first + i * stride_, 0, static_cast<std::size_t>(rowCells(width)));
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
