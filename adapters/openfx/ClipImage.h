// An image that the host lends for an action: where its pixels lie and what they are, each image by itself.
#pragma once

#include "adapters/openfx/Suites.h"
#include "render/samples/AlphaKind.h"

#include <cstddef>
#include <cstdint>

namespace kovalune::openfx {

enum class Depth : uint8_t { kByte, kShort, kFloat };
enum class Components : uint8_t { kRgba, kRgb, kAlpha };

constexpr std::size_t bytesOf(Depth depth) {
    return depth == Depth::kByte ? 1 : depth == Depth::kShort ? 2 : 4;
}

constexpr std::size_t countOf(Components components) {
    return components == Components::kRgba ? 4 : components == Components::kRgb ? 3 : 1;
}

/// Pixels in the host's memory, the bottom row first.
struct PixelBlock {
    std::byte* data = nullptr;   ///< the lower left pixel
    std::ptrdiff_t rowBytes = 0; ///< to the row above; may be negative
    RectI bounds = {};
    Depth depth = Depth::kByte;
    Components components = Components::kRgba;
    samples::AlphaKind alpha = samples::AlphaKind::kStraight;

    int width() const { return bounds.x2 - bounds.x1; }
    int height() const { return bounds.y2 - bounds.y1; }
    std::size_t pixelBytes() const { return bytesOf(depth) * countOf(components); }

    /// Within the bounds.
    std::byte* at(int x, int y) const {
        return data + (std::ptrdiff_t{y} - bounds.y1) * rowBytes +
               (std::ptrdiff_t{x} - bounds.x1) * static_cast<std::ptrdiff_t>(pixelBytes());
    }
};

constexpr bool isEmpty(const RectI& rect) {
    return rect.x1 >= rect.x2 || rect.y1 >= rect.y2;
}

RectI intersection(const RectI& a, const RectI& b);

/// Has the image until its end.
class ClipImage {
public:
    /// Without one where the host has none. Throws ActionFailure where it has no memory, and, with `clip` in the words, for an image that
    /// cannot be worked on: of another depth or of other components than declared, without data, or larger than frames are.
    ClipImage(const Suites& suites, Clip clip, const char* clipName, double time);
    ~ClipImage();
    ClipImage(const ClipImage&) = delete;
    ClipImage& operator=(const ClipImage&) = delete;

    explicit operator bool() const { return image_ != nullptr; }
    const PixelBlock& operator*() const { return block_; }
    const PixelBlock* operator->() const { return &block_; }

private:
    const Suites& suites_;
    Properties image_ = nullptr;
    PixelBlock block_;
};

} // namespace kovalune::openfx
