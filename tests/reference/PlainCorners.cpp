// The fixed patterns: mends, nubs, restores and shoulders.
#include "tests/reference/PlainSmooth.h"

#include <cmath>

namespace kovalune::test {

void PlainSmooth::mendRightStep(int32_t x, int32_t y) {
    if (fired("right mend 1", has(x, y - 1, 2) && lacks(x, y, 4) && has(x - 1, y - 1, 2) &&
                                  lacks(x - 1, y, 1) && has(x - 1, y, 2) && has(x - 2, y, 1) &&
                                  has(x - 2, y - 1, 2) && has(x - 2, y - 1, 1) && lacks(x - 2, y - 1, 4) &&
                                  has(x - 2, y - 2, 2))) {
        takeBack(x - 1, y, half_);
        return;
    }
    if (fired("right mend 2", has(x - 1, y, 1) && has(x, y - 1, 2) && has(x, y - 1, 1) &&
                                  lacks(x, y - 1, 8) && has(x + 1, y - 1, 2) && has(x + 1, y - 1, 1) &&
                                  has(x, y - 2, 1) && lacks(x + 1, y - 2, 2) && has(x + 1, y - 3, 1) &&
                                  lacks(x + 1, y - 3, 8))) {
        takeBack(x + 1, y - 1, half_);
        return;
    }
    if (fired("right mend 3", has(x - 1, y, 1) && has(x, y - 1, 2) && has(x - 1, y - 1, 1) &&
                                  has(x - 1, y - 1, 2) && lacks(x - 1, y - 1, 4) && has(x - 2, y - 1, 1) &&
                                  has(x - 1, y - 2, 1) && lacks(x - 1, y - 2, 2) && has(x - 1, y - 3, 2) &&
                                  lacks(x - 2, y - 3, 4))) {
        takeBack(x - 1, y - 1, half_);
    }
}

void PlainSmooth::mendDownStep(int32_t x, int32_t y) {
    if (fired("down mend 1", has(x, y - 1, 2) && has(x, y - 1, 1) && lacks(x, y - 1, 8) &&
                                 has(x + 1, y - 1, 2) && has(x + 1, y - 2, 2) && has(x - 1, y - 1, 2) &&
                                 has(x - 2, y, 1) && lacks(x - 2, y, 8) && lacks(x - 1, y, 1))) {
        takeBack(x, y, half_);
        return;
    }
    if (fired("down mend 2", has(x - 1, y, 1) && has(x, y - 1, 2) && has(x - 1, y - 1, 2) &&
                                 has(x - 1, y - 1, 1) && lacks(x - 1, y - 1, 4) && has(x - 1, y - 2, 2) &&
                                 has(x - 2, y - 1, 2) && lacks(x - 2, y - 1, 1) && has(x - 3, y - 1, 1) &&
                                 lacks(x - 3, y - 2, 4))) {
        takeBack(x - 1, y - 1, half_);
        return;
    }
    if (fired("down mend 3", has(x - 1, y, 1) && lacks(x, y - 1, 2) && has(x, y - 1, 1) &&
                                 has(x - 1, y - 1, 1) && has(x, y - 2, 2) && has(x - 1, y - 2, 1) &&
                                 has(x - 1, y - 2, 2) && lacks(x - 1, y - 2, 4) && has(x - 2, y - 2, 1) &&
                                 lacks(x, y, 4))) {
        takeBack(x, y - 1, half_);
    }
}

void PlainSmooth::mendDownRightStep(int32_t x, int32_t y) {
    if (fired("down right mend 1", has(x, y - 1, 1) && has(x, y - 1, 2) && lacks(x, y - 1, 8) &&
                                       has(x + 1, y - 1, 2) && lacks(x + 1, y - 1, 1) &&
                                       has(x + 1, y - 2, 2) && has(x + 2, y - 1, 1) && has(x + 2, y - 1, 2) &&
                                       lacks(x + 2, y - 2, 8))) {
        takeBack(x + 1, y - 1, half_);
        return;
    }
    if (fired("down right mend 2", has(x, y - 1, 1) && lacks(x, y - 1, 2) && has(x, y - 2, 1) &&
                                       has(x, y - 2, 2) && lacks(x, y - 2, 8) && has(x - 1, y - 1, 1) &&
                                       has(x + 1, y - 2, 2) && has(x + 1, y - 2, 1) && lacks(x - 1, y, 8))) {
        takeBack(x, y - 1, half_);
    }
}

bool PlainSmooth::nubFires(int32_t x, int32_t y) {
    const bool left = has(x - 1, y, 1);
    const bool right = has(x, y, 1);
    const bool top = has(x, y - 1, 2);
    const bool bottom = has(x, y, 2);
    const bool nw = has(x - 1, y - 1, 4);
    const bool ne = has(x, y - 1, 8);
    const bool sw = has(x - 1, y, 8);
    const bool se = has(x, y, 4);
    const int n = (left ? 1 : 0) + (right ? 1 : 0) + (top ? 1 : 0) + (bottom ? 1 : 0);
    if (n == 4) {
        return fired("nub of four sides", (se || nw) && (ne || sw));
    }
    if (n != 3 || fired("three sides of four corners", nw && ne && sw && se)) {
        return false;
    }
    if (!left) {
        return fired("nub open at the left", ne && se);
    }
    if (!right) {
        return fired("nub open at the right", nw && sw);
    }
    if (!top) {
        return fired("nub open at the top", sw && se);
    }
    return fired("nub open at the bottom", nw && ne);
}

void PlainSmooth::softenNub(int32_t x, int32_t y) {
    std::vector<PlainPixel> neighbours;
    if (x > 0) {
        neighbours.push_back(src(x - 1, y));
    }
    if (x < width_ - 1) {
        neighbours.push_back(src(x + 1, y));
    }
    if (y > 0) {
        neighbours.push_back(src(x, y - 1));
    }
    if (y < height_ - 1) {
        neighbours.push_back(src(x, y + 1));
    }
    if (params_.pixelFormat == PF_PixelFormat_ARGB32) {
        softenNub8(neighbours, dst(x, y));
    } else {
        softenNubFloat(neighbours, dst(x, y));
    }
}

void PlainSmooth::softenNub8(const std::vector<PlainPixel>& neighbours, PlainPixel& own) {
    const auto m = static_cast<int32_t>(crossWeight_);
    int32_t wsum = 0;
    int32_t asum = 0;
    int32_t rsum = 0;
    int32_t gsum = 0;
    int32_t bsum = 0;
    const auto add = [&](const PlainPixel& p, int32_t weight) {
        wsum += weight;
        const int32_t product = static_cast<int32_t>(p.alpha) * weight;
        asum += product;
        const int32_t q = product >> 16;
        rsum += static_cast<int32_t>(p.red) * q;
        gsum += static_cast<int32_t>(p.green) * q;
        bsum += static_cast<int32_t>(p.blue) * q;
    };
    for (const PlainPixel& p : neighbours) {
        add(p, m);
    }
    if (wsum <= 0) {
        return;
    }
    add(own, 65535);
    own.alpha = static_cast<uint8_t>((asum + (wsum >> 1)) / wsum);
    const int32_t k = asum >> 16;
    if (fired("nub without colour", k == 0)) {
        return;
    }
    own.red = static_cast<uint8_t>((rsum + (k >> 1)) / k);
    own.green = static_cast<uint8_t>((gsum + (k >> 1)) / k);
    own.blue = static_cast<uint8_t>((bsum + (k >> 1)) / k);
}

void PlainSmooth::softenNubFloat(const std::vector<PlainPixel>& neighbours, PlainPixel& own) {
    const bool rounds = !isFloat();
    const float m = rounds ? static_cast<float>(crossWeight_) / 65535.0F : static_cast<float>(crossWeight_);
    float wsum = 0.0F;
    float asum = 0.0F;
    float rsum = 0.0F;
    float gsum = 0.0F;
    float bsum = 0.0F;
    const auto add = [&](const PlainPixel& p, float t) {
        asum = asum + t;
        rsum = rsum + static_cast<float>(p.red) * t;
        gsum = gsum + static_cast<float>(p.green) * t;
        bsum = bsum + static_cast<float>(p.blue) * t;
    };
    for (const PlainPixel& p : neighbours) {
        wsum = wsum + m;
        add(p, static_cast<float>(p.alpha) * m);
    }
    if (!(wsum > 0.0F)) {
        return;
    }
    wsum = wsum + 1.0F;
    add(own, static_cast<float>(own.alpha));
    const auto share = [rounds](float sum, float whole) {
        const float value = rounds ? std::trunc((whole * 0.5F + sum) / whole) : sum / whole;
        return static_cast<double>(value);
    };
    own.alpha = share(asum, wsum);
    if (fired("nub without colour", asum == 0.0F)) {
        return;
    }
    own.red = share(rsum, asum);
    own.green = share(gsum, asum);
    own.blue = share(bsum, asum);
}

void PlainSmooth::restore(int32_t x, int32_t y) {
    if (has(x, y, 1)) {
        if (fired("restore 1", x < width_ - 3 && y > 2 && lacks(x, y - 2, 4) && has(x + 1, y - 2, 2) &&
                                   has(x + 2, y - 2, 2) && has(x, y - 1, 1) && lacks(x + 1, y - 1, 1) &&
                                   lacks(x + 1, y - 1, 2))) {
            takeBack(x + 1, y - 1, threeQuarters_);
            return;
        }
        if (fired("restore 2", has(x - 1, y - 1, 2) && has(x, y - 1, 2) && lacks(x, y - 1, 8) &&
                                   lacks(x - 1, y, 1) && lacks(x, y, 2) && has(x, y + 1, 1))) {
            if (!fired("restore in column 0", x == 0)) {
                takeBack(x, y, threeQuarters_);
            }
            return;
        }
        if (fired("restore 3", has(x, y - 1, 1) && lacks(x, y - 1, 2) && lacks(x - 1, y, 1) &&
                                   has(x - 1, y, 2) && has(x, y, 2) && lacks(x, y, 4))) {
            if (!fired("restore in column 0", x == 0)) {
                takeBack(x, y, threeQuarters_);
            }
        }
        return;
    }
    if (fired("restore 4", has(x - 1, y - 1, 1) && lacks(x, y - 1, 2) && has(x - 1, y, 1) &&
                               lacks(x - 1, y, 8) && has(x + 1, y, 2))) {
        if (!fired("restore in column 0", x == 0)) {
            takeBack(x, y, threeQuarters_);
        }
    }
}

void PlainSmooth::nubOrRestore(int32_t x, int32_t y) {
    if (nubFires(x, y)) {
        softenNub(x, y);
    } else {
        restore(x, y);
    }
}

void PlainSmooth::shouldersOfVerticalStep(int32_t x, int32_t y) {
    if (has(x, y - 1, 2) && lacks(x, y - 1, 1) && has(x + 1, y - 1, 2)) {
        if (fired("shoulder above, left", lacks(x - 1, y - 1, 4))) {
            take(x, y - 1, src(x, y), sixth_);
        }
        if (fired("shoulder above, right", lacks(x + 1, y - 1, 8))) {
            take(x + 1, y - 1, src(x + 1, y), sixth_);
        }
    }
    if (has(x, y, 2) && has(x + 1, y, 2) && lacks(x, y + 1, 1)) {
        if (fired("shoulder below, left", lacks(x - 1, y, 8))) {
            take(x, y + 1, src(x, y), sixth_);
        }
        if (fired("shoulder below, right", lacks(x + 1, y, 4))) {
            take(x + 1, y + 1, src(x + 1, y), sixth_);
        }
    }
}

void PlainSmooth::shouldersOfHorizontalStep(int32_t x, int32_t y) {
    if (has(x - 1, y, 1) && lacks(x - 1, y, 2) && has(x - 1, y + 1, 1)) {
        if (fired("shoulder at the left, upper", lacks(x - 1, y - 1, 4))) {
            take(x - 1, y, src(x, y), sixth_);
        }
        if (fired("shoulder at the left, lower", lacks(x - 1, y + 1, 8))) {
            take(x - 1, y + 1, src(x, y + 1), sixth_);
        }
    }
    if (has(x, y, 1) && has(x, y + 1, 1) && lacks(x + 1, y, 2)) {
        if (fired("shoulder at the right, upper", lacks(x, y - 1, 8))) {
            take(x + 1, y, src(x, y), sixth_);
        }
        if (fired("shoulder at the right, lower", lacks(x, y + 1, 4))) {
            take(x + 1, y + 1, src(x, y + 1), sixth_);
        }
    }
}

} // namespace kovalune::test
