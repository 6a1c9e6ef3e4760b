// What happens to single pixels: the blend, the key and the first fill.
#include "tests/reference/PlainSmooth.h"

#include <cmath>

namespace kovalune::test {
namespace {

double mixed(double d, double dPart, double s, double sPart) {
    return std::floor((d * dPart + s * sPart + 32768.0) / 65536.0);
}

/// Every product of a channel and a weight is a whole number that a double holds exactly.
void blendIntegers(PlainPixel& d, const PlainPixel& s, double w) {
    const double inv = 65535.0 - w;
    if (d.alpha == s.alpha) {
        d.red = mixed(d.red, inv, s.red, w);
        d.green = mixed(d.green, inv, s.green, w);
        d.blue = mixed(d.blue, inv, s.blue, w);
        return;
    }
    const double dw = inv * d.alpha;
    if (s.alpha == 0.0) {
        d.alpha = std::floor((dw + 32768.0) / 65536.0);
        return;
    }
    const double sw = s.alpha * w;
    if (d.alpha == 0.0) {
        d = s;
        d.alpha = std::floor((sw + 32768.0) / 65536.0);
        return;
    }
    const float ratio = static_cast<float>(dw) / static_cast<float>(sw);
    const float share = 65535.0F / (ratio + 1.0F) + 0.5F;
    const double k = std::trunc(static_cast<double>(share));
    const double ki = 65535.0 - k;
    d.red = mixed(d.red, ki, s.red, k);
    d.green = mixed(d.green, ki, s.green, k);
    d.blue = mixed(d.blue, ki, s.blue, k);
    d.alpha = std::floor((s.alpha * w + 32768.0 + dw) / 65536.0);
}

double mixedFloat(double s, float sPart, double d, float dPart) {
    const float fromSource = static_cast<float>(s) * sPart;
    const float fromTarget = static_cast<float>(d) * dPart;
    return static_cast<double>(fromSource + fromTarget);
}

void blendFloats(PlainPixel& d, const PlainPixel& s, float w) {
    const float inv = 1.0F - w;
    if (d.alpha == s.alpha) {
        d.red = mixedFloat(s.red, w, d.red, inv);
        d.green = mixedFloat(s.green, w, d.green, inv);
        d.blue = mixedFloat(s.blue, w, d.blue, inv);
        return;
    }
    const float sw = static_cast<float>(s.alpha) * w;
    const float dw = inv * static_cast<float>(d.alpha);
    if (s.alpha == 0.0) {
        d.alpha = static_cast<double>(dw + sw);
        return;
    }
    const float k = dw == 0.0F ? 1.0F : 1.0F / (dw / sw + 1.0F);
    const float ki = 1.0F - k;
    d.red = mixedFloat(s.red, k, d.red, ki);
    d.green = mixedFloat(s.green, k, d.green, ki);
    d.blue = mixedFloat(s.blue, k, d.blue, ki);
    d.alpha = static_cast<double>(sw + dw);
}

double keyChannel(PF_PixelFormat format, int32_t value) {
    const int32_t byte = value & 255;
    if (format == PF_PixelFormat_ARGB32) {
        return byte;
    }
    return format == PF_PixelFormat_ARGB64 ? byte * 32768 / 255
                                           : static_cast<double>(static_cast<float>(byte) / 255.0F);
}

/// The key colour without tolerance at 8 bits, red and blue exchanged.
bool isExchangedKey(const SmoothParams& params, const PlainPixel& p) {
    return p.blue == (params.keyRed & 255) && p.green == (params.keyGreen & 255) &&
           p.red == (params.keyBlue & 255);
}

/// Whether the pixel is within the tolerance of the key colour.
bool isKey(const SmoothParams& params, const PlainPixel& p) {
    const PF_PixelFormat format = params.pixelFormat;
    const double red = keyChannel(format, params.keyRed);
    const double green = keyChannel(format, params.keyGreen);
    const double blue = keyChannel(format, params.keyBlue);
    if (format == PF_PixelFormat_ARGB128) {
        float left = static_cast<float>(params.keyTolerance) / 255.0F;
        left = left - std::fabs(static_cast<float>(red) - static_cast<float>(p.red));
        left = left - std::fabs(static_cast<float>(green) - static_cast<float>(p.green));
        left = left - std::fabs(static_cast<float>(blue) - static_cast<float>(p.blue));
        return left >= 0.0F;
    }
    const int64_t tolerance = format == PF_PixelFormat_ARGB64
                                  ? static_cast<int64_t>(params.keyTolerance) * 32768 / 255
                                  : params.keyTolerance;
    return std::fabs(red - p.red) + std::fabs(green - p.green) + std::fabs(blue - p.blue) <=
           static_cast<double>(tolerance);
}

} // namespace

void plainBlend(PF_PixelFormat format, PlainPixel& target, const PlainPixel& colour, double weight) {
    if (format == PF_PixelFormat_ARGB128) {
        blendFloats(target, colour, static_cast<float>(weight));
    } else {
        blendIntegers(target, colour, weight);
    }
}

PlainPixel plainKeyed(const SmoothParams& params, PlainPixel pixel) {
    if (params.keyEnabled == 0) {
        return pixel;
    }
    const bool gone = params.keyOnly != 0 ? !isKey(params, pixel) : isKey(params, pixel);
    if (gone) {
        pixel.alpha = 0.0;
    }
    return pixel;
}

void plainFirstFill(const SmoothParams& params, const PlainPicture& source, PlainPicture& destination) {
    const bool exchanged =
        params.keyEnabled != 0 && params.keyTolerance == 0 && params.pixelFormat == PF_PixelFormat_ARGB32;
    for (int32_t y = 0; y < source.height; ++y) {
        for (int32_t x = 0; x < source.width; ++x) {
            PlainPixel pixel = source.at(x, y);
            if (exchanged) {
                if (isExchangedKey(params, pixel) == (params.keyOnly == 0)) {
                    pixel.alpha = 0.0;
                }
            } else {
                pixel = plainKeyed(params, pixel);
            }
            destination.at(x, y) = pixel;
        }
    }
}

} // namespace kovalune::test
