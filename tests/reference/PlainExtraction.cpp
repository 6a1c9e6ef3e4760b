#include "tests/reference/PlainExtraction.h"

#include "host/ColorConversion.h"
#include "tests/reference/PlainBands.h"

#include <bit>
#include <cmath>
#include <cstdlib>

namespace kovalune::test {
namespace {

bool sameChannel(double a, double b) {
    return std::bit_cast<uint32_t>(static_cast<float>(a)) == std::bit_cast<uint32_t>(static_cast<float>(b));
}

bool sameColor(const PlainPixel& a, const PlainPixel& b) {
    return sameChannel(a.red, b.red) && sameChannel(a.green, b.green) && sameChannel(a.blue, b.blue);
}

uint8_t low8(PF_PixelFormat format, double c) {
    if (format == PF_PixelFormat_ARGB32) {
        return static_cast<uint8_t>(c);
    }
    if (format == PF_PixelFormat_ARGB64) {
        return static_cast<uint8_t>((static_cast<uint32_t>(c) * 255 + 16384) >> 15);
    }
    const float product = static_cast<float>(c) * 255.0F;
    const double rounded = std::trunc(static_cast<double>(product) + 0.5);
    if (!(rounded >= -2147483648.0 && rounded <= 2147483647.0)) {
        return 0;
    }
    const auto whole = static_cast<int64_t>(rounded);
    return static_cast<uint8_t>(((whole % 256) + 256) % 256);
}

double otherRed(PF_PixelFormat format, double red) {
    const double full = fullScale(format);
    return red == full ? 0.0 : full;
}

bool matchesAny(const PF_Fixed (&hls)[3], const std::vector<PlainMatch>& matches) {
    for (const PlainMatch& match : matches) {
        PF_Fixed listed[3];
        host::rgbToHls(match.color, listed);
        if (plainDistance(hls, listed) <= static_cast<int64_t>(match.range * 27904.0)) {
            return true;
        }
    }
    return false;
}

} // namespace

int64_t plainDistance(const PF_Fixed (&a)[3], const PF_Fixed (&b)[3]) {
    int64_t dh = std::llabs(int64_t{a[0]} - b[0]);
    constexpr int64_t degree = 65536;
    if (dh > 180 * degree) {
        dh = 360 * degree - dh;
    }
    return (std::llabs(int64_t{a[2]} - b[2]) + std::llabs(int64_t{a[1]} - b[1]) + (dh >> 7)) >> 3;
}

PlainExtracted plainExtract(const PlainPicture& src, const FrameRect& rect,
                            const std::vector<PlainMatch>& matches, int32_t iterations) {
    PlainExtracted result{Mask(rect.width(), rect.height()), 0};
    for (int32_t i = 0; i < iterations; ++i) {
        const Band band = plainBand(rect.height(), i, iterations);
        if (band.first >= band.end) {
            continue;
        }
        PlainPixel previous = src.at(rect.left, rect.top + band.first);
        previous.red = otherRed(src.format, previous.red);
        uint8_t last = 0;
        for (int32_t y = band.first; y < band.end; ++y) {
            for (int32_t x = 0; x < rect.width(); ++x) {
                const PlainPixel& p = src.at(rect.left + x, rect.top + y);
                if (p.alpha == 0.0) {
                    continue;
                }
                if (!sameColor(p, previous)) {
                    previous = p;
                    const PF_Pixel narrow = {255, low8(src.format, p.red), low8(src.format, p.green),
                                             low8(src.format, p.blue)};
                    PF_Fixed hls[3];
                    host::rgbToHls(narrow, hls);
                    ++result.conversions;
                    last = matchesAny(hls, matches) ? 1 : 0;
                }
                result.mask.at(x, y) = last;
            }
        }
    }
    return result;
}

} // namespace kovalune::test
