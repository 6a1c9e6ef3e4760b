// The values of a picture's pixels as the file holds them: as exact numbers, and as text for people.
#pragma once

#include "pictures/Picture.h"
#include "render/samples/SampleScale.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace kovalune::pictures {

/// In the order of the samples: "grey" or "red", "green", "blue", then "alpha".
std::span<const char* const> channelNames(Channels channels);

/// "grey", "grey and alpha", "RGB", "RGBA"
const char* channelsText(Channels channels);

/// "8 bits", "16 bits", "float of 16 bits", "float of 32 bits"
const char* depthText(SampleType type);

/// 255, 65535 or 1.
double whiteOf(SampleType type);

/// `index` counts samples from the picture's first. Exact for every type.
double sampleValue(const Picture& picture, std::size_t index);

/// Reads back as the same sample; NaN comes with its bits, as "nan(0x7fc00000)".
std::string sampleText(const Picture& picture, std::size_t index);

/// "red 12, green 34, blue 56, alpha 255"; `pixel` counts pixels from the picture's first.
std::string pixelText(const Picture& picture, std::size_t pixel);

/// "1920x1080, RGBA, 8 bits, straight alpha"
std::string formText(const Picture& picture);

/// What `visit` returns for the scale of such samples, an object without state.
template <class Visit>
decltype(auto) withFileScale(SampleType type, const Visit& visit) {
    switch (type) {
    case SampleType::kUint8:
        return visit(FileScale8{});
    case SampleType::kUint16:
        return visit(FileScale16{});
    case SampleType::kHalf:
        return visit(HalfScale{});
    default:
        return visit(FloatScale{});
    }
}

/// Cut to 0 to white and brought to 0 to 255, rounded to the nearest; NaN is 0.
uint8_t nearestByte(const Picture& picture, std::size_t index);

/// "#RRGGBB"
std::string hexText(const std::array<uint8_t, 3>& rgb);

} // namespace kovalune::pictures
