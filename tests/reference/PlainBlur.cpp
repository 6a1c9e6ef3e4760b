#include "tests/reference/PlainBlur.h"

#include "effect/share/ExactMath.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kovalune::test {
namespace {

struct Sums {
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    int64_t weight = 0; ///< pixels, or taps

    void add(const PlainPixel& p) {
        red = red + p.red;
        green = green + p.green;
        blue = blue + p.blue;
        weight += 1;
    }
    void subtract(const PlainPixel& p) {
        red = red - p.red;
        green = green - p.green;
        blue = blue - p.blue;
        weight -= 1;
    }
};

/// A row or column with what is needed to blur it. Integer channels are exact in doubles as well.
struct LineOfPixels {
    std::vector<PlainPixel> p;
    std::vector<uint8_t> m;
    bool isFloat = false;

    int32_t size() const { return static_cast<int32_t>(p.size()); }
    bool in(int32_t j) const { return j >= 0 && j < size() && m[static_cast<std::size_t>(j)] != 0; }
    const PlainPixel& at(int32_t j) const { return p[static_cast<std::size_t>(j)]; }
};

struct Window {
    int32_t first;
    int32_t last;
};

/// The unbroken stretch of masked-in pixels around x, at most `reach` away.
Window stretchAround(const LineOfPixels& line, int32_t x, int32_t reach) {
    Window window = {x, x};
    while (window.first - 1 >= x - reach && line.in(window.first - 1)) {
        --window.first;
    }
    while (window.last + 1 <= x + reach && line.in(window.last + 1)) {
        ++window.last;
    }
    return window;
}

/// The running sum of the run scan at x: subtracts before it adds, and starts anew with each run.
void moveRun(const LineOfPixels& line, int32_t x, int32_t reach, Sums& sums) {
    const Window now = stretchAround(line, x, reach);
    const bool goesOn = line.in(x - 1) && stretchAround(line, x - 1, reach).last >= x;
    if (!goesOn) {
        sums = Sums();
        for (int32_t j = x; j <= now.last; ++j) {
            sums.add(line.at(j));
        }
        return;
    }
    const Window before = stretchAround(line, x - 1, reach);
    if (before.first < now.first) {
        sums.subtract(line.at(before.first));
    }
    if (before.last < now.last) {
        sums.add(line.at(now.last));
    }
}

/// The running sum of the window scan at x: adds before it subtracts, whether x is masked in or not.
void moveWindow(const LineOfPixels& line, int32_t x, int32_t reach, Sums& sums) {
    const int32_t end = line.size() - 1;
    if (x == 0) {
        sums = Sums();
        for (int32_t j = 0; j < std::min(reach, end); ++j) {
            if (line.in(j)) {
                sums.add(line.at(j));
            }
        }
        const int32_t right = std::min(reach, end);
        if (line.in(right)) {
            sums.add(line.at(right));
        }
        return;
    }
    if (x + reach <= end && line.in(x + reach)) {
        sums.add(line.at(x + reach));
    }
    if (x - reach - 1 >= 0 && line.in(x - reach - 1)) {
        sums.subtract(line.at(x - reach - 1));
    }
}

void addWeighted(Sums& sums, const PlainPixel& p, int32_t tap, bool isFloat) {
    const double t = isFloat ? static_cast<double>(tap) * kTapUnit32 : static_cast<double>(tap);
    sums.red = sums.red + p.red * t;
    sums.green = sums.green + p.green * t;
    sums.blue = sums.blue + p.blue * t;
    sums.weight += tap;
}

Sums coreAround(const LineOfPixels& line, const PlainKernel& kernel, int32_t x, Window window) {
    Sums core;
    for (int32_t j = x - 1; j >= std::max(x - 299, window.first); --j) {
        if (line.in(j)) {
            addWeighted(core, line.at(j), kernel.taps[static_cast<std::size_t>(x - j)], line.isFloat);
        }
    }
    for (int32_t j = x; j <= std::min(x + 299, window.last); ++j) {
        if (line.in(j)) {
            addWeighted(core, line.at(j), kernel.taps[static_cast<std::size_t>(j - x)], line.isFloat);
        }
    }
    return core;
}

double mean16(double s, int64_t count, double a, int64_t wsum, int64_t tailWeight) {
    const auto acc = static_cast<int64_t>(a);
    int64_t mean = 0;
    if (tailWeight != 0) {
        const int64_t b = count != 0 ? static_cast<int64_t>(s) / count : 0;
        const int64_t g = wsum != 0 ? acc / wsum : 0;
        mean = (b * tailWeight + g * (32768 - tailWeight) + 16384) >> 15;
    } else if (wsum != 0) {
        mean = (acc + (wsum >> 1)) / wsum;
    }
    return static_cast<double>(mean);
}

double mean32(double s, int64_t count, double acc, int64_t wsum, int64_t tailWeight) {
    double result = 0.0;
    if (tailWeight == 0) {
        result = acc * (32768.0 / static_cast<double>(wsum));
    } else {
        const double u = static_cast<double>(tailWeight) * kTapUnit32;
        const double b = s / static_cast<double>(count) * u;
        result = wsum == 0 ? b : acc * (32768.0 / static_cast<double>(wsum) * (1.0 - u)) + b;
    }
    // A number too large for a float becomes infinite in the store, as the processor has it.
    return static_cast<double>(static_cast<float>(result));
}

PlainPixel blurred(const LineOfPixels& line, int32_t x, const PlainPixel& before, const Sums& box,
                   const Sums& core, int32_t tailWeight) {
    if (tailWeight == 0 && core.weight == 0) {
        return line.at(x);
    }
    const auto mean = line.isFloat ? mean32 : mean16;
    return {before.alpha, mean(box.red, box.weight, core.red, core.weight, tailWeight),
            mean(box.green, box.weight, core.green, core.weight, tailWeight),
            mean(box.blue, box.weight, core.blue, core.weight, tailWeight)};
}

void blurLine(const LineOfPixels& line, const PlainKernel& kernel, bool keepDivision,
              std::vector<PlainPixel>& out) {
    const int32_t reach = kernel.length - 1;
    Sums box;
    for (int32_t x = 0; x < line.size(); ++x) {
        if (!keepDivision) {
            moveWindow(line, x, reach, box);
        }
        if (!line.in(x)) {
            continue;
        }
        Window window = {x - reach, x + reach};
        if (keepDivision) {
            moveRun(line, x, reach, box);
            window = stretchAround(line, x, reach);
        }
        const Sums core = coreAround(line, kernel, x, window);
        PlainPixel& target = out[static_cast<std::size_t>(x)];
        target = blurred(line, x, target, box, core, kernel.tailWeight);
    }
}

} // namespace

