// Boundary smoothing of a small picture by any map of flags, those that no picture gives too, with any settings. The pixels are
// the plain twin's to the last bit; the twin ends the process where a rule asks beyond the map or the picture, the address
// sanitizer where the smoothing touches what lies beyond either.

#include "effect/smoothing/PixelProcedure.h"
#include "tests/fuzz/Require.h"
#include "tests/fuzz/Taken.h"
#include "tests/reference/PlainSmooth.h"
#include "tests/smoothing/HandMade.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

constexpr int32_t kLongest = 24;

/// Colours from a few, so that flat areas come up.
PlainPicture takenPicture(Taken& taken, PF_PixelFormat format, int32_t width, int32_t height) {
    constexpr int kLevels[] = {0, 1, 40, 128, 200, 255};
    const double unit = fullScale(format) / 255.0;
    const auto level = [&](double value) {
        const double scaled = value * unit;
        return format == PF_PixelFormat_ARGB128 ? static_cast<double>(static_cast<float>(scaled))
                                                : static_cast<double>(static_cast<int32_t>(scaled));
    };
    PlainPixel palette[4];
    for (PlainPixel& colour : palette) {
        colour = {level(taken.oneOf(kLevels)), level(taken.byte()), level(taken.byte()), level(taken.byte())};
    }
    PlainPicture picture(format, width, height);
    uint32_t mix = taken.byte();
    for (PlainPixel& pixel : picture.pixels) {
        mix = mix * 1664525U + 1013904223U;
        pixel = palette[mix >> 30U];
    }
    return picture;
}

SmoothParams takenParams(Taken& taken, PF_PixelFormat format, KeyMode mode) {
    SmoothParams params;
    params.strength = 1 + taken.below(100);
    params.curve = taken.below(201) - 100;
    params.threshold = taken.byte();
    params.pixelFormat = format;
    params.keyEnabled = mode == KeyMode::kPlain ? 0 : 1;
    params.keyOnly = mode == KeyMode::kOnly ? 1 : 0;
    params.keyRed = taken.byte();
    params.keyGreen = taken.byte();
    params.keyBlue = taken.byte();
    params.keyTolerance = taken.byte();
    return params;
}

/// Any flags but those of pairs that reach beyond the picture, which the map of a picture never has.
PlainFlags takenFlags(Taken& taken, int32_t width, int32_t height) {
    PlainFlags flags(width, height);
    for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width; ++x) {
            const int inRow = x + 1 < width ? EDGE_RIGHT : 0;
            const int inColumn = y + 1 < height ? EDGE_DOWN : 0;
            const int across = inRow != 0 && inColumn != 0 ? EDGE_FALLING | EDGE_RISING : 0;
            flags.set(x, y, taken.byte() & (inRow | inColumn | across));
        }
    }
    return flags;
}

template <class Format, KeyMode mode>
void compare(Taken& taken) {
    const PF_PixelFormat format = formatOf<Format>();
    const int32_t width = 1 + taken.below(kLongest);
    const int32_t height = 1 + taken.below(kLongest);
    SmoothParams params = takenParams(taken, format, mode);
    const int32_t padding = 4 * taken.below(4);
    const bool bottomUp = taken.bit();
    const PlainPicture picture = takenPicture(taken, format, width, height);
    const PlainFlags flags = takenFlags(taken, width, height);

    PlainPicture filled(format, width, height);
    plainFirstFill(params, picture, filled);
    HandPicture source(picture, padding, bottomUp);
    HandPicture destination(filled, padding, bottomUp);
    HandMap map(width, height);
    for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width; ++x) {
            map.map().add(x, y, flags.at(x, y));
        }
    }
    params.srcWorld = &source.world();
    params.dstWorld = &destination.world();
    const PixelSource<Format, mode> pixels(params);
    visitFlagged(SmoothContext<Format, mode>(params, pixels, map.map()));

    PatternCounts counts;
    const std::string found =
        difference(PlainSmooth(params, picture, flags, counts).run(), destination.picture());
    require(found.empty(), "the pixels are the twin's:", found);
    require(difference(picture, source.picture()).empty(), "the source is never written");
    require(destination.paddingIsUntouched(), "nothing is written between the rows");
}

using Compare = void (*)(Taken&);
constexpr Compare kCompare[] = {
    compare<Argb8, KeyMode::kPlain>,   compare<Argb16, KeyMode::kPlain>,   compare<Argb32, KeyMode::kPlain>,
    compare<Argb8, KeyMode::kRemoved>, compare<Argb16, KeyMode::kRemoved>, compare<Argb32, KeyMode::kRemoved>,
    compare<Argb8, KeyMode::kOnly>,    compare<Argb16, KeyMode::kOnly>,    compare<Argb32, KeyMode::kOnly>};

} // namespace
} // namespace kovalune::test

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    testing::GTEST_FLAG(throw_on_failure) = true; // the twin's own checks
    kovalune::test::Taken taken(data, size);
    taken.oneOf(kovalune::test::kCompare)(taken);
    return 0;
}
