#include "effect/pipeline/Coverage.h"

#include "effect/raster/Bands.h"
#include "effect/raster/PixelTraits.h"
#include "effect/raster/Rows.h"
#include "effect/raster/WidePixels.h"

#include <algorithm>
#include <utility>

namespace kovalune {
namespace {

constexpr int32_t kTile = 4096;

/// The elements of some pixels; `columns` gathers what any row of the band holds. Whether anything is covered.
template <class Format>
bool cover(const typename Format::Pixel* src, int32_t count, uint8_t value, uint8_t* elements,
           uint8_t* columns) {
    uint8_t any = 0;
    for (int32_t x = 0; x < count; ++x) {
        const uint8_t shown = src[x].alpha != 0 ? value : uint8_t{0};
        elements[x] = shown;
        columns[x] |= shown;
        any |= shown;
    }
    return any != 0;
}

template <class Format>
bool coverColumns(const typename Format::Pixel* src, int32_t count, uint8_t value, uint8_t* elements,
                  uint8_t* columns) {
    constexpr int32_t kMany = WidePixels<Format>::kCount;
    bool any = false;
    int32_t x = 0;
    for (; x + kMany <= count; x += kMany) {
        const WidePixels<Format> pixels(src + x);
        if (pixels.areTransparent()) {
            std::fill_n(elements + x, kMany, uint8_t{0});
        } else if (pixels.areVisible()) {
            std::fill_n(elements + x, kMany, value);
            std::fill_n(columns + x, kMany, value);
            any = any || value != 0;
        } else {
            any = cover<Format>(src + x, kMany, value, elements + x, columns + x) || any;
        }
    }
    return cover<Format>(src + x, count - x, value, elements + x, columns + x) || any;
}

/// The band is gone through in upright tiles, so that a column is marked once and not at each of its pixels.
template <class Format>
PF_Err coveragePass(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    auto& record = *static_cast<CoverageRecord*>(refcon);
    MaskPlane& mask = record.mask;
    const int32_t width = record.rect.width();
    const Band band = bandOf(record.rect.height(), i, n);
    for (int32_t left = 0; left < width; left += kTile) {
        const int32_t count = std::min(kTile, width - left);
        uint8_t columns[kTile] = {};
        for (int32_t y = band.first; y < band.end; ++y) {
            const auto* const src = rowOf<Format>(*record.src, record.rect, y) + left;
            if (coverColumns<Format>(src, count, record.value, mask.row(y) + left, columns)) {
                mask.markRow(y);
            }
        }
        for (int32_t c = 0; c < count; ++c) {
            if (columns[c] != 0) {
                mask.markColumn(left + c);
            }
        }
    }
    return PF_Err_NONE;
}

template <class Format>
PF_Err coverage(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src, const FrameRect& rect) {
    if (src == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    CoverageRecord record{src, rect, 1, {}};
    record.mask.resize(inData, rect.width(), rect.height());
    record.mask.clearTo(0);
    const PF_Err err = iterate(inData, record, coveragePass<Format>);
    mask = std::move(record.mask);
    return err;
}

} // namespace

PF_Err coverage8(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src, const FrameRect& rect) {
    return coverage<Argb8>(mask, inData, src, rect);
}

PF_Err coverage16(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src, const FrameRect& rect) {
    return coverage<Argb16>(mask, inData, src, rect);
}

PF_Err coverage32(MaskPlane& mask, PF_InData* inData, PF_EffectWorld* src, const FrameRect& rect) {
    return coverage<Argb32>(mask, inData, src, rect);
}

} // namespace kovalune
