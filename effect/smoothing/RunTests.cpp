#include "effect/smoothing/RunTests.h"

#include "effect/share/Integers.h"

#include <algorithm>

namespace kovalune {
namespace {

/// What a walk toward smaller coordinates and one toward larger ones differ in, told for rows.
struct Backward {
    static constexpr int32_t kStep = -1;
    static constexpr int kTopBlock = EDGE_FALLING; ///< at the pixel above: no run along the top side
    static constexpr int kBottomBlock = EDGE_RISING;
    static constexpr int32_t kBeyond = 1; ///< columns to the pixel on the other side of the step
};

struct Forward {
    static constexpr int32_t kStep = 1;
    static constexpr int kTopBlock = EDGE_RISING;
    static constexpr int kBottomBlock = EDGE_FALLING;
    static constexpr int32_t kBeyond = 0;
};

struct TopRun {
    int32_t length;
    bool closed; ///< ended by a step on the run's own row: taken at once
};

/// A run of three or more counts only where the boundary goes on beyond the step: a stair, not a large corner.
int32_t unlessCorner(int32_t length, bool goesOn) {
    return length > 2 && !goesOn ? 0 : length;
}

// The tests look from the step's pixel, the view's own cell: `k` cells along the run's row, and rows above and below it.

template <class Walk, class View>
TopRun runAlongTop(const View& f) {
    int32_t k = Walk::kStep;
    if (f.has(0, -1, Walk::kTopBlock) || f.has(k, 0, EDGE_RIGHT)) {
        return {0, false};
    }
    int32_t n = 0;
    bool closed = false;
    while (!closed && f.lacks(k, -1, EDGE_RIGHT) && f.has(k, -1, EDGE_DOWN)) {
        k += Walk::kStep;
        ++n;
        closed = f.has(k, 0, EDGE_RIGHT);
    }
    return {unlessCorner(n, f.has(Walk::kBeyond, 0, EDGE_DOWN)), closed};
}

template <class Walk, class View>
int32_t runAlongBottom(const View& f) {
    int32_t k = Walk::kStep;
    int32_t n = 0;
    while (f.lacks(k, 0, EDGE_RIGHT) && f.lacks(k, 1, EDGE_RIGHT) && f.has(k, 0, EDGE_DOWN)) {
        k += Walk::kStep;
        ++n;
    }
    return unlessCorner(n, f.has(Walk::kBeyond, -1, EDGE_DOWN));
}

template <class Walk, class View>
int32_t measureRun(const View& f) {
    const TopRun top = runAlongTop<Walk>(f);
    if ((top.closed && top.length != 0) || f.has(0, 0, Walk::kBottomBlock)) {
        return top.length;
    }
    return std::max(top.length, runAlongBottom<Walk>(f));
}

template <class View>
bool taperStarts(Backward /*walk*/, const View& f) {
    return f.lacks(0, -1, EDGE_FALLING) && f.lacks(1, -1, EDGE_DOWN) &&
           f.lacks(1, 0, EDGE_RIGHT | EDGE_DOWN) && f.lacks(0, 0, EDGE_RISING);
}

template <class View>
bool taperStarts(Forward /*walk*/, const View& f) {
    return f.lacks(0, -1, EDGE_DOWN | EDGE_RISING) && f.lacks(-1, 0, EDGE_RIGHT) &&
           f.lacks(0, 0, EDGE_DOWN | EDGE_FALLING);
}

template <class Walk, class View>
int32_t measureTaper(const View& f) {
    int32_t k = Walk::kStep;
    if (!taperStarts(Walk(), f)) {
        return 0;
    }
    int32_t n = 0;
    while (f.lacks(k, 0, EDGE_RIGHT) && f.lacks(k, -1, EDGE_RIGHT) && f.has(k, -1, EDGE_DOWN) &&
           f.lacks(k, 1, EDGE_RIGHT) && f.has(k, 0, EDGE_DOWN)) {
        k += Walk::kStep;
        ++n;
    }
    return n < 6 ? n : ((n - 5) >> 1) + 5;
}

struct Block {
    int32_t x, y; ///< upper left pixel
};

bool isIsolated(const EdgeFlagMap& map, Block block) {
    const FlagView<false> f(map, block.x, block.y);
    const bool wallsBeside = f.has(-1, 0, EDGE_RIGHT) && f.has(-1, 1, EDGE_RIGHT) &&
                             f.has(1, 0, EDGE_RIGHT) && f.has(1, 1, EDGE_RIGHT);
    return wallsBeside && f.has(0, -1, EDGE_DOWN) && f.has(1, -1, EDGE_DOWN) && f.has(0, 1, EDGE_DOWN) &&
           f.has(1, 1, EDGE_DOWN) && f.lacks(0, 0, EDGE_RIGHT | EDGE_DOWN) && f.lacks(0, 1, EDGE_RIGHT) &&
           f.lacks(1, 0, EDGE_DOWN);
}

} // namespace

int32_t measureRunLeft(const EdgeFlagMap& map, int32_t x, int32_t y) {
    return measureRun<Backward>(FlagView<false>(map, x, y));
}
int32_t measureRunRight(const EdgeFlagMap& map, int32_t x, int32_t y) {
    return measureRun<Forward>(FlagView<false>(map, x, y));
}
int32_t measureRunUp(const EdgeFlagMap& map, int32_t x, int32_t y) {
    return measureRun<Backward>(FlagView<true>(map, x, y));
}
int32_t measureRunDown(const EdgeFlagMap& map, int32_t x, int32_t y) {
    return measureRun<Forward>(FlagView<true>(map, x, y));
}

int32_t measureTaperLeft(const EdgeFlagMap& map, int32_t x, int32_t y) {
    return measureTaper<Backward>(FlagView<false>(map, x, y));
}
int32_t measureTaperRight(const EdgeFlagMap& map, int32_t x, int32_t y) {
    return measureTaper<Forward>(FlagView<false>(map, x, y));
}
int32_t measureTaperUp(const EdgeFlagMap& map, int32_t x, int32_t y) {
    return measureTaper<Backward>(FlagView<true>(map, x, y));
}
int32_t measureTaperDown(const EdgeFlagMap& map, int32_t x, int32_t y) {
    return measureTaper<Forward>(FlagView<true>(map, x, y));
}

bool isIsolatedSquare(const EdgeFlagMap& map, Side side, int32_t x, int32_t y) {
    const FlagView<false> f(map, x, y);
    const bool besideStep = side == Side::kLeft || side == Side::kRight;
    if ((side == Side::kRight && x >= map.width() - 1) || (side == Side::kDown && y >= map.height() - 1)) {
        return false;
    }
    if (besideStep) {
        const int32_t column = side == Side::kRight ? 1 : 0;
        const bool below = f.has(column, 0, EDGE_DOWN);
        const bool above = y > 0 && f.has(column, -1, EDGE_DOWN);
        return below != above && isIsolated(map, {side == Side::kRight ? x + 1 : x - 1, below ? y - 1 : y});
    }
    const int32_t row = side == Side::kDown ? 1 : 0;
    const bool behind = f.has(0, row, EDGE_RIGHT);
    const bool before = x > 0 && f.has(-1, row, EDGE_RIGHT);
    return behind != before && isIsolated(map, {behind ? x - 1 : x, side == Side::kDown ? y + 1 : y - 1});
}

int32_t balancedStrength(const EdgeFlagMap& map, Side side, int32_t own, int32_t far, int32_t x, int32_t y,
                         int32_t strength) {
    if (own != 1 || far != 1) {
        return wrappingMul(wrappingMul(2 * own - far, strength), 100) / wrappingMul(own, 140);
    }
    // A one-pixel step beside a dot of 2 by 2 pixels gets a short ramp: dots stay dots.
    if (isIsolatedSquare(map, side, x, y)) {
        return strength * 10 / 100;
    }
    const bool besideStep = side == Side::kLeft || side == Side::kRight;
    const int32_t dx = besideStep ? 0 : 1;
    const int32_t dy = besideStep ? 1 : 0;
    if (isIsolatedSquare(map, side, x + dx, y + dy) || isIsolatedSquare(map, side, x - dx, y - dy)) {
        return strength * 36 / 100;
    }
    return strength * 100 / 140;
}

} // namespace kovalune
