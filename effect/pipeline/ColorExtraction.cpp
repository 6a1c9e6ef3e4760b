#include "effect/pipeline/ColorExtraction.h"

#include "effect/pipeline/DepthConversion.h"
#include "effect/raster/Bands.h"
#include "effect/raster/PixelTraits.h"
#include "effect/raster/Rows.h"
#include "effect/raster/SameBytes.h"
#include "effect/share/HostCode.h"
#include "effect/share/StandardParts.h"

#include <algorithm>
#include <utility>

namespace kovalune {
namespace {

/// When two channels of a format are the same, and what is sure to be another red.
template <class Format>
struct SamenessOf;

template <class Format>
struct IntegerSameness {
    using Channel = typename Format::Channel;
    static bool same(Channel a, Channel b) { return a == b; }
};

template <>
struct SamenessOf<Argb8> : IntegerSameness<Argb8> {
    static uint8_t otherRed(uint8_t red) { return red < Argb8::kFullScale ? Argb8::kFullScale : 0; }
};

template <>
struct SamenessOf<Argb16> : IntegerSameness<Argb16> {
    static uint16_t otherRed(uint16_t red) { return red == Argb16::kFullScale ? 0 : Argb16::kFullScale; }
};

template <>
struct SamenessOf<Argb32> {
    static bool same(float a, float b) { return bitCast<uint32_t>(a) == bitCast<uint32_t>(b); }
    static float otherRed(float red) { return red == Argb32::kFullScale ? 0.0F : Argb32::kFullScale; }
};

template <class Format>
bool sameColor(const typename Format::Pixel& a, const typename Format::Pixel& b) {
    using Sameness = SamenessOf<Format>;
    return Sameness::same(a.red, b.red) && Sameness::same(a.green, b.green) && Sameness::same(a.blue, b.blue);
}

/// What a pixel of this colour is in the plane.
template <class Format>
uint8_t elementOf(const ExtractRecord& record, const typename Format::Pixel& p) {
    HlsColor hls;
    ignored(convertToHls(record.inData, {255, to8Bits(p.red), to8Bits(p.green), to8Bits(p.blue)}, hls));
    const auto first = std::find_if(record.matches.begin(), record.matches.end(),
                                    [&hls](const ColorMatch& match) { return matches(hls, match); });
    if (first == record.matches.end()) {
        return 0;
    }
    return record.isCounted ? static_cast<uint8_t>(first - record.matches.begin() + 1) : record.value;
}

template <class Format>
PF_Err extractPass(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    auto& record = *static_cast<ExtractRecord*>(refcon);
    const int32_t width = record.rect.width();
    const Band band = bandOf(record.rect.height(), i, n);
    if (band.first >= band.end || width <= 0) {
        return PF_Err_NONE;
    }
    // The last opaque pixel, not the last pixel, so that a run of one colour goes on across transparent
    // holes.
    typename Format::Pixel previous = *rowOf<Format>(*record.src, record.rect, band.first);
    previous.red = SamenessOf<Format>::otherRed(previous.red);
    uint8_t lastResult = 0;
    for (int32_t y = band.first; y < band.end; ++y) {
        const auto* const src = rowOf<Format>(*record.src, record.rect, y);
        uint8_t* const mask = record.mask.row(y);
        for (int32_t x = 0; x < width;) {
            uint8_t element = 0;
            if (src[x].alpha != 0) {
                if (!sameColor<Format>(src[x], previous)) {
                    previous = src[x];
                    lastResult = elementOf<Format>(record, previous);
                }
                element = lastResult;
            }
            const int32_t end = endOfSamePixels(src, x, width);
            std::fill(mask + x, mask + end, element);
            x = end;
        }
    }
    return PF_Err_NONE;
}

/// Counts the places in the list that the pass has written, and puts the plane's own value in their stead.
void countMatches(ExtractRecord& record, MatchCounts& counts) {
    for (int32_t y = 0; y < record.mask.height(); ++y) {
        uint8_t* const row = record.mask.row(y);
        uint8_t* const end = row + record.mask.width();
        for (std::size_t place = 0; place < record.matches.size(); ++place) {
            counts[place] += std::count(row, end, static_cast<uint8_t>(place + 1));
        }
        std::transform(row, end, row,
                       [&record](uint8_t place) { return place != 0 ? record.value : uint8_t{0}; });
    }
}

template <class Format>
PF_Err extractColors(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src, const FrameRect& rect,
                     const ColorMatches& matches, MatchCounts* counts) {
    if (src == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    const bool isCounted = counts != nullptr && matches.size() <= counts->size();
    ExtractRecord record{src, rect, inData, matches, 1, isCounted, {}};
    record.mask.resize(inData, rect.width(), rect.height());
    record.mask.clearTo(0);
    const PF_Err err = iterate(inData, record, extractPass<Format>);
    if (isCounted) {
        counts->fill(0);
        countMatches(record, *counts);
    }
    record.mask.refreshActivity();
    mask = std::move(record.mask);
    return err;
}

} // namespace

PF_Err extractColors8(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src, const FrameRect& rect,
                      const ColorMatches& matches, MatchCounts* counts) {
    return extractColors<Argb8>(mask, inData, src, rect, matches, counts);
}

PF_Err extractColors16(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src, const FrameRect& rect,
                       const ColorMatches& matches, MatchCounts* counts) {
    return extractColors<Argb16>(mask, inData, src, rect, matches, counts);
}

PF_Err extractColors32(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src, const FrameRect& rect,
                       const ColorMatches& matches, MatchCounts* counts) {
    return extractColors<Argb32>(mask, inData, src, rect, matches, counts);
}

} // namespace kovalune
