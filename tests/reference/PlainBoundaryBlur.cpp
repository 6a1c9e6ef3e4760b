#include "tests/reference/PlainBoundaryBlur.h"

#include "effect/share/ExactMath.h"
#include "tests/reference/PlainBlur.h"

#include <algorithm>
#include <cmath>

namespace kovalune::test {
namespace {

struct Sums {
    PlainPixel s; ///< all pixels of the window
    int64_t count = 0;
    PlainPixel o; ///< those whose alpha is not 0
    int64_t opaqueCount = 0;
};

void addTo(PlainPixel& sum, const PlainPixel& p) {
    sum.alpha = sum.alpha + p.alpha;
    sum.red = sum.red + p.red;
    sum.green = sum.green + p.green;
    sum.blue = sum.blue + p.blue;
}

void takeFrom(PlainPixel& sum, const PlainPixel& p) {
    sum.alpha = sum.alpha - p.alpha;
    sum.red = sum.red - p.red;
    sum.green = sum.green - p.green;
    sum.blue = sum.blue - p.blue;
}

void enter(Sums& sums, const PlainPixel& p) {
    addTo(sums.s, p);
    sums.count += 1;
    if (p.alpha != 0.0) {
        addTo(sums.o, p);
        sums.opaqueCount += 1;
    }
}

void leave(Sums& sums, const PlainPixel& p, bool runScan) {
    takeFrom(sums.s, p);
    sums.count -= 1;
    if (p.alpha == 0.0) {
        return;
    }
    if (runScan) {
        takeFrom(sums.o, p);
        sums.opaqueCount -= 1;
    } else {
        addTo(sums.o, p);
        sums.opaqueCount += 1;
    }
}

struct LineOfPixels {
    std::vector<PlainPixel> p;
    std::vector<uint8_t> region;
    std::vector<uint8_t> keep;
    bool isFloat = false;

    int32_t size() const { return static_cast<int32_t>(p.size()); }
    bool in(int32_t j) const { return region[static_cast<std::size_t>(j)] != 0; }
    bool keeps(int32_t j) const { return keep[static_cast<std::size_t>(j)] != 0; }
    const PlainPixel& at(int32_t j) const { return p[static_cast<std::size_t>(j)]; }
};

int32_t wrapped32(double sum) {
    return static_cast<int32_t>(static_cast<uint32_t>(static_cast<int64_t>(sum)));
}

double stored16(int64_t value) {
    return static_cast<double>(static_cast<uint16_t>(value));
}

double stored32(double value) {
    // Through memory: GCC 12 at -O3 forgets the rounding where it converts two numbers at once.
    const volatile float stored = static_cast<float>(value);
    return static_cast<double>(stored);
}

double alpha16(double s, int64_t count, double acc, int64_t wsum, int64_t t, double source) {
    if (t != 0) {
        const int64_t b = static_cast<int64_t>(s) / count;
        const int64_t g = wsum != 0 ? static_cast<int64_t>(acc) / wsum : 0;
        return stored16((b * t + g * (32768 - t) + 16384) >> 15);
    }
    return wsum != 0 ? stored16((static_cast<int64_t>(acc) + (wsum >> 1)) / wsum) : source;
}

double alpha32(double s, int64_t count, double acc, int64_t wsum, int64_t t, double source) {
    const double u = static_cast<double>(t) * kTapUnit32;
    const double b = s / static_cast<double>(count) * u;
    if (t != 0 && wsum != 0) {
        return stored32(32768.0 / static_cast<double>(wsum) * (1.0 - u) * acc + b);
    }
    if (t != 0) {
        return stored32(b);
    }
    return wsum != 0 ? stored32(32768.0 / static_cast<double>(wsum) * acc) : source;
}

double colour(double sum, int64_t opaqueCount, double source, bool isFloat) {
    if (opaqueCount == 0) {
        return source;
    }
    if (isFloat) {
        return stored32(sum / static_cast<double>(opaqueCount));
    }
    const int32_t total = wrapped32(sum + static_cast<double>(opaqueCount >> 1));
    return stored16(total / static_cast<int32_t>(opaqueCount));
}

/// The pixel at x, given the sums and the window of masked-in pixels around it.
PlainPixel outputAt(const LineOfPixels& line, const PlainKernel& kernel, int32_t x, int32_t first,
                    int32_t last, const Sums& sums) {
    double acc = 0.0;
    int64_t wsum = 0;
    const auto weigh = [&](int32_t j) {
        if (line.in(j)) {
            const int32_t t = kernel.taps[static_cast<std::size_t>(std::abs(j - x))];
            acc = acc + line.at(j).alpha * (line.isFloat ? t * kTapUnit32 : t);
            wsum += t;
        }
    };
    for (int32_t j = x - 1; j >= std::max(x - 299, first); --j) {
        weigh(j);
    }
    for (int32_t j = x; j <= std::min(x + 299, last); ++j) {
        weigh(j);
    }
    const PlainPixel& source = line.at(x);
    PlainPixel out;
    out.alpha = (line.isFloat ? alpha32 : alpha16)(sums.s.alpha, sums.count, acc, wsum, kernel.tailWeight,
                                                   source.alpha);
    if (line.keeps(x)) {
        out.alpha = source.alpha;
    }
    out.red = colour(sums.o.red, sums.opaqueCount, source.red, line.isFloat);
    out.green = colour(sums.o.green, sums.opaqueCount, source.green, line.isFloat);
    out.blue = colour(sums.o.blue, sums.opaqueCount, source.blue, line.isFloat);
    return out;
}

void runScanLine(const LineOfPixels& line, const PlainKernel& kernel, std::vector<PlainPixel>& out) {
    const int32_t reach = kernel.length - 1;
    Sums sums;
    int32_t runStart = 0;
    int32_t runEnd = -1;
    for (int32_t x = 0; x < line.size(); ++x) {
        if (!line.in(x)) {
            continue;
        }
        const int32_t right = std::min(x + reach, line.size() - 1);
        if (runEnd < x) {
            sums = Sums();
            runStart = x;
            for (int32_t j = x; j <= right && line.in(j); ++j) {
                enter(sums, line.at(j));
                runEnd = j;
            }
        } else {
            if (runStart < x - reach) {
                leave(sums, line.at(runStart), true);
                runStart = x - reach;
            }
            if (right - runEnd == 1 && line.in(right)) {
                runEnd = right;
                enter(sums, line.at(right));
            }
        }
        out[static_cast<std::size_t>(x)] = outputAt(line, kernel, x, runStart, runEnd, sums);
    }
}

void windowScanLine(const LineOfPixels& line, const PlainKernel& kernel, std::vector<PlainPixel>& out) {
    const int32_t reach = kernel.length - 1;
    const int32_t prefilled = std::min(reach, line.size() - 1);
    Sums sums;
    for (int32_t j = 0; j < prefilled; ++j) {
        if (line.in(j)) {
            enter(sums, line.at(j));
        }
    }
    int32_t lo = 0;
    int32_t hi = prefilled - 1;
    for (int32_t x = 0; x < line.size(); ++x) {
        const int32_t right = std::min(x + reach, line.size() - 1);
        if (right != hi) {
            if (line.in(right)) {
                enter(sums, line.at(right));
            }
            hi = right;
        }
        if (lo < x - reach) {
            if (line.in(lo)) {
                leave(sums, line.at(lo), false);
            }
            lo = x - reach;
        }
        if (line.in(x) && sums.count != 0) {
            out[static_cast<std::size_t>(x)] = outputAt(line, kernel, x, lo, hi, sums);
        }
    }
}

} // namespace

void plainBoundaryPass(const PlainBoundaryBlur& blur, const PlainKernel& kernel, bool horizontal,
                       const PlainPicture& src, PlainPicture& dst) {
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
            line.region.push_back(blur.regionMask.at(column(l, j), row(l, j)));
            line.keep.push_back(blur.alphaKeepMask.at(column(l, j), row(l, j)));
            out.push_back(dst.at(rect.left + column(l, j), rect.top + row(l, j)));
        }
        (blur.keepDivision ? runScanLine : windowScanLine)(line, kernel, out);
        for (int32_t j = 0; j < length; ++j) {
            dst.at(rect.left + column(l, j), rect.top + row(l, j)) = out[static_cast<std::size_t>(j)];
        }
    }
}

