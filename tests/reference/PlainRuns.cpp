// Lengths: runs and tapers in the four directions, and the stretch of a run that has a neighbour.
#include "tests/reference/PlainSmooth.h"

#include <algorithm>

namespace kovalune::test {

int32_t PlainSmooth::longest(int32_t a, int32_t b) {
    fired(b > a ? "run along the second side" : "run along the first side", std::max(a, b) > 0);
    return std::max(a, b);
}

int32_t PlainSmooth::measureRunLeft(int32_t x, int32_t y) {
    int32_t a = 0;
    if (lacks(x, y - 1, 4) && lacks(x - 1, y, 1)) {
        int32_t k = x - 1;
        int32_t n = 0;
        bool closed = false;
        while (!closed && lacks(k, y - 1, 1) && has(k, y - 1, 2)) {
            k = k - 1;
            n = n + 1;
            closed = has(k, y, 1);
        }
        if (n > 2 && lacks(x + 1, y, 2)) {
            fired("first side of a corner, to the left");
            n = 0;
        }
        a = n;
        if (closed && a != 0) {
            fired("closed run to the left");
            return a;
        }
    }
    if (has(x, y, 8)) {
        return a;
    }
    int32_t b = 0;
    for (int32_t k = x - 1; lacks(k, y, 1) && lacks(k, y + 1, 1) && has(k, y, 2); --k) {
        b = b + 1;
    }
    if (b > 2 && lacks(x + 1, y - 1, 2)) {
        fired("second side of a corner, to the left");
        b = 0;
    }
    return longest(a, b);
}

int32_t PlainSmooth::measureRunRight(int32_t x, int32_t y) {
    int32_t a = 0;
    if (lacks(x, y - 1, 8) && lacks(x + 1, y, 1)) {
        int32_t k = x + 1;
        int32_t n = 0;
        bool closed = false;
        while (!closed && lacks(k, y - 1, 1) && has(k, y - 1, 2)) {
            k = k + 1;
            n = n + 1;
            closed = has(k, y, 1);
        }
        if (n > 2 && lacks(x, y, 2)) {
            fired("first side of a corner, to the right");
            n = 0;
        }
        a = n;
        if (closed && a != 0) {
            fired("closed run to the right");
            return a;
        }
    }
    if (has(x, y, 4)) {
        return a;
    }
    int32_t b = 0;
    for (int32_t k = x + 1; lacks(k, y, 1) && lacks(k, y + 1, 1) && has(k, y, 2); ++k) {
        b = b + 1;
    }
    if (b > 2 && lacks(x, y - 1, 2)) {
        fired("second side of a corner, to the right");
        b = 0;
    }
    return longest(a, b);
}

int32_t PlainSmooth::measureRunUp(int32_t x, int32_t y) {
    int32_t a = 0;
    if (lacks(x - 1, y, 4) && lacks(x, y - 1, 2)) {
        int32_t r = y - 1;
        int32_t n = 0;
        bool closed = false;
        while (!closed && lacks(x - 1, r, 2) && has(x - 1, r, 1)) {
            r = r - 1;
            n = n + 1;
            closed = has(x, r, 2);
        }
        if (n > 2 && lacks(x, y + 1, 1)) {
            fired("first side of a corner, upwards");
            n = 0;
        }
        a = n;
        if (closed && a != 0) {
            fired("closed run upwards");
            return a;
        }
    }
    if (has(x, y, 8)) {
        return a;
    }
    int32_t b = 0;
    for (int32_t r = y - 1; lacks(x, r, 2) && lacks(x + 1, r, 2) && has(x, r, 1); --r) {
        b = b + 1;
    }
    if (b > 2 && lacks(x - 1, y + 1, 1)) {
        fired("second side of a corner, upwards");
        b = 0;
    }
    return longest(a, b);
}

int32_t PlainSmooth::measureRunDown(int32_t x, int32_t y) {
    int32_t a = 0;
    if (lacks(x - 1, y, 8) && lacks(x, y + 1, 2)) {
        int32_t r = y + 1;
        int32_t n = 0;
        bool closed = false;
        while (!closed && lacks(x - 1, r, 2) && has(x - 1, r, 1)) {
            r = r + 1;
            n = n + 1;
            closed = has(x, r, 2);
        }
        if (n > 2 && lacks(x, y, 1)) {
            fired("first side of a corner, downwards");
            n = 0;
        }
        a = n;
        if (closed && a != 0) {
            fired("closed run downwards");
            return a;
        }
    }
    if (has(x, y, 4)) {
        return a;
    }
    int32_t b = 0;
    for (int32_t r = y + 1; lacks(x, r, 2) && lacks(x + 1, r, 2) && has(x, r, 1); ++r) {
        b = b + 1;
    }
    if (b > 2 && lacks(x - 1, y, 1)) {
        fired("second side of a corner, downwards");
        b = 0;
    }
    return longest(a, b);
}

int32_t PlainSmooth::compressed(int32_t n) {
    return fired("long taper", n >= 6) ? (n - 5) / 2 + 5 : n;
}

int32_t PlainSmooth::measureTaperLeft(int32_t x, int32_t y) {
    if (has(x, y - 1, 4) || has(x + 1, y - 1, 2) || has(x + 1, y, 1) || has(x + 1, y, 2) || has(x, y, 8)) {
        return 0;
    }
    int32_t n = 0;
    for (int32_t k = x - 1; lacks(k, y, 1); --k) {
        if (has(k, y - 1, 1) || lacks(k, y - 1, 2) || has(k, y + 1, 1) || lacks(k, y, 2)) {
            break;
        }
        n = n + 1;
    }
    return compressed(n);
}

int32_t PlainSmooth::measureTaperRight(int32_t x, int32_t y) {
    if (has(x, y - 1, 2) || has(x, y - 1, 8) || has(x - 1, y, 1) || has(x, y, 2) || has(x, y, 4)) {
        return 0;
    }
    int32_t n = 0;
    for (int32_t k = x + 1; lacks(k, y, 1); ++k) {
        if (has(k, y - 1, 1) || lacks(k, y - 1, 2) || has(k, y + 1, 1) || lacks(k, y, 2)) {
            break;
        }
        n = n + 1;
    }
    return compressed(n);
}

int32_t PlainSmooth::measureTaperUp(int32_t x, int32_t y) {
    if (has(x - 1, y, 4) || has(x, y, 8) || has(x - 1, y + 1, 1) || has(x, y + 1, 1) || has(x, y + 1, 2)) {
        return 0;
    }
    int32_t n = 0;
    for (int32_t r = y - 1; lacks(x, r, 2); --r) {
        if (has(x - 1, r, 2) || lacks(x - 1, r, 1) || has(x + 1, r, 2) || lacks(x, r, 1)) {
            break;
        }
        n = n + 1;
    }
    return compressed(n);
}

int32_t PlainSmooth::measureTaperDown(int32_t x, int32_t y) {
    if (has(x, y - 1, 2) || has(x - 1, y, 1) || has(x - 1, y, 8) || has(x, y, 1) || has(x, y, 4)) {
        return 0;
    }
    int32_t n = 0;
    for (int32_t r = y + 1; lacks(x, r, 2); ++r) {
        if (has(x - 1, r, 2) || lacks(x - 1, r, 1) || has(x + 1, r, 2) || lacks(x, r, 1)) {
            break;
        }
        n = n + 1;
    }
    return compressed(n);
}

bool PlainSmooth::isIsolatedSquare(Side side, int32_t x, int32_t y) {
    bool one = false;
    bool other = false;
    int32_t cx = 0;
    int32_t cy = 0;
    if (side == kLeft) {
        one = has(x, y, 2);
        other = y > 0 && has(x, y - 1, 2);
        cx = x - 1;
        cy = one ? y - 1 : y;
    } else if (side == kRight) {
        if (x >= width_ - 1) {
            return false;
        }
        one = has(x + 1, y, 2);
        other = y > 0 && has(x + 1, y - 1, 2);
        cx = x + 1;
        cy = one ? y - 1 : y;
    } else if (side == kUp) {
        one = has(x, y, 1);
        other = x > 0 && has(x - 1, y, 1);
        cx = one ? x - 1 : x;
        cy = y - 1;
    } else {
        if (y >= height_ - 1) {
            return false;
        }
        one = has(x, y + 1, 1);
        other = x > 0 && has(x - 1, y + 1, 1);
        cx = one ? x - 1 : x;
        cy = y + 1;
    }
    if (one == other) {
        return false;
    }
    return has(cx - 1, cy, 1) && has(cx - 1, cy + 1, 1) && has(cx + 1, cy, 1) && has(cx + 1, cy + 1, 1) &&
           has(cx, cy - 1, 2) && has(cx + 1, cy - 1, 2) && has(cx, cy + 1, 2) && has(cx + 1, cy + 1, 2) &&
           lacks(cx, cy, 1) && lacks(cx, cy, 2) && lacks(cx, cy + 1, 1) && lacks(cx + 1, cy, 2);
}

int32_t PlainSmooth::balancedStrength(Side side, int32_t own, int32_t far, int32_t x, int32_t y) {
    const int32_t strength = params_.strength;
    if (own == 1 && far == 1) {
        if (isIsolatedSquare(side, x, y)) {
            static constexpr const char* kNames[] = {"square at the left", "square at the right",
                                                     "square above", "square below"};
            fired(kNames[side]);
            return strength * 10 / 100;
        }
        const bool sideways = side == kLeft || side == kRight;
        if (sideways ? isIsolatedSquare(side, x, y + 1) : isIsolatedSquare(side, x + 1, y)) {
            fired(sideways ? "square under the row" : "square right of the column");
            return strength * 36 / 100;
        }
        if (sideways ? isIsolatedSquare(side, x, y - 1) : isIsolatedSquare(side, x - 1, y)) {
            fired(sideways ? "square over the row" : "square left of the column");
            return strength * 36 / 100;
        }
        return strength * 100 / 140;
    }
    const int32_t stretch = (2 * own - far) * strength * 100 / (own * 140);
    fired("stretch below 1", stretch < 1);
    return stretch;
}

} // namespace kovalune::test