void plainPass(const PlainBlur& blur, const PlainKernel& kernel, bool horizontal, const PlainPicture& src,
               PlainPicture& dst) {
    const FrameRect& rect = blur.rect;
    const int32_t lines = horizontal ? rect.height() : rect.width();
    const int32_t length = horizontal ? rect.width() : rect.height();
    const auto column = [&](int32_t l, int32_t j) { return horizontal ? j : l; };
    const auto row = [&](int32_t l, int32_t j) { return horizontal ? l : j; };
    for (int32_t l = 0; l < lines; ++l) {
        LineOfPixels line;
        line.isFloat = src.format == PF_PixelFormat_ARGB128;
        std::vector<PlainPixel> out;
        for (int32_t j = 0; j < length; ++j) {
            line.p.push_back(src.at(rect.left + column(l, j), rect.top + row(l, j)));
            line.m.push_back(blur.mask.at(column(l, j), row(l, j)));
            out.push_back(dst.at(rect.left + column(l, j), rect.top + row(l, j)));
        }
        blurLine(line, kernel, blur.keepDivision, out);
        for (int32_t j = 0; j < length; ++j) {
            dst.at(rect.left + column(l, j), rect.top + row(l, j)) = out[static_cast<std::size_t>(j)];
        }
    }
}

void plainBlur(const PlainBlur& blur, const PlainPicture& src, PlainPicture& dst, PlainPicture& tmp) {
    if (2.0 > blur.amount || blur.repeat == 0) {
        plainMaskedCopy(blur.rect, blur.mask, false, src, dst);
        return;
    }
    const int32_t last = blur.repeat; // passes count from 0, and this one ends in dst
    double amount = blur.amount;
    const double divisor =
        blur.repeat > 1 ? exact::pow(amount, 1.0 / static_cast<double>(blur.repeat)) : amount;
    PlainKernel kernel = plainKernel(static_cast<int32_t>(std::ceil(amount)), amount * amount * 0.125);
    const PlainPicture* source = &src;
    for (int32_t pass = 0; pass <= last && pass < blur.passes; ++pass) {
        if (pass >= 2) {
            amount = amount / divisor;
            if (amount < 1.0) {
                amount = 1.0;
            }
            kernel = plainKernel(static_cast<int32_t>(std::ceil(amount)), amount * amount);
        }
        PlainPicture& target = (last - pass) % 2 == 0 ? dst : tmp;
        plainPass(blur, kernel, pass % 2 == 0, *source, target);
        source = &target;
    }
}

void plainMaskedCopy(const FrameRect& rect, const Mask& mask, bool clearOutside, const PlainPicture& src,
                     PlainPicture& dst) {
    for (int32_t y = 0; y < rect.height(); ++y) {
        for (int32_t x = 0; x < rect.width(); ++x) {
            PlainPixel& target = dst.at(rect.left + x, rect.top + y);
            if (mask.at(x, y) != 0) {
                target = src.at(rect.left + x, rect.top + y);
            } else if (clearOutside) {
                target = {};
            }
        }
    }
}

} // namespace kovalune::test
