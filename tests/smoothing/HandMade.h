// Flag maps and pictures made by hand. Each lies in a memory block that ends with its last cell or pixel, so that the
// address sanitizer sees an access past it.
#pragma once

#include "effect/smoothing/EdgeFlagMap.h"
#include "effect/smoothing/PixelSource.h"
#include "effect/smoothing/SmoothContext.h"
#include "effect/smoothing/SmoothOf.h"
#include "tests/support/PlainPicture.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace kovalune::test {

struct MarkedCell {
    int32_t x;
    int32_t y;
    int flags;
};

/// The same cell after an exchange of rows and columns.
MarkedCell transposed(const MarkedCell& cell);

class HandMap {
public:
    HandMap(int32_t width, int32_t height, const std::vector<MarkedCell>& cells = {});
    HandMap(const HandMap&) = delete;
    HandMap& operator=(const HandMap&) = delete;

    EdgeFlagMap& map() { return map_; }

private:
    std::vector<uint8_t> memory_;
    EdgeFlagMap map_;
};

class HandPicture {
public:
    /// `padding` bytes between the rows. Of a picture stored bottom up, the first row is the last in memory.
    HandPicture(PF_PixelFormat format, int32_t width, int32_t height, int32_t padding = 0,
                bool bottomUp = false);
    explicit HandPicture(const PlainPicture& picture, int32_t padding = 0, bool bottomUp = false);
    HandPicture(const HandPicture&) = delete;
    HandPicture& operator=(const HandPicture&) = delete;

    PF_EffectWorld& world() { return world_; }
    PlainPixel get(int32_t x, int32_t y) const;
    void set(int32_t x, int32_t y, const PlainPixel& pixel);
    PlainPicture picture() const;
    bool paddingIsUntouched() const;

private:
    uint8_t* pixelAt(int32_t x, int32_t y) const;

    PF_PixelFormat format_;
    int32_t pixelBytes_;
    std::size_t memoryBytes_;
    std::unique_ptr<uint8_t[]> memory_;
    PF_EffectWorld world_ = {};
};

template <class Format>
constexpr PF_PixelFormat formatOf() {
    if (sizeof(typename Format::Pixel) == sizeof(PF_Pixel)) {
        return PF_PixelFormat_ARGB32;
    }
    return sizeof(typename Format::Pixel) == sizeof(PF_Pixel16) ? PF_PixelFormat_ARGB64
                                                                : PF_PixelFormat_ARGB128;
}

/// Settings, a map and two pictures, as a visit of a pixel meets them. Every pixel of the source is opaque and has a
/// colour of its own; the destination is of one opaque colour, which is none of these.
template <class Format>
class HandScene {
public:
    HandScene(const std::vector<MarkedCell>& cells, int32_t strength, int32_t width = 14, int32_t height = 12)
        : map_(width, height, cells), source_(formatOf<Format>(), width, height),
          destination_(formatOf<Format>(), width, height), params_(paramsOf(strength)), pixels_(params_),
          context_(params_, pixels_, map_.map()) {
        for (int32_t y = 0; y < height; ++y) {
            for (int32_t x = 0; x < width; ++x) {
                source_.set(x, y, level(200 - 7 * x, 3 + 11 * y, 5 * (x + 3 * y)));
                destination_.set(x, y, level(90, 200, 33));
            }
        }
    }

    const SmoothContext<Format, KeyMode::kPlain>& context() const { return context_; }
    PlainPixel src(int32_t x, int32_t y) const { return source_.get(x, y); }
    HandPicture& source() { return source_; }
    HandPicture& destination() { return destination_; }
    PlainPicture result() const { return destination_.picture(); }

private:
    static PlainPixel level(int red, int green, int blue) {
        const double unit = fullScale(formatOf<Format>()) / 255.0;
        PlainPixel p = {fullScale(formatOf<Format>()), red * unit, green * unit, blue * unit};
        return p;
    }

    SmoothParams paramsOf(int32_t strength) {
        SmoothParams params;
        params.strength = strength;
        params.pixelFormat = formatOf<Format>();
        params.srcWorld = &source_.world();
        params.dstWorld = &destination_.world();
        return params;
    }

    HandMap map_;
    HandPicture source_;
    HandPicture destination_;
    SmoothParams params_;
    PixelSource<Format, KeyMode::kPlain> pixels_;
    SmoothContext<Format, KeyMode::kPlain> context_;
};

} // namespace kovalune::test
