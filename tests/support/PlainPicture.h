// A picture of any format in plain doubles, which hold every channel of the three formats exactly: what the
// twins of the passes work on.
#pragma once

#include "tests/support/Random.h"
#include "tests/support/TestWorld.h"

#include <cstddef>
#include <string>
#include <vector>

namespace kovalune::test {

struct PlainPixel {
    double alpha = 0.0;
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
};

struct PlainPicture {
    PF_PixelFormat format = PF_PixelFormat_INVALID;
    int32_t width = 0;
    int32_t height = 0;
    std::vector<PlainPixel> pixels;

    PlainPicture(PF_PixelFormat f, int32_t w, int32_t h)
        : format(f), width(w), height(h), pixels(static_cast<std::size_t>(w) * static_cast<std::size_t>(h)) {}

    PlainPixel& at(int32_t x, int32_t y) { return pixels[index(x, y)]; }
    const PlainPixel& at(int32_t x, int32_t y) const { return pixels[index(x, y)]; }

private:
    std::size_t index(int32_t x, int32_t y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    }
};

/// A word for test names.
std::string formatName(PF_PixelFormat format);

/// 255, 32768 or 1.
double fullScale(PF_PixelFormat format);

PlainPicture read(const TestWorld& world);
void write(const PlainPicture& picture, TestWorld& world);

/// Channels that stay within the format's scale, or go anywhere that the format can.
enum class Range { kOrdinary, kWild };

PlainPicture randomPicture(PF_PixelFormat format, int32_t width, int32_t height, Random& random,
                           Range range = Range::kOrdinary);

/// A picture of few colours in runs, with transparent holes.
PlainPicture flatPicture(PF_PixelFormat format, int32_t width, int32_t height, Random& random,
                         Range range = Range::kOrdinary);

/// Names the first channel that differs by a single bit; empty where none does. Any NaN equals any other.
std::string difference(const PlainPicture& expected, const PlainPicture& actual);
std::string difference(const PlainPicture& expected, const TestWorld& actual);

} // namespace kovalune::test
