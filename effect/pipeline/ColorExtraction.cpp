#include "effect/pipeline/ColorExtraction.h"

#include "effect/pipeline/DepthConversion.h"
#include "effect/raster/Bands.h"
#include "effect/raster/PixelTraits.h"
#include "effect/raster/Rows.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace kovalune {
namespace {

// What the three passes differ in: equality of colours, the seed's red and the way to the 8 bits of the
// conversion.

struct Rules8 : Argb8 {
    static bool sameChannel(uint8_t a, uint8_t b) { return a == b; }
    static uint8_t otherRed(uint8_t red) { return red < 255 ? 255 : 0; }
    static uint8_t to8(uint8_t c) { return c; }
};

struct Rules16 : Argb16 {
    static bool sameChannel(uint16_t a, uint16_t b) { return a == b; }
    static uint16_t otherRed(uint16_t red) { return red == kFullScale ? 0 : kFullScale; }
    static uint8_t to8(uint16_t c) { return narrowChannel(c); }
};

struct Rules32 : Argb32 {
    static bool sameChannel(float a, float b) {
        return std::bit_cast<uint32_t>(a) == std::bit_cast<uint32_t>(b);
    }
    static float otherRed(float red) { return red == kFullScale ? 0.0F : kFullScale; }
    /// Values outside 0 to 1 wrap around modulo 256; they are not clipped.
    static uint8_t to8(float c) {
        const float scaled = c * 255.0F;
        return static_cast<uint8_t>(static_cast<uint32_t>(truncToInt32(static_cast<double>(scaled) + 0.5)));
    }
};

template <class Rules>
bool sameColor(const typename Rules::Pixel& a, const typename Rules::Pixel& b) {
    return Rules::sameChannel(a.red, b.red) && Rules::sameChannel(a.green, b.green) &&
           Rules::sameChannel(a.blue, b.blue);
}

/// What a pixel of this colour is in the plane.
template <class Rules>
uint8_t elementOf(const ExtractRecord& record, const typename Rules::Pixel& p) {
    HlsColor hls;
    convertToHls(record.inData, {255, Rules::to8(p.red), Rules::to8(p.green), Rules::to8(p.blue)}, hls);
    const auto first = std::find_if(record.matches.begin(), record.matches.end(),
                                    [&hls](const ColorMatch& match) { return matches(hls, match); });
    if (first == record.matches.end()) {
        return 0;
    }
    return record.isCounted ? static_cast<uint8_t>(first - record.matches.begin() + 1) : record.value;
}

template <class Rules>
PF_Err extractPass(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    auto& record = *static_cast<ExtractRecord*>(refcon);
    const int32_t width = record.rect.width();
    const Band band = bandOf(record.rect.height(), i, n);
    if (band.first >= band.end || width <= 0) {
        return PF_Err_NONE;
    }
    // The last opaque pixel, not the last pixel, so that a run of one colour goes on across transparent
    // holes.
    typename Rules::Pixel previous = *rowOf<Rules>(*record.src, record.rect, band.first);
    previous.red = Rules::otherRed(previous.red);
    uint8_t lastResult = 0;
    for (int32_t y = band.first; y < band.end; ++y) {
        const auto* const src = rowOf<Rules>(*record.src, record.rect, y);
        uint8_t* const mask = record.mask.row(y);
        for (int32_t x = 0; x < width; ++x) {
            if (src[x].alpha == 0) {
                mask[x] = 0;
                continue;
            }
            if (!sameColor<Rules>(src[x], previous)) {
                previous = src[x];
                lastResult = elementOf<Rules>(record, previous);
            }
            mask[x] = lastResult;
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

template <class Rules>
PF_Err extractColors(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src, const FrameRect& rect,
                     const ColorMatches& matches, MatchCounts* counts) {
    if (src == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    const bool isCounted = counts != nullptr && matches.size() <= counts->size();
    ExtractRecord record{src, rect, inData, matches, 1, isCounted, {}};
    record.mask.resize(inData, rect.width(), rect.height());
    record.mask.clearTo(0);
    const PF_Err err = iterate(inData, record, extractPass<Rules>);
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
    return extractColors<Rules8>(mask, inData, src, rect, matches, counts);
}

PF_Err extractColors16(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src, const FrameRect& rect,
                       const ColorMatches& matches, MatchCounts* counts) {
    return extractColors<Rules16>(mask, inData, src, rect, matches, counts);
}

PF_Err extractColors32(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src, const FrameRect& rect,
                       const ColorMatches& matches, MatchCounts* counts) {
    return extractColors<Rules32>(mask, inData, src, rect, matches, counts);
}

} // namespace kovalune
