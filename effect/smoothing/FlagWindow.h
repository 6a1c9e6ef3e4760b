// The flags around one cell as a single number, four bits a cell: a fixed pattern, or the beginning of a run, a taper or a
// staircase, is settled by one comparison instead of a branch a cell.
#pragma once

#include "effect/smoothing/EdgeFlagMap.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kovalune {

/// The cell at (dx, dy) from the visited pixel must have all of `has` and none of `lacks`.
struct CellTest {
    int8_t dx, dy;
    uint8_t has;
    uint8_t lacks;
};

/// Four columns of four rows, from two to the left of the cell and two above it on. The row above the map's memory counts as
/// zero.
class FlagWindow {
public:
    FlagWindow(const EdgeFlagMap& map, int32_t x, int32_t y) {
        const uint8_t* const row = map.cell(x + kFirst, y);
        const std::ptrdiff_t stride = map.stride();
        const uint32_t above = fourCells(row - stride);
        const uint32_t farAbove = y > 0 ? fourCells(row - 2 * stride) : 0;
        const uint32_t near = fourCells(row) | above << 4;
        const uint32_t far = fourCells(row + stride) | farAbove << 4;
        cells_ = near | uint64_t{far} << 32;
    }

    uint64_t cells() const { return cells_; }

    bool has(int32_t dx, int32_t dy, int flags) const { return (cells_ & at(dx, dy, flags)) != 0; }
    bool lacks(int32_t dx, int32_t dy, int flags) const { return !has(dx, dy, flags); }

    static constexpr bool covers(int32_t dx, int32_t dy) {
        return dx >= kFirst && dx < kFirst + kCells && dy >= kFirst && dy < kFirst + kCells;
    }

    /// Flags at a covered cell's place.
    static constexpr uint64_t at(int32_t dx, int32_t dy, int flags) {
        const int32_t column = dx - kFirst;
        const int32_t byte = std::endian::native == std::endian::little ? column : kCells - 1 - column;
        const int32_t row = dy == 0 ? 0 : (dy == -1 ? 4 : (dy == 1 ? 32 : 36));
        return static_cast<uint64_t>(static_cast<uint32_t>(flags)) << (8 * byte + row);
    }

private:
    static constexpr int32_t kFirst = -2;
    static constexpr int32_t kCells = 4;

    static uint32_t fourCells(const uint8_t* cells) {
        uint32_t word = 0;
        std::memcpy(&word, cells, sizeof word);
        return word;
    }

    uint64_t cells_;
};

/// What some cells must have and lack, as it is compared with a window. Cells that no window covers are left out.
struct WindowPattern {
    uint64_t has = 0;
    uint64_t asked = 0; ///< the flags that matter

    template <class Cells>
    static constexpr WindowPattern of(const Cells& cells) {
        WindowPattern pattern;
        for (const CellTest& cell : cells) {
            pattern.add(cell);
        }
        return pattern;
    }

    constexpr void add(const CellTest& cell) {
        if (FlagWindow::covers(cell.dx, cell.dy)) {
            has |= FlagWindow::at(cell.dx, cell.dy, cell.has);
            asked |= FlagWindow::at(cell.dx, cell.dy, cell.has | cell.lacks);
        }
    }

    bool holdsIn(const FlagWindow& window) const { return (window.cells() & asked) == has; }
};

template <std::size_t count>
using WindowPatterns = std::array<WindowPattern, count>;

/// The patterns of a table whose entries have `cells`.
template <class Entry, std::size_t count>
constexpr WindowPatterns<count> windowsOf(const Entry (&entries)[count]) {
    WindowPatterns<count> patterns;
    for (std::size_t i = 0; i < count; ++i) {
        patterns[i] = WindowPattern::of(entries[i].cells);
    }
    return patterns;
}

/// Bit `i` is set where pattern `i` holds.
template <std::size_t count>
uint32_t whichHold(const WindowPatterns<count>& patterns, const FlagWindow& window) {
    uint32_t held = 0;
    for (std::size_t i = 0; i < count; ++i) {
        held |= uint32_t{patterns[i].holdsIn(window)} << i;
    }
    return held;
}

} // namespace kovalune
