#include "pictures/PixelValues.h"

#include "text/NumberText.h"

#include <array>
#include <cmath>

namespace kovalune::pictures {

namespace {

constexpr char kHexDigits[] = "0123456789abcdef";

std::string floatText(float value, uint32_t bits, int digits) {
    if (!std::isnan(value)) {
        return text::shortestText(value);
    }
    std::string text;
    for (int digit = digits; digit-- > 0;) {
        text += kHexDigits[(bits >> (4 * digit)) & 0xfU];
    }
    return "nan(0x" + text + ")";
}

} // namespace

std::span<const char* const> channelNames(Channels channels) {
    static constexpr std::array<const char*, 2> kGrey = {"grey", "alpha"};
    static constexpr std::array<const char*, 4> kRgb = {"red", "green", "blue", "alpha"};
    const std::span<const char* const> all =
        isGrey(channels) ? std::span<const char* const>(kGrey) : std::span<const char* const>(kRgb);
    return all.first(channelCount(channels));
}

const char* channelsText(Channels channels) {
    switch (channels) {
    case Channels::kGrey:
        return "grey";
    case Channels::kGreyAlpha:
        return "grey and alpha";
    case Channels::kRgb:
        return "RGB";
    default:
        return "RGBA";
    }
}

const char* depthText(SampleType type) {
    switch (type) {
    case SampleType::kUint8:
        return "8 bits";
    case SampleType::kUint16:
        return "16 bits";
    case SampleType::kHalf:
        return "float of 16 bits";
    default:
        return "float of 32 bits";
    }
}

double whiteOf(SampleType type) {
    return withFileScale(type, [](auto scale) { return static_cast<double>(scale.kWhite); });
}

double sampleValue(const Picture& picture, std::size_t index) {
    return withFileScale(picture.sampleType, [&](auto scale) {
        return scale.toDouble(picture.sample<typename decltype(scale)::Sample>(index));
    });
}

std::string sampleText(const Picture& picture, std::size_t index) {
    switch (picture.sampleType) {
    case SampleType::kUint8:
        return std::to_string(picture.samples[index]);
    case SampleType::kUint16:
        return std::to_string(picture.sample<uint16_t>(index));
    case SampleType::kHalf: {
        const auto bits = picture.sample<uint16_t>(index);
        return floatText(HalfScale::toFloat(bits), bits, 4);
    }
    default:
        return floatText(picture.sample<float>(index), picture.sample<uint32_t>(index), 8);
    }
}

std::string pixelText(const Picture& picture, std::size_t pixel) {
    std::string text;
    std::size_t index = pixel * channelCount(picture.channels);
    for (const char* const name : channelNames(picture.channels)) {
        text += (text.empty() ? "" : ", ") + std::string(name) + ' ' + sampleText(picture, index);
        ++index;
    }
    return text;
}

std::string formText(const Picture& picture) {
    std::string text = std::to_string(picture.width) + 'x' + std::to_string(picture.height) + ", " +
                       channelsText(picture.channels) + ", " + depthText(picture.sampleType);
    if (hasAlpha(picture.channels)) {
        text += picture.alphaKind == AlphaKind::kStraight ? ", straight alpha" : ", premultiplied alpha";
    }
    return text;
}

uint8_t nearestByte(const Picture& picture, std::size_t index) {
    return withFileScale(picture.sampleType, [&](auto scale) {
        using Scale = decltype(scale);
        return rescaled<Scale, FileScale8>(picture.sample<typename Scale::Sample>(index));
    });
}

std::string hexText(const std::array<uint8_t, 3>& rgb) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text(1, '#');
    for (const uint8_t channel : rgb) {
        text += kDigits[channel >> 4];
        text += kDigits[channel & 0xf];
    }
    return text;
}

} // namespace kovalune::pictures
