// A pixel on its way to the effect and back: what the effect has left as it was keeps its own bits, what it has changed is
// made of the result. "File" is whatever hands in pixels and takes them: a picture's file, or another host's memory.
#pragma once

#include "effect/share/StandardParts.h"
#include "render/samples/LightCurve.h"
#include "render/samples/SampleScale.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <type_traits>

namespace kovalune::samples {

/// In the order of a file that has them all.
template <class Sample>
struct FilePixel {
    Sample red;
    Sample green;
    Sample blue;
    Sample alpha;
};

/// Of floats too, where NaN is the same as itself and 0 is not -0.
template <class Sample>
bool sameBits(Sample a, Sample b) {
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): the bits are meant
    return std::memcmp(&a, &b, sizeof a) == 0;
}

/// A pixel of a file as one of the host's.
template <class File, class Host>
class HostPixel {
public:
    explicit HostPixel(AlphaKind kind) : kind_(kind) {}

    typename Host::Pixel operator()(const FilePixel<typename File::Sample>& pixel) const {
        const auto colour = [&](typename File::Sample sample) {
            return channel(recoloured<File, Host>(sample, pixel.alpha, kind_, AlphaKind::kStraight));
        };
        return {channel(rescaled<File, Host>(pixel.alpha)), colour(pixel.red), colour(pixel.green),
                colour(pixel.blue)};
    }

private:
    static typename Host::Channel channel(typename Host::Sample sample) {
        return bitCast<typename Host::Channel>(sample);
    }

    AlphaKind kind_;
};

/// Alpha comes from the end to the front, of whole numbers with all channels turned at once. `samples` are those of one
/// pixel.
template <class Pixel, class Sample>
Pixel alphaFirst(const Sample* samples) {
    if constexpr (sizeof(Sample) > 2) {
        return bitCast<Pixel>(std::array{samples[3], samples[0], samples[1], samples[2]});
    } else {
        using Word = std::conditional_t<sizeof(Sample) == 1, uint32_t, uint64_t>;
        constexpr int kChannelBits = 8 * sizeof(Sample);
        constexpr int kTurn = std::endian::native == std::endian::little ? kChannelBits : -kChannelBits;
        Word word;
        std::memcpy(&word, samples, sizeof word);
        return bitCast<Pixel>(std::rotl(word, kTurn));
    }
}

/// What a sample's place in the host's picture is made of, and what is made of it.
struct FileKind {
    AlphaKind alpha = AlphaKind::kStraight;
    bool isLinear = false;
};

/// A colour between kinds; through the curve where one of them alone is linear light.
class Recolouring {
public:
    Recolouring(FileKind from, FileKind to) : from_(from.alpha), to_(to.alpha) {
        if (from.isLinear != to.isLinear) {
            curve_.emplace(from.isLinear ? srgbOfLinear : linearOfSrgb);
        }
    }

    template <class From, class To>
    typename To::Sample of(typename From::Sample colour, typename From::Sample alpha) {
        return curve_ ? recolouredThrough<From, To>(*curve_, colour, alpha, from_, to_)
                      : recoloured<From, To>(colour, alpha, from_, to_);
    }

private:
    AlphaKind from_;
    AlphaKind to_;
    std::optional<LightCurve> curve_;
};

/// One pixel to write: what the effect left comes from the file, the rest from the result.
template <class Host, class From, class To>
class PixelChoice {
public:
    PixelChoice(FileKind from, FileKind to)
        : left_(from, to), changed_({}, to), eitherMultiplied_(from.alpha == AlphaKind::kPremultiplied ||
                                                               to.alpha == AlphaKind::kPremultiplied) {}

    FilePixel<typename To::Sample> operator()(const typename Host::Pixel& now,
                                              const typename Host::Pixel& before,
                                              const FilePixel<typename From::Sample>& inFile) {
        const bool alphaStays = sameBits(now.alpha, before.alpha);
        const bool coloursMayStay = alphaStays || !eitherMultiplied_;
        const auto colour = [&](auto sampleNow, auto sampleBefore, auto sampleInFile) {
            if (coloursMayStay && sameBits(sampleNow, sampleBefore)) {
                return left_.template of<From, To>(sampleInFile, inFile.alpha);
            }
            return changed_.template of<Host, To>(sampleOf(sampleNow), sampleOf(now.alpha));
        };
        return {colour(now.red, before.red, inFile.red), colour(now.green, before.green, inFile.green),
                colour(now.blue, before.blue, inFile.blue),
                alphaStays ? rescaled<From, To>(inFile.alpha) : rescaled<Host, To>(sampleOf(now.alpha))};
    }

private:
    static typename Host::Sample sampleOf(typename Host::Channel channel) {
        return bitCast<typename Host::Sample>(channel);
    }

    Recolouring left_;
    Recolouring changed_; ///< of the host's straight values
    bool eitherMultiplied_;
};

} // namespace kovalune::samples
