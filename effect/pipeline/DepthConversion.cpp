#include "effect/pipeline/DepthConversion.h"

#include "effect/raster/MaskedPass.h"
#include "effect/raster/PixelTraits.h"

namespace kovalune {
namespace {

// The same conversions in steps of 16 bits, of which a compiler makes eight channels at a time.

/// 128 and 128 of 255 times the channel, the last of which is a half but at 254, where it has become a whole one more.
constexpr uint16_t widenedChannel(uint8_t c) {
    const auto half = static_cast<uint16_t>((c + 1 + (c == 254 ? 1 : 0)) >> 1);
    return static_cast<uint16_t>((c << 7) + half);
}

/// A product of 510 in two halves: the lower one's highest bit is the rounding.
constexpr uint8_t narrowedChannel(uint16_t c) {
    const auto high = static_cast<uint16_t>(uint32_t{c} * 510 >> 16);
    const auto low = static_cast<uint16_t>(uint32_t{c} * 510);
    return static_cast<uint8_t>(high + (low >> 15));
}

constexpr bool allAreTheSame() {
    for (uint32_t c = 0; c <= 0xffff; ++c) {
        const auto deep = static_cast<uint16_t>(c);
        const auto shallow = static_cast<uint8_t>(c);
        if (narrowedChannel(deep) != narrowChannel(deep) ||
            widenedChannel(shallow) != widenChannel(shallow)) {
            return false;
        }
    }
    return true;
}
static_assert(allAreTheSame());

/// Pixels as the channels that they are, side by side.
template <class DstFormat, class SrcFormat, auto convert>
void convertChannels(typename DstFormat::Pixel* dst, const typename SrcFormat::Pixel* src, int32_t count) {
    auto* const to = static_cast<typename DstFormat::Channel*>(static_cast<void*>(dst));
    const auto* const from = static_cast<const typename SrcFormat::Channel*>(static_cast<const void*>(src));
    for (int32_t i = 0; i < 4 * count; ++i) {
        to[i] = convert(from[i]);
    }
}

} // namespace

PF_Err widenTo16(PF_InData* inData, MaskedPassRecord record) {
    return runMasked<Argb16, Argb8, convertChannels<Argb16, Argb8, widenedChannel>>(inData, record);
}

PF_Err narrowTo8(PF_InData* inData, MaskedPassRecord record) {
    return runMasked<Argb8, Argb16, convertChannels<Argb8, Argb16, narrowedChannel>>(inData, record);
}

} // namespace kovalune
