// A picture in memory of the test's own, with bytes after its rows that nobody may touch, and the same call as the effect's
// own code makes it in a host.
#pragma once

#include "effect/Kovalune.h"
#include "effect/smoothing/SmoothBoundaries.h"
#include "host/Image.h"
#include "tests/support/PlainPicture.h"
#include "tests/support/TestWorld.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string>
#include <tuple>
#include <vector>

namespace kovalune::test {

inline int32_t bytesPerChannel(PF_PixelFormat format) {
    return static_cast<int32_t>(host::bytesPerPixel(format)) / 4;
}

class OwnPicture {
public:
    /// Rows are longer than their pixels by this many channels: an odd number makes rows that no pixel divides.
    OwnPicture(PF_PixelFormat format, int32_t width, int32_t height, int32_t padding)
        : format_(format), width_(width), height_(height), used_(width * 4 * bytesPerChannel(format)),
          rowbytes_(used_ + padding * bytesPerChannel(format)),
          bytes_(static_cast<std::size_t>(rowbytes_) * static_cast<std::size_t>(height), kUntouched) {}

    PictureView view() const { return {format_, width_, height_, rowbytes_, bytes_.data()}; }
    WritablePictureView writable() { return {format_, width_, height_, rowbytes_, bytes_.data()}; }

    void copyFrom(const TestWorld& world) {
        for (int32_t y = 0; y < height_; ++y) {
            std::memcpy(row(y), &world.at<uint8_t>(0, y), static_cast<std::size_t>(used_));
        }
    }

    bool pixelsEqual(const TestWorld& world) {
        for (int32_t y = 0; y < height_; ++y) {
            if (std::memcmp(row(y), &world.at<uint8_t>(0, y), static_cast<std::size_t>(used_)) != 0) {
                return false;
            }
        }
        return true;
    }

    bool paddingUntouched() {
        for (int32_t y = 0; y < height_; ++y) {
            if (!std::all_of(row(y) + used_, row(y) + rowbytes_, isUntouched)) {
                return false;
            }
        }
        return true;
    }

    bool untouched() const { return std::all_of(bytes_.begin(), bytes_.end(), isUntouched); }

private:
    static constexpr uint8_t kUntouched = 0xa5;
    static bool isUntouched(uint8_t byte) { return byte == kUntouched; }

    uint8_t* row(int32_t y) { return bytes_.data() + std::ptrdiff_t{y} * rowbytes_; }

    PF_PixelFormat format_;
    int32_t width_;
    int32_t height_;
    int32_t used_;
    int32_t rowbytes_;
    std::vector<uint8_t> bytes_;
};

/// What the smoothing itself leaves in a host's world.
inline PF_Err smoothInHost(StrictHost& host, TestWorld& source, TestWorld& destination,
                           const SmoothOptions& options) {
    SmoothParams params;
    params.threshold = options.threshold;
    params.strength = options.strength;
    params.curve = options.curve;
    params.keyEnabled = options.key == SmoothKey::kNone ? 0 : 1;
    params.keyOnly = options.key == SmoothKey::kOnly ? 1 : 0;
    params.keyRed = options.keyRed;
    params.keyGreen = options.keyGreen;
    params.keyBlue = options.keyBlue;
    params.keyTolerance = options.keyTolerance;
    params.inData = host.in();
    params.pixelFormat = source.format();
    params.srcWorld = source.get();
    params.dstWorld = destination.get();
    return smoothBoundaries(params);
}

/// Takes a colour of the picture as the key.
inline void keyOn(SmoothOptions& options, const PlainPicture& picture) {
    const PlainPixel& pixel = picture.at(picture.width / 2, picture.height / 2);
    const double level = 255.0 / fullScale(picture.format);
    options.keyRed = static_cast<int32_t>(std::lround(pixel.red * level));
    options.keyGreen = static_cast<int32_t>(std::lround(pixel.green * level));
    options.keyBlue = static_cast<int32_t>(std::lround(pixel.blue * level));
}

/// Format, key, padding in channels.
using FacadeCase = std::tuple<PF_PixelFormat, SmoothKey, int32_t>;

inline auto allFacadeCases() {
    return testing::Combine(
        testing::Values(PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64, PF_PixelFormat_ARGB128),
        testing::Values(SmoothKey::kNone, SmoothKey::kRemove, SmoothKey::kOnly), testing::Values(0, 1, 7));
}

inline std::string caseName(const testing::TestParamInfo<FacadeCase>& info) {
    const auto [format, key, padding] = info.param;
    constexpr std::array names = {"plain", "keyRemoved", "keyOnly"};
    return formatName(format) + "_" + names.at(static_cast<std::size_t>(key)) + "_padding" +
           std::to_string(padding);
}

inline constexpr std::pair<int32_t, int32_t> kSizes[] = {{1, 1}, {1, 7}, {6, 1}, {5, 4}, {23, 18}, {41, 30}};

} // namespace kovalune::test
