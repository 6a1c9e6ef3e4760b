// A picture as its file holds it: samples row by row without padding, in this machine's byte order.
#pragma once

#include "render/samples/AlphaKind.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace kovalune::pictures {

/// The last three are read only.
enum class FileFormat { kPng, kTiff, kExr, kTga, kBmp, kWebp, kJpeg };

enum class Channels { kGrey, kGreyAlpha, kRgb, kRgbAlpha };

constexpr std::size_t channelCount(Channels channels) {
    switch (channels) {
    case Channels::kGrey:
        return 1;
    case Channels::kGreyAlpha:
        return 2;
    case Channels::kRgb:
        return 3;
    default:
        return 4;
    }
}

constexpr bool isGrey(Channels channels) {
    return channels == Channels::kGrey || channels == Channels::kGreyAlpha;
}

constexpr bool hasAlpha(Channels channels) {
    return channels == Channels::kGreyAlpha || channels == Channels::kRgbAlpha;
}

constexpr Channels channelsOf(bool grey, bool alpha) {
    if (grey) {
        return alpha ? Channels::kGreyAlpha : Channels::kGrey;
    }
    return alpha ? Channels::kRgbAlpha : Channels::kRgb;
}

/// White is 255, 65535 or 1.0. Half is a float of 16 bits, kept as its bits.
enum class SampleType { kUint8, kUint16, kHalf, kFloat };

constexpr std::size_t bytesPerSample(SampleType type) {
    switch (type) {
    case SampleType::kUint8:
        return 1;
    case SampleType::kFloat:
        return 4;
    default:
        return 2;
    }
}

constexpr bool isFloat(SampleType type) {
    return type == SampleType::kHalf || type == SampleType::kFloat;
}

// Samples are those of every tool that has pixels of its own.
using namespace samples;

/// Something that the file says about the picture as a whole, carried from input to output unread: a chunk, a
/// tag or an attribute, by the name and in the bytes of its format.
struct PictureNote {
    std::string name;
    std::string type; ///< of the value, where the format has types
    std::vector<uint8_t> bytes;

    friend bool operator==(const PictureNote&, const PictureNote&) = default;
};

struct ExrRest;

struct Picture {
    uint32_t width = 0;
    uint32_t height = 0;
    Channels channels = Channels::kRgb;
    SampleType sampleType = SampleType::kUint8;
    AlphaKind alphaKind = AlphaKind::kStraight;
    bool isLinear = false; ///< colours are linear light, as the user says; not alpha
    bool isLossy = false;  ///< its file's compression has changed colours: flat ones are flat no longer
    std::vector<uint8_t> samples;         ///< grey or red, green, blue, then alpha if there is one
    FileFormat format = FileFormat::kPng; ///< whose notes these are
    std::vector<PictureNote> notes;
    /// Names of what the file holds besides and the picture does not: channels, parts, pages. For messages.
    std::vector<std::string> leftOut;
    /// The same of what a file of this format that is written of the picture has again.
    std::vector<std::string> passedOn;
    std::shared_ptr<const ExrRest> exrRest; ///< of an OpenEXR file: those, if there are any

    std::size_t rowBytes() const { return width * channelCount(channels) * bytesPerSample(sampleType); }

    /// Of all samples. Throws std::bad_alloc where so many bytes cannot be counted.
    std::size_t byteCount() const {
        const uint64_t count = uint64_t{rowBytes()} * height;
        if (count > std::numeric_limits<std::size_t>::max()) {
            throw std::bad_alloc();
        }
        return static_cast<std::size_t>(count);
    }

    /// `index` counts samples from the picture's first. Sample is uint8_t, uint16_t (the bits of a
    /// Half too) or float, as the type says.
    template <class Sample>
    Sample sample(std::size_t index) const {
        Sample value;
        std::memcpy(&value, samples.data() + index * sizeof value, sizeof value);
        return value;
    }
    template <class Sample>
    void setSample(std::size_t index, Sample value) {
        std::memcpy(samples.data() + index * sizeof value, &value, sizeof value);
    }
};

} // namespace kovalune::pictures
