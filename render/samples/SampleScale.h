// The scales of samples, of picture files and of the host, and one sample from any of them to any other.
// Whole numbers round to the nearest, halves up; floats are cut to 0 to white where they become whole numbers.
#pragma once

#include "effect/share/StandardParts.h"
#include "hostapi/HostApi.h"
#include "render/samples/AlphaKind.h"
#include "render/samples/HalfFloat.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace kovalune::samples {

/// Whole numbers with white at kWhite; larger values of the type are no colours of a file.
template <class Stored, uint64_t white>
struct WholeScale {
    using Sample = Stored;
    static constexpr bool kIsFloat = false;
    static constexpr uint64_t kWhite = white;
    static double toDouble(Sample sample) { return sample; }

    /// `value` is in units of this scale. NaN becomes 0.
    static Sample fromDouble(double value) {
        constexpr double kMost = white;
        if (!(value > 0.0)) {
            return 0;
        }
        return static_cast<Sample>(std::floor(std::min(value, kMost) + 0.5));
    }
};

struct FloatScale {
    using Sample = float;
    static constexpr bool kIsFloat = true;
    static constexpr uint64_t kWhite = 1;
    static float toFloat(Sample sample) { return sample; }
    static double toDouble(Sample sample) { return static_cast<double>(sample); }
    static Sample fromFloat(float value) { return value; }
    static Sample fromDouble(double value) { return static_cast<float>(value); }
};

/// The bits of a float. What must stay to the bit goes by this: compilers may change a NaN that is a number.
struct FloatBitsScale {
    using Sample = uint32_t;
    static constexpr bool kIsFloat = true;
    static constexpr uint64_t kWhite = 1;
    static float toFloat(Sample sample) { return bitCast<float>(sample); }
    static double toDouble(Sample sample) { return static_cast<double>(toFloat(sample)); }
    static Sample fromFloat(float value) { return bitCast<Sample>(value); }
    static Sample fromDouble(double value) { return fromFloat(static_cast<float>(value)); }
};

/// The bits of a float of 16 bits.
struct HalfScale {
    using Sample = uint16_t;
    static constexpr bool kIsFloat = true;
    static constexpr uint64_t kWhite = 1;
    static float toFloat(Sample sample) { return floatOfHalf(sample); }
    static double toDouble(Sample sample) { return static_cast<double>(toFloat(sample)); }
    static Sample fromFloat(float value) { return halfOfFloat(value); }
    static Sample fromDouble(double value) { return halfOfDouble(value); }
};

// In files ...
using FileScale8 = WholeScale<uint8_t, 255>;
using FileScale16 = WholeScale<uint16_t, 65535>;

/// ... and in the host, whose pixels have channels of a type of their own.
struct HostScale8 : WholeScale<A_u_char, 255> {
    using Pixel = PF_Pixel;
    using Channel = A_u_char;
};
struct HostScale16 : WholeScale<A_u_short, 32768> {
    using Pixel = PF_Pixel16;
    using Channel = A_u_short;
};
struct HostScale32 : FloatBitsScale {
    using Pixel = PF_PixelFloat;
    using Channel = PF_FpShort;
};

template <class From, class To>
typename To::Sample rescaled(typename From::Sample sample) {
    using Target = typename To::Sample;
    if constexpr (From::kIsFloat && To::kIsFloat && std::is_same_v<typename From::Sample, Target>) {
        return sample;
    } else if constexpr (From::kIsFloat && To::kIsFloat) {
        return To::fromFloat(From::toFloat(sample));
    } else if constexpr (From::kIsFloat || To::kIsFloat) {
        constexpr double kFrom = From::kWhite;
        constexpr double kTo = To::kWhite;
        return To::fromDouble(From::toDouble(sample) * kTo / kFrom);
    } else if constexpr (From::kWhite == To::kWhite) {
        return static_cast<Target>(std::min<uint64_t>(sample, To::kWhite));
    } else if constexpr (From::kWhite == 65535 && To::kWhite == 32768) {
        // The nearest to sample * 32768 / 65535, which is a half of the sample and less than a half of one more.
        return static_cast<Target>(sample / 2 + sample % 2);
    } else {
        // In 32 bits wherever they hold the largest sample: a division by a constant is then quickest.
        constexpr uint64_t kMost =
            std::numeric_limits<typename From::Sample>::max() * To::kWhite + From::kWhite / 2;
        using Wide = std::conditional_t<kMost <= std::numeric_limits<uint32_t>::max(), uint32_t, uint64_t>;
        constexpr Wide kFrom = From::kWhite;
        constexpr Wide kTo = To::kWhite;
        return static_cast<Target>(std::min<Wide>((Wide{sample} * kTo + kFrom / 2) / kFrom, kTo));
    }
}

/// A colour that has been multiplied by `alpha` or not (`from`), multiplied or not (`to`). Both in double,
/// rounded once. Without an alpha that says what to divide by (0, negative or NaN) the colour is taken as it stands;
/// multiplied by a negative alpha or NaN it would not come back, so it stands there too.
template <class From, class To>
typename To::Sample recoloured(typename From::Sample colour, typename From::Sample alpha, AlphaKind from,
                               AlphaKind to) {
    constexpr double kFrom = From::kWhite;
    constexpr double kTo = To::kWhite;
    const double share = From::toDouble(alpha);
    if (from == to || share == kFrom) { // most pixels are opaque
        return rescaled<From, To>(colour);
    }
    if (from != to && to == AlphaKind::kStraight && share > 0.0) {
        return To::fromDouble(From::toDouble(colour) * kTo / share);
    }
    if (from != to && to == AlphaKind::kPremultiplied && share >= 0.0) {
        return To::fromDouble(From::toDouble(colour) * share * kTo / (kFrom * kFrom));
    }
    return rescaled<From, To>(colour);
}

/// The same of a colour that goes through a curve, which gets and gives straight fractions of white. Rounded once too.
template <class From, class To, class Curve>
typename To::Sample recolouredThrough(Curve& curve, typename From::Sample colour, typename From::Sample alpha,
                                      AlphaKind from, AlphaKind to) {
    constexpr double kFrom = From::kWhite;
    constexpr double kTo = To::kWhite;
    const double share = From::toDouble(alpha) / kFrom;
    double value = From::toDouble(colour) / kFrom;
    if (from == AlphaKind::kPremultiplied && share > 0.0) {
        value = From::toDouble(colour) / From::toDouble(alpha);
    }
    value = curve(value);
    if (to == AlphaKind::kPremultiplied && share >= 0.0) {
        value *= share;
    }
    return To::fromDouble(value * kTo);
}

} // namespace kovalune::samples