void plainAlphaGain(const FrameRect& rect, double amount, PlainPicture& picture) {
    for (int32_t y = rect.top; y < rect.bottom; ++y) {
        for (int32_t x = rect.left; x < rect.right; ++x) {
            double& alpha = picture.at(x, y).alpha;
            const double v = alpha * (amount * 2.0 + 1.0) / (amount + 1.0);
            if (picture.format == PF_PixelFormat_ARGB64) {
                alpha = std::trunc(v) > 32768.0 ? 32768.0 : std::trunc(v);
            } else {
                alpha = v > 1.0 ? 1.0 : stored32(v);
            }
        }
    }
}

void plainBoundaryBlur(const PlainBoundaryBlur& blur, const PlainPicture& src, PlainPicture& dst,
                       PlainPicture& tmp) {
    if (2.0 > blur.amount || blur.repeat == 0) {
        plainMaskedCopy(blur.rect, blur.regionMask, false, src, dst);
        return;
    }
    PlainPicture& first = blur.repeat % 2 != 0 ? tmp : dst;
    PlainPicture& second = blur.repeat % 2 != 0 ? dst : tmp;
    double amount = blur.amount;
    PlainKernel kernel = plainKernel(static_cast<int32_t>(std::ceil(amount)), amount * amount * 0.125);
    if (blur.steps >= 1) {
        plainBoundaryPass(blur, kernel, true, src, first);
    }
    if (blur.steps >= 2) {
        plainAlphaGain(blur.rect, blur.amount, first);
    }
    if (blur.steps >= 3) {
        plainBoundaryPass(blur, kernel, false, first, second);
    }
    const double divisor = blur.repeat > 1 ? exact::pow(amount, 1.0 / blur.repeat) : amount;
    for (int32_t k = 1; k < blur.repeat && blur.steps >= 3 + k; ++k) {
        amount = amount / divisor;
        if (amount < 1.0) {
            amount = 1.0;
        }
        kernel = plainKernel(static_cast<int32_t>(std::ceil(amount)), amount * amount);
        plainBoundaryPass(blur, kernel, k % 2 != 0, k % 2 != 0 ? second : first, k % 2 != 0 ? first : second);
    }
}

} // namespace kovalune::test
