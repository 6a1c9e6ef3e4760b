// The only place where the channels' scales meet: 8-bit ones with full scale 255, 16-bit ones with full scale 32768, floats
// with 1. Narrowing after widening gives every 8-bit value back unchanged.
#pragma once

#include "effect/raster/MaskedCopy.h"
#include "effect/raster/PixelTraits.h"
#include "effect/share/Integers.h"
#include "hostapi/HostApi.h"

#include <cstdint>

namespace kovalune {

/// 0 becomes 0, 1 becomes 129, 255 becomes 32768. The 128 is the constant of the conversion, not half of 255.
constexpr uint16_t widenChannel(uint8_t c) {
    return static_cast<uint16_t>((uint32_t{c} * Argb16::kFullScale + 128) / Argb8::kFullScale);
}

/// For values up to 32768; a larger one wraps at the store.
constexpr uint8_t narrowChannel(uint16_t c) {
    return static_cast<uint8_t>((uint32_t{c} * Argb8::kFullScale + Argb16::kFullScale / 2) >>
                                Argb16::kScaleBits);
}

// The 8-bit level of a channel by which colours are matched, whatever the format.
inline uint8_t to8Bits(uint8_t c) {
    return c;
}
inline uint8_t to8Bits(uint16_t c) {
    return narrowChannel(c);
}
/// Values outside 0 to 1 wrap around modulo 256; they are not clipped. What no 32 bits hold, NaN too, is level 0.
inline uint8_t to8Bits(float c) {
    const float scaled = c * static_cast<float>(Argb8::kFullScale);
    return static_cast<uint8_t>(static_cast<uint32_t>(truncToInt32(static_cast<double>(scaled) + 0.5)));
}

// Convert all four channels under the mask; other pixels of `dst` become zero where `clearOutside` is set
// and stay otherwise. Each returns the host's code, or PF_Err_OUT_OF_MEMORY where a world is missing.
[[nodiscard]] PF_Err widenTo16(PF_InData* inData, MaskedPassRecord record);
[[nodiscard]] PF_Err narrowTo8(PF_InData* inData, MaskedPassRecord record);

} // namespace kovalune
